// The common parts of the number parsers: digits to a Double without any locale, and the radix
// prefixes of Visual Basic.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/numbers.h"

namespace zimbrat::platform {

inline bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// `digits` is ASCII: perhaps a "-", digits, perhaps a point, perhaps an exponent. Too small becomes 0,
// too large is error 6.
double DoubleFromDigits(const std::string& digits);

// A whole text as the user writes a number, in the form that DoubleFromDigits takes; nothing when it is
// no number.
std::optional<std::string> FindDigits(std::u16string_view text, const NumberLocale& locale);

// Reads the digits behind "&H", "&O" or "&" at `position`, which stands on the "&", and moves behind
// them and behind a closing "&". A pattern of 16 bits is a signed 16-bit number, a longer one, or one
// closed by "&", a signed 32-bit one. Nothing when no digit follows; error 6 above 32 bits.
std::optional<std::int32_t> ReadRadixNumber(std::u16string_view text, std::size_t& position);

}  // namespace zimbrat::platform

// Text to number by the rules of Visual Basic and OLE automation that the product relies on.
// Failures are RunTimeErrors 13 (not a number), 6 (out of range) and 94 (Null).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::platform {

// How numbers are written by the user: one description, so that both engines agree.
struct NumberLocale {
  char16_t decimalSign = u',';
  char16_t groupSign = u'\u00A0';
  bool acceptPoint = false;  // '.' as decimal sign too, for callers that ask for leniency
};

// Visual Basic's Val: the longest numeric prefix, blanks skipped anywhere, `.` alone as decimal sign,
// `&H` and `&O` prefixes; 0 when there is none. Error 6 when the number exceeds a Double.
double Val(std::u16string_view text);

// A whole text as a number, or nothing when it is none.
std::optional<double> FindNumber(std::u16string_view text, const NumberLocale& locale = {});

// CDbl, CLng, CInt, CByte of a text: half to even, then the range check.
double DoubleFromText(std::u16string_view text, const NumberLocale& locale = {});
std::int32_t LongFromText(std::u16string_view text, const NumberLocale& locale = {});
std::int16_t IntegerFromText(std::u16string_view text, const NumberLocale& locale = {});

// "True", "False" in any case (also #TRUE#), or a number (0 is False), or nothing. CBool raises 13 for that.
std::optional<bool> FindBoolean(std::u16string_view text, const NumberLocale& locale = {});
bool BooleanFromText(std::u16string_view text, const NumberLocale& locale = {});

// Half to even, then the range check (error 6).
std::int16_t IntegerFromDouble(double value);
std::int32_t LongFromDouble(double value);
double RoundHalfEven(double value);

// 16-bit arithmetic: error 6 outside -32768..32767.
std::int16_t AddIntegers(std::int16_t a, std::int16_t b);
std::int16_t MultiplyIntegers(std::int16_t a, std::int16_t b);

// The number as text with up to `precision` significant digits, as CStr shows a Double (15) or a Single (7).
inline constexpr int kDoubleDigits = 15;
inline constexpr int kSingleDigits = 7;
std::u16string TextFromDouble(double value, char16_t decimalSign = u',', int precision = kDoubleDigits);

}  // namespace zimbrat::platform

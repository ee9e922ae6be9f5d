#include "number_text.h"

#include <charconv>
#include <system_error>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

// The power of ten of the first digit that is not 0, far beyond any Double where the exponent is.
long long Magnitude(const std::string& digits) {
  const std::size_t mark = digits.find('e');
  const std::string mantissa = digits.substr(0, mark);
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string::npos) return -1;
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const auto places = static_cast<long long>(point) - static_cast<long long>(first);
  if (mark == std::string::npos) return places;
  long long exponent = 0;
  const char* begin = digits.data() + mark + 1;
  if (*begin == '+') ++begin;
  const auto [end, error] = std::from_chars(begin, digits.data() + digits.size(), exponent);
  if (error == std::errc::result_out_of_range) return *begin == '-' ? -1 : 1;
  // The length of any text in memory is far below this, so the sum keeps the exponent's sign.
  constexpr long long kFar = 1LL << 60;
  if (exponent > kFar || exponent < -kFar) return exponent;
  return places + exponent;
}

int DigitOf(char16_t unit, int radix) {
  int digit = radix;
  if (IsDigit(unit)) digit = unit - u'0';
  if (unit >= u'A' && unit <= u'F') digit = unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') digit = unit - u'a' + 10;
  return digit < radix ? digit : -1;
}

}  // namespace

double DoubleFromDigits(const std::string& digits) {
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  if (Magnitude(digits) > 0) throw OwnError(kErrOverflow);
  return 0;
}

std::optional<std::int32_t> ReadRadixNumber(std::u16string_view text, std::size_t& position) {
  std::size_t at = position + 1;
  const char16_t mark = at < text.size() ? UpperCase(text[at]) : u'\0';
  const int radix = mark == u'H' ? 16 : 8;
  if (mark == u'H' || mark == u'O') ++at;
  std::uint64_t value = 0;
  const std::size_t firstDigit = at;
  for (; at < text.size(); ++at) {
    const int digit = DigitOf(text[at], radix);
    if (digit < 0) break;
    value = value * static_cast<unsigned>(radix) + static_cast<unsigned>(digit);
    if (value > 0xFFFFFFFFu) throw OwnError(kErrOverflow);
  }
  if (at == firstDigit) return std::nullopt;
  const bool isLong = at < text.size() && text[at] == u'&';
  position = isLong ? at + 1 : at;
  if (value <= 0xFFFF && !isLong) return static_cast<std::int16_t>(value);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

}  // namespace zimbrat::platform

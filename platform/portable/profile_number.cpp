#include "profile_number.h"

namespace zimbrat::platform {
namespace {

unsigned DigitOf(char letter) {
  if (letter >= '0' && letter <= '9') return static_cast<unsigned>(letter - '0');
  if (letter >= 'a' && letter <= 'f') return static_cast<unsigned>(letter - 'a' + 10);
  if (letter >= 'A' && letter <= 'F') return static_cast<unsigned>(letter - 'A' + 10);
  return 99;
}

unsigned TakeRadix(std::string_view& digits) {
  if (digits.size() < 2 || digits[0] != '0') return 10;
  const unsigned radix = digits[1] == 'x' ? 16 : digits[1] == 'o' ? 8 : digits[1] == 'b' ? 2 : 10;
  if (radix != 10) digits.remove_prefix(2);
  return radix;
}

}  // namespace

std::int32_t NumberOfProfileValue(std::string_view value) {
  const std::size_t first = value.find_first_not_of(" \t");
  if (first == std::string_view::npos) return 0;
  value.remove_prefix(first);
  const bool negative = value[0] == '-';
  if (negative || value[0] == '+') value.remove_prefix(1);
  const unsigned radix = TakeRadix(value);
  std::uint32_t number = 0;
  for (const char letter : value) {
    const unsigned digit = DigitOf(letter);
    if (digit >= radix) break;
    number = number * radix + digit;
  }
  return static_cast<std::int32_t>(negative ? 0u - number : number);
}

}  // namespace zimbrat::platform

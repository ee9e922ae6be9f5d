// Input as text, and its parts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "targets.h"

namespace zimbrat::fuzz {

std::string_view BytesOf(Input input);
// UTF-8, broken or not; FF stands for an unpaired surrogate.
std::u16string TextOf(Input input);

// Takes the bytes before the next `separator` off the front, and the separator; the whole when there is none.
Input TakeUntil(Input& rest, std::uint8_t separator);
// 0 at the end.
std::uint8_t TakeByte(Input& rest);
std::vector<Input> SplitLines(Input input);

}  // namespace zimbrat::fuzz

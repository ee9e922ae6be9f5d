// The number in a profile value.
#pragma once

#include <cstdint>
#include <string_view>

namespace zimbrat::platform {

// The leading number of `value` modulo 2^32; 0 when there is none. Knows a sign and the prefixes 0x, 0o
// and 0b, all in small letters.
std::int32_t NumberOfProfileValue(std::string_view value);

}  // namespace zimbrat::platform

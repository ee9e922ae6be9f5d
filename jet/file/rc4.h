// RC4, as the format uses it: to mask the header and to encode pages. No secret depends on it.
#pragma once

#include <cstdint>

#include "jet/file/bytes.h"

namespace zimbrat::jet {

// XORs `bytes` with the key stream of a four-byte little-endian key, from its start. Applying it twice
// gives the bytes back.
void Rc4(std::uint32_t key, Bytes bytes);

}  // namespace zimbrat::jet

// RC4, as the format uses it: to mask the header and to encode pages. No secret depends on it.
#pragma once

#include <cstdint>

#include "jet/file/bytes.h"

namespace zimbrat::jet {

// XORs `bytes` with the key stream of a four-byte little-endian key, from its start. Applying it twice
// gives the bytes back.
void Rc4(std::uint32_t key, Bytes bytes);
// Two pieces of one size at a time: nearly as fast as one, because each byte of a stream waits for the one before.
void Rc4(std::uint32_t keyA, Bytes a, std::uint32_t keyB, Bytes b);
// Consecutive pages, whole ones, of which `first` is not 0; `key` 0 leaves them as they are.
void CodePages(std::uint32_t key, std::uint32_t first, Bytes pages);

}  // namespace zimbrat::jet

// Numbers in byte order. Callers see to it that the bytes are there: `Reader` for what comes from a file.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace zimbrat::jet {

using Bytes = std::span<std::byte>;
using ConstBytes = std::span<const std::byte>;

template <class T>
T GetLittle(ConstBytes bytes, std::size_t offset) {
  T value{};
  std::memcpy(&value, bytes.subspan(offset, sizeof(T)).data(), sizeof(T));
  return value;
}
template <class T>
void PutLittle(Bytes bytes, std::size_t offset, T value) {
  std::memcpy(bytes.subspan(offset, sizeof(T)).data(), &value, sizeof(T));
}
static_assert(std::endian::native == std::endian::little, "numbers are copied as they lie");

inline std::uint8_t Get8(ConstBytes b, std::size_t o) { return std::to_integer<std::uint8_t>(b[o]); }
inline std::uint16_t Get16(ConstBytes b, std::size_t o) { return GetLittle<std::uint16_t>(b, o); }
inline std::uint32_t Get32(ConstBytes b, std::size_t o) { return GetLittle<std::uint32_t>(b, o); }
inline void Put8(Bytes b, std::size_t o, std::uint8_t v) { b[o] = std::byte{v}; }
inline void Put16(Bytes b, std::size_t o, std::uint16_t v) { PutLittle(b, o, v); }
inline void Put32(Bytes b, std::size_t o, std::uint32_t v) { PutLittle(b, o, v); }

inline std::uint32_t GetBig32(ConstBytes b, std::size_t o) {
  return std::uint32_t{Get8(b, o)} << 24 | std::uint32_t{Get8(b, o + 1)} << 16 |
         std::uint32_t{Get8(b, o + 2)} << 8 | Get8(b, o + 3);
}
inline void PutBig32(Bytes b, std::size_t o, std::uint32_t v) {
  for (std::size_t i = 0; i < 4; ++i) Put8(b, o + i, static_cast<std::uint8_t>(v >> (24 - 8 * i)));
}

}  // namespace zimbrat::jet

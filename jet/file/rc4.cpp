#include "jet/file/rc4.h"

#include <array>
#include <numeric>
#include <utility>

#include "jet/file/format.h"

namespace zimbrat::jet {

namespace {

class KeyStream {
 public:
  explicit KeyStream(std::uint32_t key) {
    std::iota(cells_.begin(), cells_.end(), 0u);
    for (std::uint32_t i = 0; i < 256; ++i) {
      j_ = (j_ + cells_[i] + (key >> (8 * (i % 4)))) & 0xFF;
      std::swap(cells_[i], cells_[j_]);
    }
    j_ = 0;
  }
  // `i` counts the bytes, from 1.
  std::byte Next(std::size_t i) {
    const std::uint32_t a = cells_[i & 0xFF];
    j_ = (j_ + a) & 0xFF;
    const std::uint32_t b = cells_[j_];
    cells_[i & 0xFF] = b;
    cells_[j_] = a;
    return static_cast<std::byte>(cells_[(a + b) & 0xFF]);
  }

 private:
  // Whole words: written bytes that are read again at once would make the processor wait.
  std::array<std::uint32_t, 256> cells_;
  std::uint32_t j_ = 0;
};

}  // namespace

void Rc4(std::uint32_t key, Bytes bytes) {
  KeyStream stream(key);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] ^= stream.Next(i + 1);
}

void Rc4(std::uint32_t keyA, Bytes a, std::uint32_t keyB, Bytes b) {
  KeyStream streamA(keyA), streamB(keyB);
  for (std::size_t i = 0; i < a.size(); ++i) {
    a[i] ^= streamA.Next(i + 1);
    b[i] ^= streamB.Next(i + 1);
  }
}

void CodePages(std::uint32_t key, std::uint32_t first, Bytes pages) {
  if (key == 0) return;
  const std::size_t count = pages.size() / kPageSize;
  const auto page = [&](std::size_t i) { return pages.subspan(i * kPageSize, kPageSize); };
  const auto keyOf = [&](std::size_t i) { return key ^ static_cast<std::uint32_t>(first + i); };
  std::size_t i = 0;
  for (; i + 1 < count; i += 2) Rc4(keyOf(i), page(i), keyOf(i + 1), page(i + 1));
  if (i < count) Rc4(keyOf(i), page(i));
}

}  // namespace zimbrat::jet

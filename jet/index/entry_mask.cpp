#include "entry_mask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace zimbrat::jet {

namespace {

constexpr std::size_t kBits = 64;

// The word at `index`, what lies behind the mask's last byte taken as zero.
std::uint64_t WordAt(ConstBytes mask, std::size_t index) {
  std::uint64_t word = 0;
  const std::size_t offset = index * sizeof word;
  if (mask.size() - offset >= sizeof word) {
    std::memcpy(&word, mask.data() + offset, sizeof word);
  } else {
    std::memcpy(&word, mask.data() + offset, mask.size() - offset);
  }
  return word;
}

std::size_t WordCount(ConstBytes mask) { return (mask.size() + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t); }

// Bits below `bit`, which is less than 64.
std::uint64_t BitsBelow(std::size_t bit) { return (std::uint64_t{1} << bit) - 1; }

}  // namespace

std::size_t FindEndAbove(ConstBytes mask, std::size_t position) {
  const std::size_t first = position + 1;
  const std::size_t words = WordCount(mask);
  if (first / kBits >= words) return 0;
  std::uint64_t word = WordAt(mask, first / kBits) & ~BitsBelow(first % kBits);
  for (std::size_t i = first / kBits;;) {
    if (word != 0) return i * kBits + static_cast<std::size_t>(std::countr_zero(word));
    if (++i == words) return 0;
    word = WordAt(mask, i);
  }
}

std::size_t FindEndUpTo(ConstBytes mask, std::size_t position) {
  const std::size_t last = std::min(position, mask.size() * 8 - 1);
  std::uint64_t word = WordAt(mask, last / kBits) & (BitsBelow(last % kBits) << 1 | 1);
  for (std::size_t i = last / kBits;; word = WordAt(mask, --i)) {
    if (word != 0) return i * kBits + kBits - 1 - static_cast<std::size_t>(std::countl_zero(word));
    if (i == 0) return 0;
  }
}

void SetEnd(Bytes mask, std::size_t end) {
  mask[end / 8] |= static_cast<std::byte>(1u << (end % 8));
}

void SpliceEnds(Bytes mask, std::size_t offset, std::size_t removed, std::size_t added) {
  // Room for a word on either side of those that move.
  std::array<std::uint64_t, 64> words{};
  const std::size_t count = WordCount(mask);
  for (std::size_t i = 0; i < count; ++i) words[i] = WordAt(mask, i);
  const std::array<std::uint64_t, 64> before = words;
  // The 64 ends from `first` on, as they were.
  const auto endsFrom = [&](std::size_t first) {
    const std::size_t word = first / kBits, bit = first % kBits;
    if (word >= count) return std::uint64_t{0};
    return before[word] >> bit | (bit == 0 ? 0 : before[word + 1] << (kBits - bit));
  };
  const std::size_t from = offset + added + 1, source = offset + removed + 1;
  const std::size_t start = (offset + 1) / kBits;
  words[start] &= BitsBelow((offset + 1) % kBits);
  std::fill(words.begin() + static_cast<std::ptrdiff_t>(start) + 1, words.begin() + static_cast<std::ptrdiff_t>(count),
            std::uint64_t{0});
  if (from / kBits < count) {
    const std::size_t head = from % kBits;
    words[from / kBits] |= endsFrom(source) << head;
    std::size_t next = source + kBits - head;
    for (std::size_t i = from / kBits + 1; i < count; ++i, next += kBits) words[i] |= endsFrom(next);
  }
  std::memcpy(mask.data(), words.data(), mask.size());
  if (added != 0) SetEnd(mask, offset + added);
}

}  // namespace zimbrat::jet

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
  // A word more than the mask has: what lies behind it is empty.
  std::array<std::uint64_t, 60> words{};
  const std::size_t count = WordCount(mask), start = (offset + 1) / kBits;
  for (std::size_t i = start; i < count; ++i) words[i] = WordAt(mask, i);
  // The 64 ends from `first` on.
  const auto endsFrom = [&](std::size_t first) {
    const std::size_t word = first / kBits, bit = first % kBits;
    if (word >= count) return std::uint64_t{0};
    return words[word] >> bit | (bit == 0 ? 0 : words[word + 1] << (kBits - bit));
  };
  const std::uint64_t stay = words[start] & BitsBelow((offset + 1) % kBits);
  const std::size_t from = offset + added + 1, source = offset + removed + 1;
  // The ends that come to word `i`, of which those in front of `from` do not move.
  const auto wordAt = [&](std::size_t i) {
    std::uint64_t word = 0;
    if (i * kBits >= from) {
      word = endsFrom(source + (i * kBits - from));
    } else if (i == from / kBits) {
      word = endsFrom(source) << (from % kBits);
    }
    return i == start ? word | stay : word;
  };
  const auto put = [&](std::size_t i) {
    const std::uint64_t word = wordAt(i);
    words[i] = word;
  };
  if (added >= removed) {
    for (std::size_t i = count; i-- > start;) put(i);
  } else {
    for (std::size_t i = start; i < count; ++i) put(i);
  }
  const std::size_t byte = start * sizeof(std::uint64_t);
  std::memcpy(mask.data() + byte, words.data() + start, mask.size() - byte);
  if (added != 0) SetEnd(mask, offset + added);
}

}  // namespace zimbrat::jet

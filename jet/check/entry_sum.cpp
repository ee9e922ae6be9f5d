#include "entry_sum.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zimbrat::jet::check {

namespace {

// Multiply and fold: each bit of a word reaches all bits of the hash.
std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
  hash ^= hash >> 32;
  hash *= 0xD6E8FEB86659FD93u;
  return hash ^ hash >> 29;
}

}  // namespace

void EntrySum::Add(ConstBytes key, RowPointer row) {
  std::uint64_t hash = Mix(std::uint64_t{key.size()} << 32, row.Packed());
  for (std::size_t from = 0; from < key.size(); from += sizeof hash) {
    std::uint64_t word = 0;
    std::memcpy(&word, key.data() + from, std::min(sizeof word, key.size() - from));
    hash = Mix(hash, word);
  }
  ++count_;
  sum_ += hash;
  turned_ += std::rotl(hash * 0xA0761D6478BD642Fu, 31);
}

}  // namespace zimbrat::jet::check

// The entries of an index as one figure: a sum of hashes, in which their order does not count. Entries found in the
// tree and entries made of the rows are the same if their sums are; so both are read once, in the order of their
// pages, and nothing about a row has to be looked up.
#pragma once

#include <cstdint>

#include "jet/file/bytes.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet::check {

class EntrySum {
 public:
  void Add(ConstBytes key, RowPointer row);
  std::uint64_t Count() const { return count_; }
  bool operator==(const EntrySum&) const = default;

 private:
  std::uint64_t count_ = 0;
  std::uint64_t sum_ = 0;
  std::uint64_t turned_ = 0;  // the same hashes, turned before they are added
};

}  // namespace zimbrat::jet::check

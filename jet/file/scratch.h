// Bytes set aside for the length of a sort or a query: in memory while they are few, then in a temporary
// file in the database's folder, encoded as the database is.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/pager.h"

namespace zimbrat::jet {

class Scratch {
 public:
  explicit Scratch(Pager& pager) : pager_(pager) {}

  std::uint64_t Size() const { return stored_ + tail_.size(); }
  // Returns the offset at which the bytes lie.
  std::uint64_t Append(ConstBytes bytes);
  // All of `bytes` must have been appended.
  void Read(std::uint64_t offset, Bytes bytes);

 private:
  void StoreBlocks();
  void ReadStored(std::uint64_t offset, Bytes bytes);

  Pager& pager_;
  std::unique_ptr<platform::File> file_;
  std::uint64_t stored_ = 0;      // bytes in the file: whole blocks
  std::vector<std::byte> tail_;   // what follows them
};

}  // namespace zimbrat::jet

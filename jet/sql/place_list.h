// The places of rows that a query came to, each of the same size: set aside, so that a list may be longer than
// memory.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/file/scratch.h"

namespace zimbrat::jet {

class PlaceList {
 public:
  PlaceList(Pager& pager, std::size_t placeSize) : scratch_(pager), place_(placeSize) {}

  std::uint64_t Count() const { return count_; }
  void Add(ConstBytes place) {
    scratch_.Append(place);
    ++count_;
  }
  // Valid until the next call.
  ConstBytes At(std::uint64_t i) {
    scratch_.Read(i * place_.size(), place_);
    return place_;
  }

 private:
  Scratch scratch_;
  std::uint64_t count_ = 0;
  std::vector<std::byte> place_;
};

}  // namespace zimbrat::jet

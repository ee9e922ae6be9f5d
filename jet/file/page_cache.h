// The pages that are in memory: a bounded number of frames, found by page number, and which of them is to go when
// room is needed. What is in a frame, and when it is written, is the pager's business.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "jet/file/format.h"

namespace zimbrat::jet {

struct CachedPage {
  PageNumber number = 0;
  std::uint32_t pins = 0;
  bool isPresent = false;    // else the frame is free
  bool wasUsed = false;      // since the hand came by
  bool dirty = false;
  std::uint32_t place = 0;   // of the frame, counted from 1
  std::uint64_t keptBy = 0;  // savepoint that has the former contents
  std::array<std::byte, kPageSize> bytes;
};

class PageCache {
 public:
  // More frames than this are made only while all of them are pinned.
  explicit PageCache(std::size_t most) : most_(most) {}

  // Null when it is not there.
  CachedPage* Find(PageNumber page);
  bool IsFull() const { return free_.empty() && frames_.size() >= most_; }
  // One that is not pinned and was not used lately; null when all are pinned.
  CachedPage* ChooseVictim();
  // A frame for a page that is not there: clean, its bytes as they happen to be.
  CachedPage& Add(PageNumber page);
  void Remove(CachedPage& page) noexcept;

  // In no order; pages may be removed meanwhile.
  template <class Visit>
  void ForEach(Visit visit) {
    for (const auto& frame : frames_) {
      if (frame->isPresent) visit(*frame);
    }
  }

 private:
  std::size_t most_;
  std::vector<std::unique_ptr<CachedPage>> frames_;
  std::vector<CachedPage*> free_;
  std::vector<std::uint32_t> places_;  // by page number: the frame's place; 0 none
  std::size_t hand_ = 0;
};

}  // namespace zimbrat::jet

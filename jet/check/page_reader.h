// The pages of the file under check, decoded, through a cache of fixed size.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "platform/files.h"

namespace zimbrat::jet::check {

using PageBytes = std::array<std::byte, kPageSize>;
// Lasts as long as somebody holds it, whatever the cache does meanwhile.
using PageView = std::shared_ptr<const PageBytes>;

class PageReader {
 public:
  PageReader(platform::File& file, std::function<void()> pulse);

  void SetKey(std::uint32_t key) { key_ = key; }
  // A page that the file holds in part counts.
  PageNumber Count() const { return count_; }
  bool HasWholePages() const { return hasWholePages_; }
  bool Has(PageNumber page) const { return page < count_; }
  // The page must be in the file. What lies beyond its end is zero. Error 3043 when the disk gives less
  // than the file has.
  PageView Read(PageNumber page);

 private:
  struct Slot {
    PageNumber number = 0;
    PageView page;
  };

  Slot& SlotOf(PageNumber page) { return slots_[page % slots_.size()]; }
  void Load(PageNumber first, PageNumber count);

  platform::File& file_;
  std::function<void()> pulse_;
  std::uint32_t key_ = 0;
  std::uint64_t size_ = 0;
  PageNumber count_ = 0;
  bool hasWholePages_ = true;
  PageNumber next_ = 0;  // after the one read last
  std::uint64_t reads_ = 0;  // since the last pulse
  std::vector<std::byte> ahead_;
  std::vector<Slot> slots_;
};

}  // namespace zimbrat::jet::check

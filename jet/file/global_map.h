// The map of free pages (page 1, row 0): where every page comes from and goes back to. A set bit means
// free; all bits beyond the end of the file are set. Its own pages of bits stand in no map.
#pragma once

#include "jet/file/pager.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet {

class GlobalMap : public PageAllocator {
 public:
  explicit GlobalMap(Pager& pager) : pager_(pager), map_(pager, *this, {kGlobalMapPage, 0}) {}

  PageNumber Take() override;
  void Free(PageNumber page) override;

 private:
  bool IsCovered(PageNumber page);
  void Extend();

  Pager& pager_;
  UsageMap map_;
  PageNumber firstFree_ = 0;       // no page below it is free
  std::uint64_t generation_ = 0;   // of the pager, when firstFree_ was learnt
};

}  // namespace zimbrat::jet

// A usage map: which pages belong to a table, an index or a long-value column, or (the global map) which
// are free. Kept as a row on a data page of owner 0: inline (512 pages from a first page on) or as up to
// 17 references to pages of bits (type 5).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "jet/file/pager.h"

namespace zimbrat::jet {

// Page and slot of a row, as the file packs them: page << 8 | row.
struct RowPointer {
  PageNumber page = 0;
  std::uint8_t row = 0;

  std::uint32_t Packed() const { return page << 8 | row; }
  static RowPointer FromPacked(std::uint32_t packed) {
    return {packed >> 8, static_cast<std::uint8_t>(packed)};
  }
  bool IsNull() const { return page == 0; }
  auto operator<=>(const RowPointer&) const = default;
};

class UsageMap {
 public:
  // Nothing is read until the first question.
  UsageMap(Pager& pager, PageAllocator& allocator, RowPointer place)
      : pager_(&pager), allocator_(&allocator), place_(place) {}

  RowPointer Place() const { return place_; }
  bool Contains(PageNumber page) const;
  void Add(PageNumber page);
  void Remove(PageNumber page);
  // The first page of the map that is >= `from`.
  std::optional<PageNumber> Next(PageNumber from) const;
  // Every page, ascending. The map must not be changed meanwhile.
  void ForEach(const std::function<void(PageNumber)>& visit) const;
  // The pages of bits of a reference map, to be freed with the map.
  void ForEachBitsPage(const std::function<void(PageNumber)>& visit) const;

 private:
  bool ShiftWindow(PageRef& home, PageNumber page);
  void TurnIntoReference(PageRef& home);
  void AddToReference(PageRef& home, PageNumber page);

  Pager* pager_;
  PageAllocator* allocator_;
  RowPointer place_;
};

// A fresh page of bits (type 5), all clear or all set.
void InitBitsPage(Bytes page, bool ones);

}  // namespace zimbrat::jet

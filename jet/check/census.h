// Who holds which page and which row: nothing may be held twice, and nothing that is held may be
// free.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "jet/file/format.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet::check {

enum class PageUse : std::uint8_t {
  None,
  Fixed,
  Definition,
  Data,
  LongValues,
  Index,
  MapRows,
  MapBits
};

struct PageOwner {
  PageUse use = PageUse::None;
  PageNumber table = 0;   // its definition page; 0 where a page serves several tables
  std::uint8_t part = 0;  // which index or long-value column of the table

  bool operator==(const PageOwner&) const = default;
};

class PageCensus {
 public:
  explicit PageCensus(PageNumber count) : owners_(count), free_(count) {}

  // False when the page has an owner already. Pages of map rows may be claimed again.
  bool Claim(PageNumber page, const PageOwner& owner);
  PageOwner OwnerOf(PageNumber page) const;
  void MarkFree(PageNumber page) { free_[page] = true; }
  bool IsFree(PageNumber page) const { return free_[page]; }

 private:
  std::vector<std::uint32_t> owners_;  // use, part and table packed
  std::vector<bool> free_;
};

// A set of rows, by page and slot.
class RowSet {
 public:
  explicit RowSet(PageNumber pages) : places_(pages) {}

  // False when the row is in already. The page must be one of the file's.
  bool Add(RowPointer row);
  bool Contains(RowPointer row) const;
  void Clear();

 private:
  using Slots = std::array<std::uint64_t, 4>;

  std::vector<std::uint32_t> places_;  // 1 + position in slots_, 0: no row of the page
  std::vector<Slots> slots_;
  std::vector<PageNumber> pages_;  // whose rows stand in slots_
};

}  // namespace zimbrat::jet::check

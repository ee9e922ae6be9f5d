// Pages of rows (type 1): those of tables, usage maps and long values.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "checking.h"

namespace zimbrat::jet::check {

struct RowView {
  PageView page;
  ConstBytes bytes;
};

// As the page says, but never more than have room on it.
std::size_t SlotCount(ConstBytes page);
// kRowMoved, kRowHidden, both, or 0. The slot must be there.
std::uint16_t SlotFlags(ConstBytes page, std::size_t slot);
// Slots of rows that are there, wherever they were moved to.
std::size_t CountHomes(ConstBytes page);
// Nothing when the slot is not there or its offset is impossible.
std::optional<ConstBytes> FindRowBytes(ConstBytes page, std::size_t slot);
// The same for any pointer: nothing for pages that are outside the file or hold no rows either.
std::optional<RowView> FindRow(Checking& check, RowPointer row);

// Whether the row table and the free bytes fit together as on a sound page.
bool HasSoundRowTable(ConstBytes page);

// Where a row lies on a page whose row table may be damaged.
struct RowPlace {
  std::size_t start = 0;
  std::size_t end = 0;
  bool isStartKnown = false;
  bool isEndKnown = false;  // else the row ends somewhere before

  bool IsKnown() const { return isStartKnown && isEndKnown; }
};
// One for each slot that can be one. Offsets that cannot stand beside the most others are taken for
// damaged; with such an offset the end of the next row is unknown too.
std::vector<RowPlace> FindRowPlaces(ConstBytes page);

// Header, free bytes and row table. False when the rows must not be read.
bool CheckRowPage(Checking& check, const std::u16string& place, PageNumber number, ConstBytes page,
                  std::uint32_t owner);

}  // namespace zimbrat::jet::check

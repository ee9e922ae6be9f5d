// Rows on a data page (type 1), whatever they are: table rows, usage maps, long values.
//
//   offset  size  meaning
//   0       2     01 01
//   2       2     free bytes = lowest row start - (14 + 2 * rows)
//   4       4     owner: definition page; 0 for usage maps; "LVAL" for long values
//   12      2     number of row slots
//   14      2 a row   offset (lower 13 bits), 0x4000 moved, 0x8000 hidden, both: deleted
//
// Row 0 lies at the end of the page, each further row directly below; a row ends where the one before it
// starts. A slot's number never changes while its row lives.
#pragma once

#include <cstdint>
#include <optional>

#include "jet/file/bytes.h"
#include "jet/file/format.h"

namespace zimbrat::jet {

void InitDataPage(Bytes page, std::uint32_t owner);

// Error 3049 unless the page is a data page of this owner.
void RequireDataPage(ConstBytes page, PageNumber number, std::uint32_t owner);

std::size_t RowSlots(ConstBytes page);
// kRowMoved, kRowHidden, both or 0.
std::uint16_t RowFlags(ConstBytes page, std::size_t slot);
void SetRowFlags(Bytes page, std::size_t slot, std::uint16_t flags);

struct RowExtent {
  std::size_t offset = 0;
  std::size_t size = 0;
};
// Where a row lies. Error 3049 when the slot is not there or its offset is none.
RowExtent ExtentOfRow(ConstBytes page, std::size_t slot);
inline ConstBytes RowBytes(ConstBytes page, std::size_t slot) {
  const RowExtent extent = ExtentOfRow(page, slot);
  return page.subspan(extent.offset, extent.size);
}
inline Bytes RowBytes(Bytes page, std::size_t slot) {
  const RowExtent extent = ExtentOfRow(page, slot);
  return page.subspan(extent.offset, extent.size);
}

std::size_t FreeBytesOnPage(ConstBytes page);
// Room for one more row of `size` bytes and its slot.
bool HasRoomForRow(ConstBytes page, std::size_t size);
// The new row's slot; its bytes are to be filled by the caller. There must be room.
std::uint8_t AppendRow(Bytes page, std::size_t size);
// The row's new length; the rows below it move, the first min(old, new) bytes stay. There must be room.
void ResizeRow(Bytes page, std::size_t slot, std::size_t size);
// Gives the row's space back and marks the slot deleted.
void DeleteRow(Bytes page, std::size_t slot);
// No slot holds a live row.
bool IsEmptyOfRows(ConstBytes page);

}  // namespace zimbrat::jet

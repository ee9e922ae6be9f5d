#include "jet/file/data_page.h"

#include <algorithm>
#include <cstring>

#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

std::uint16_t Slot(ConstBytes page, std::size_t slot) {
  return Get16(page, kOffsetRowTable + kSizeRowSlot * slot);
}

void PutSlot(Bytes page, std::size_t slot, std::size_t offset, std::uint16_t flags) {
  Put16(page, kOffsetRowTable + kSizeRowSlot * slot, static_cast<std::uint16_t>(offset | flags));
}

std::size_t StartOfRow(ConstBytes page, std::size_t slot) { return Slot(page, slot) & kRowOffsetMask; }

std::size_t EndOfRow(ConstBytes page, std::size_t slot) {
  return slot == 0 ? kPageSize : StartOfRow(page, slot - 1);
}

std::size_t LowestStart(ConstBytes page) {
  const std::size_t rows = RowSlots(page);
  return rows == 0 ? kPageSize : StartOfRow(page, rows - 1);
}

std::size_t EndOfRowTable(std::size_t rows) { return kOffsetRowTable + kSizeRowSlot * rows; }

void PutFreeBytes(Bytes page) {
  Put16(page, kOffsetFreeBytes,
        static_cast<std::uint16_t>(LowestStart(page) - EndOfRowTable(RowSlots(page))));
}

}  // namespace

void InitDataPage(Bytes page, std::uint32_t owner) {
  std::fill(page.begin(), page.end(), std::byte{0});
  Put8(page, 0, kPageData);
  Put8(page, 1, 1);
  Put32(page, kOffsetOwner, owner);
  PutFreeBytes(page);
}

void RequireDataPage(ConstBytes page, PageNumber number, std::uint32_t owner) {
  if (Get8(page, 0) != kPageData) RaiseDamagedPage(number, u"nie jest stroną danych");
  if (Get32(page, kOffsetOwner) != owner) RaiseDamagedPage(number, u"należy do innego obiektu");
}

std::size_t RowSlots(ConstBytes page) {
  const std::size_t rows = Get16(page, kOffsetRowCount);
  if (EndOfRowTable(rows) > kPageSize) RaiseDamaged(u"tablica wierszy nie mieści się na stronie");
  return rows;
}

std::uint16_t RowFlags(ConstBytes page, std::size_t slot) {
  if (slot >= RowSlots(page)) RaiseDamaged(u"wskazany wiersz nie istnieje");
  return Slot(page, slot) & kRowDeleted;
}

void SetRowFlags(Bytes page, std::size_t slot, std::uint16_t flags) {
  PutSlot(page, slot, StartOfRow(page, slot), flags);
}

RowExtent ExtentOfRow(ConstBytes page, std::size_t slot) {
  const std::size_t rows = RowSlots(page);
  if (slot >= rows) RaiseDamaged(u"wskazany wiersz nie istnieje");
  const std::size_t start = StartOfRow(page, slot);
  const std::size_t end = EndOfRow(page, slot);
  if (start < EndOfRowTable(rows) || start > end || end > kPageSize) {
    RaiseDamaged(u"położenie wiersza na stronie jest niemożliwe");
  }
  return {start, end - start};
}

std::size_t FreeBytesOnPage(ConstBytes page) {
  const std::size_t table = EndOfRowTable(RowSlots(page));
  const std::size_t lowest = LowestStart(page);
  return lowest > table ? lowest - table : 0;
}

bool HasRoomForRow(ConstBytes page, std::size_t size) {
  return RowSlots(page) < kMaxRowSlots && FreeBytesOnPage(page) >= size + kSizeRowSlot;
}

std::uint8_t AppendRow(Bytes page, std::size_t size) {
  const std::size_t slot = RowSlots(page);
  const std::size_t start = LowestStart(page) - size;
  Put16(page, kOffsetRowCount, static_cast<std::uint16_t>(slot + 1));
  PutSlot(page, slot, start, 0);
  PutFreeBytes(page);
  return static_cast<std::uint8_t>(slot);
}

void ResizeRow(Bytes page, std::size_t slot, std::size_t size) {
  const RowExtent old = ExtentOfRow(page, slot);
  const std::size_t lowest = ExtentOfRow(page, RowSlots(page) - 1).offset;
  const auto shift = static_cast<std::ptrdiff_t>(old.size) - static_cast<std::ptrdiff_t>(size);
  if (lowest > old.offset || (size > old.size && size - old.size > FreeBytesOnPage(page))) {
    RaiseDamaged(u"wiersze strony nie leżą w kolejności");
  }
  // What lies below the row, and of the row itself the part that stays, moves up or down as one piece.
  const std::size_t moved = old.offset + std::min(old.size, size) - lowest;
  std::memmove(page.data() + static_cast<std::ptrdiff_t>(lowest) + shift, page.data() + lowest, moved);
  for (std::size_t i = slot; i < RowSlots(page); ++i) {
    const auto start = static_cast<std::ptrdiff_t>(StartOfRow(page, i)) + shift;
    PutSlot(page, i, static_cast<std::size_t>(start), RowFlags(page, i));
  }
  PutFreeBytes(page);
}

void DeleteRow(Bytes page, std::size_t slot) {
  ResizeRow(page, slot, 0);
  SetRowFlags(page, slot, kRowDeleted);
}

bool IsEmptyOfRows(ConstBytes page) {
  for (std::size_t slot = 0; slot < RowSlots(page); ++slot) {
    if (RowFlags(page, slot) != kRowDeleted) return false;
  }
  return true;
}

}  // namespace zimbrat::jet

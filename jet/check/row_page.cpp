#include "row_page.h"

#include <algorithm>

namespace zimbrat::jet::check {

namespace {

constexpr std::size_t kOffsetUnused = 8;
constexpr std::uint32_t kFirstTable = kObjectsPage;  // below it owners of map pages

std::uint16_t Slot(ConstBytes page, std::size_t slot) {
  return Get16(page, kOffsetRowTable + kSizeRowSlot * slot);
}

std::size_t StartOf(ConstBytes page, std::size_t slot) {
  return Slot(page, slot) & kRowOffsetMask;
}

// Maps and long values never move.
void CheckFlags(Checking& check, const std::u16string& place, PageNumber number, ConstBytes page) {
  for (std::size_t slot = 0; slot < SlotCount(page); ++slot) {
    const std::uint16_t flags = SlotFlags(page, slot);
    if (flags == 0 || flags == kRowDeleted) continue;
    check.PageError(place, number, TextOf(u"wiersz ", slot, u" ma flagi przeniesionego wiersza"));
  }
}

// Each row ends where the one before it starts.
bool CheckOffsets(Checking& check, const std::u16string& place, PageNumber number,
                  ConstBytes page) {
  const std::size_t slots = SlotCount(page);
  const std::size_t tableEnd = kOffsetRowTable + kSizeRowSlot * slots;
  std::size_t previous = kPageSize;
  for (std::size_t slot = 0; slot < slots; ++slot) {
    const std::size_t start = StartOf(page, slot);
    if (start > previous || start < tableEnd) {
      check.PageLoss(place, number,
                     TextOf(u"wiersz ", slot, u" leży w niemożliwym miejscu (", start, u")"));
      return false;
    }
    if ((Slot(page, slot) & ~(kRowOffsetMask | kRowDeleted)) != 0) {
      check.PageLoss(place, number, TextOf(u"wiersz ", slot, u" ma nieznaną flagę"));
    }
    previous = start;
  }
  if (Get32(page, kOffsetOwner) < kFirstTable || Get32(page, kOffsetOwner) == kOwnerLongValues) {
    CheckFlags(check, place, number, page);
  }
  const std::size_t free = Get16(page, kOffsetFreeBytes);
  if (free != previous - tableEnd) {
    check.PageError(place, number,
                    TextOf(u"liczba wolnych bajtów to ", free, u" zamiast ", previous - tableEnd));
  }
  return true;
}

}  // namespace

std::size_t SlotCount(ConstBytes page) {
  return std::min<std::size_t>(Get16(page, kOffsetRowCount),
                               (kPageSize - kOffsetRowTable) / kSizeRowSlot);
}

std::uint16_t SlotFlags(ConstBytes page, std::size_t slot) {
  return Slot(page, slot) & kRowDeleted;
}

std::size_t CountHomes(ConstBytes page) {
  std::size_t rows = 0;
  for (std::size_t slot = 0; slot < std::min(SlotCount(page), kMaxRowSlots); ++slot)
    rows += (SlotFlags(page, slot) & kRowHidden) == 0 ? 1 : 0;
  return rows;
}

std::optional<ConstBytes> FindRowBytes(ConstBytes page, std::size_t slot) {
  const std::size_t slots = SlotCount(page);
  if (slot >= slots) return std::nullopt;
  const std::size_t start = StartOf(page, slot);
  const std::size_t end = slot == 0 ? kPageSize : StartOf(page, slot - 1);
  if (start < kOffsetRowTable + kSizeRowSlot * slots || start > end || end > kPageSize)
    return std::nullopt;
  return page.subspan(start, end - start);
}

std::optional<RowView> FindRow(Checking& check, RowPointer row) {
  if (!check.pages.Has(row.page)) return std::nullopt;
  PageView page = check.pages.Read(row.page);
  if (Get8(*page, 0) != kPageData) return std::nullopt;
  const std::optional<ConstBytes> bytes = FindRowBytes(*page, row.row);
  if (!bytes) return std::nullopt;
  return RowView{std::move(page), *bytes};
}

bool HasSoundRowTable(ConstBytes page) {
  const std::size_t slots = SlotCount(page);
  if (slots == 0 || slots > kMaxRowSlots) return false;
  for (std::size_t slot = 0; slot < slots; ++slot) {
    if (!FindRowBytes(page, slot)) return false;
  }
  const std::size_t tableEnd = kOffsetRowTable + kSizeRowSlot * slots;
  return Get16(page, kOffsetFreeBytes) == StartOf(page, slots - 1) - tableEnd;
}

namespace {

// Where the row of a slot ends at least: only deleted ones may be empty.
std::size_t LeastEnd(ConstBytes page, std::size_t slot) {
  constexpr std::size_t kLeastRow = 3;  // count of columns and mask
  return StartOf(page, slot) + (SlotFlags(page, slot) == kRowDeleted ? 0 : kLeastRow);
}

// The slots that form the longest chain of rows one below the other, as those of a sound page do.
std::vector<bool> TrustedSlots(ConstBytes page, std::size_t slots) {
  std::vector<std::size_t> length(slots, 0), before(slots, slots);
  std::size_t best = slots;
  for (std::size_t i = 0; i < slots; ++i) {
    const std::size_t tableEnd = kOffsetRowTable + kSizeRowSlot * (i + 1);
    if (StartOf(page, i) < tableEnd || LeastEnd(page, i) > kPageSize) continue;
    length[i] = 1;
    for (std::size_t k = 0; k < i; ++k) {
      if (length[k] < length[i] || StartOf(page, k) < LeastEnd(page, i)) continue;
      length[i] = length[k] + 1;
      before[i] = k;
    }
    if (best == slots || length[i] > length[best]) best = i;
  }
  std::vector<bool> trusted(slots);
  for (std::size_t i = best; i != slots; i = before[i]) trusted[i] = true;
  return trusted;
}

// Where the number of rows is damaged, what follows the last slot is empty or the rows themselves.
void DropWhatIsNoSlot(ConstBytes page, std::vector<bool>& trusted) {
  std::size_t lowest = kPageSize;
  for (std::size_t slot = 0; slot < trusted.size(); ++slot) {
    if (trusted[slot]) lowest = StartOf(page, slot);
  }
  const auto isNone = [&](std::size_t slot) {
    return Slot(page, slot) == 0 || kOffsetRowTable + kSizeRowSlot * (slot + 1) > lowest;
  };
  while (!trusted.empty() && !trusted.back() && isNone(trusted.size() - 1)) trusted.pop_back();
}

}  // namespace

std::vector<RowPlace> FindRowPlaces(ConstBytes page) {
  const std::size_t count = std::min(SlotCount(page), kMaxRowSlots);
  const bool isSound = HasSoundRowTable(page);
  std::vector<bool> trusted = isSound ? std::vector<bool>(count, true) : TrustedSlots(page, count);
  if (!isSound) DropWhatIsNoSlot(page, trusted);
  std::vector<RowPlace> places;
  std::size_t end = kPageSize;
  bool knowsEnd = true;
  for (std::size_t slot = 0; slot < trusted.size(); ++slot) {
    const std::size_t start = StartOf(page, slot);
    places.push_back({start, end, trusted[slot], knowsEnd});
    knowsEnd = trusted[slot];
    if (trusted[slot]) end = start;
  }
  return places;
}

bool CheckRowPage(Checking& check, const std::u16string& place, PageNumber number, ConstBytes page,
                  std::uint32_t owner) {
  if (Get8(page, 0) != kPageData) {
    check.PageLoss(place, number,
                   TextOf(u"nie jest stroną wierszy (rodzaj ", Get8(page, 0), u")"));
    return false;
  }
  if (Get8(page, 1) != 1) check.PageError(place, number, u"drugi bajt strony jest różny od 1");
  if (Get32(page, kOffsetOwner) != owner) {
    check.PageLoss(place, number, u"strona podaje innego właściciela");
    return false;
  }
  if (owner != kOwnerLongValues && Get32(page, kOffsetUnused) != 0) {
    check.PageError(place, number, u"nieużywane pole nagłówka strony nie jest zerem");
  }
  if (Get16(page, kOffsetRowCount) > kMaxRowSlots) {
    check.PageLoss(place, number, TextOf(u"zbyt wiele wierszy: ", Get16(page, kOffsetRowCount)));
    return false;
  }
  return CheckOffsets(check, place, number, page);
}

}  // namespace zimbrat::jet::check

#include "jet/file/usage_map.h"

#include <algorithm>
#include <bit>

#include "jet/file/data_page.h"
#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

// A run of bits within a map: which pages it speaks of.
struct Window {
  PageNumber first = 0;
  std::uint32_t count = 0;
};

void PutBit(Bytes bits, std::uint32_t i, bool on) {
  const auto mask = static_cast<std::uint8_t>(1u << (i % 8));
  const std::uint8_t byte = Get8(bits, i / 8);
  Put8(bits, i / 8, on ? static_cast<std::uint8_t>(byte | mask) : static_cast<std::uint8_t>(byte & ~mask));
}

std::optional<std::uint32_t> NextBit(ConstBytes bits, std::uint32_t from) {
  for (std::size_t byte = from / 8; byte < bits.size(); ++byte) {
    unsigned value = Get8(bits, byte);
    if (byte == from / 8) value &= 0xFFu << (from % 8);
    if (value != 0) return static_cast<std::uint32_t>(byte * 8) + static_cast<unsigned>(std::countr_zero(value));
  }
  return std::nullopt;
}

ConstBytes MapRow(const PageRef& page, RowPointer place) {
  RequireDataPage(page.Read(), page.Number(), page.Number() == kGlobalMapPage ? kGlobalMapPage : 0);
  const ConstBytes row = RowBytes(page.Read(), place.row);
  const std::size_t least = row.empty() || Get8(row, 0) == kMapInline ? kOffsetMapBits : kSizeMapRow;
  if (row.size() < least || Get8(row, 0) > kMapReference) {
    RaiseDamagedPage(page.Number(), u"mapa stron jest nieczytelna");
  }
  return row;
}

Bytes ChangeMapRow(PageRef& page, RowPointer place) {
  MapRow(page, place);
  return RowBytes(page.Change(), place.row);
}

Window InlineWindow(ConstBytes row) {
  return {Get32(row, kOffsetMapFirstPage), static_cast<std::uint32_t>(row.size() - kOffsetMapBits) * 8};
}

bool Covers(const Window& window, PageNumber page) {
  return page >= window.first && page - window.first < window.count;
}

PageNumber BitsPage(ConstBytes row, std::size_t entry) {
  return Get32(row, kOffsetMapPages + 4 * entry);
}

PageRef GetBitsPage(Pager& pager, PageNumber number) {
  PageRef page = pager.Get(number);
  if (Get8(page.Read(), 0) != kPageMapBits) RaiseDamagedPage(number, u"nie jest stroną mapy");
  return page;
}

}  // namespace

void InitBitsPage(Bytes page, bool ones) {
  std::fill(page.begin(), page.end(), std::byte{0});
  Put8(page, 0, kPageMapBits);
  Put8(page, 1, 1);
  if (ones) {
    std::fill(page.begin() + kOffsetMapPageBits, page.end(), std::byte{0xFF});
  }
}

bool UsageMap::Contains(PageNumber page) const {
  const std::optional<PageNumber> next = Next(page);
  return next && *next == page;
}

std::optional<PageNumber> UsageMap::Next(PageNumber from) const {
  const PageRef home = pager_->Get(place_.page);
  const ConstBytes row = MapRow(home, place_);
  if (Get8(row, 0) == kMapInline) {
    const Window window = InlineWindow(row);
    const PageNumber start = std::max(from, window.first);
    if (!Covers(window, start)) return std::nullopt;
    const auto bit = NextBit(row.subspan(kOffsetMapBits), start - window.first);
    if (!bit) return std::nullopt;
    return window.first + *bit;
  }
  for (std::size_t entry = from / kMapPagePages; entry < kMapReferences; ++entry) {
    const PageNumber bitsPage = BitsPage(row, entry);
    if (bitsPage == 0) continue;
    const PageRef page = GetBitsPage(*pager_, bitsPage);
    const auto base = static_cast<PageNumber>(entry * kMapPagePages);
    const auto bit = NextBit(page.Read().subspan(kOffsetMapPageBits), from > base ? from - base : 0);
    if (bit) return base + *bit;
  }
  return std::nullopt;
}

void UsageMap::ForEach(const std::function<void(PageNumber)>& visit) const {
  for (auto page = Next(0); page; page = Next(*page + 1)) visit(*page);
}

void UsageMap::ForEachBitsPage(const std::function<void(PageNumber)>& visit) const {
  std::array<PageNumber, kMapReferences> pages{};
  {
    const PageRef home = pager_->Get(place_.page);
    const ConstBytes row = MapRow(home, place_);
    if (Get8(row, 0) != kMapReference) return;
    for (std::size_t entry = 0; entry < kMapReferences; ++entry) pages[entry] = BitsPage(row, entry);
  }
  for (const PageNumber page : pages) {
    if (page != 0) visit(page);
  }
}

void UsageMap::Remove(PageNumber page) {
  PageRef home = pager_->Get(place_.page);
  const ConstBytes row = MapRow(home, place_);
  if (Get8(row, 0) == kMapInline) {
    const Window window = InlineWindow(row);
    if (!Covers(window, page)) return;
    PutBit(ChangeMapRow(home, place_).subspan(kOffsetMapBits), page - window.first, false);
    return;
  }
  const std::size_t entry = page / kMapPagePages;
  if (entry >= kMapReferences || BitsPage(row, entry) == 0) return;
  PageRef bits = GetBitsPage(*pager_, BitsPage(row, entry));
  PutBit(bits.Change().subspan(kOffsetMapPageBits), page % kMapPagePages, false);
}

void UsageMap::Add(PageNumber page) {
  PageRef home = pager_->Get(place_.page);
  const ConstBytes row = MapRow(home, place_);
  if (Get8(row, 0) == kMapReference) {
    AddToReference(home, page);
    return;
  }
  if (!Covers(InlineWindow(row), page) && !ShiftWindow(home, page)) {
    TurnIntoReference(home);
    AddToReference(home, page);
    return;
  }
  const Bytes changed = ChangeMapRow(home, place_);
  PutBit(changed.subspan(kOffsetMapBits), page - InlineWindow(changed).first, true);
}

// Moves the window of an inline map so that it holds all its pages and `page`; false when it cannot.
bool UsageMap::ShiftWindow(PageRef& home, PageNumber page) {
  const ConstBytes row = MapRow(home, place_);
  const Window window = InlineWindow(row);
  PageNumber low = page, high = page;
  std::vector<PageNumber> pages;
  ForEach([&](PageNumber p) {
    pages.push_back(p);
    low = std::min(low, p);
    high = std::max(high, p);
  });
  const PageNumber first = low & ~PageNumber{7};
  if (high - first >= window.count) return false;
  const Bytes changed = ChangeMapRow(home, place_);
  Put32(changed, kOffsetMapFirstPage, first);
  const Bytes bits = changed.subspan(kOffsetMapBits);
  std::fill(bits.begin(), bits.end(), std::byte{0});
  for (const PageNumber p : pages) PutBit(bits, p - first, true);
  return true;
}

void UsageMap::TurnIntoReference(PageRef& home) {
  std::vector<PageNumber> pages;
  ForEach([&](PageNumber p) { pages.push_back(p); });
  const ConstBytes row = MapRow(home, place_);
  if (row.size() < kSizeMapRow) RaiseDamagedPage(home.Number(), u"mapa stron jest za krótka");
  const Bytes changed = ChangeMapRow(home, place_);
  std::fill(changed.begin(), changed.end(), std::byte{0});
  Put8(changed, 0, kMapReference);
  for (const PageNumber p : pages) AddToReference(home, p);
}

void UsageMap::AddToReference(PageRef& home, PageNumber page) {
  const std::size_t entry = page / kMapPagePages;
  if (entry >= kMapReferences) Raise(platform::kErrDatabaseFull);
  PageNumber bitsPage = BitsPage(MapRow(home, place_), entry);
  if (bitsPage == 0) {
    bitsPage = allocator_->Take();
    PageRef fresh = pager_->GetZeroed(bitsPage);
    InitBitsPage(fresh.Change(), false);
    Put32(ChangeMapRow(home, place_), kOffsetMapPages + 4 * entry, bitsPage);
  }
  PageRef bits = GetBitsPage(*pager_, bitsPage);
  PutBit(bits.Change().subspan(kOffsetMapPageBits), page % kMapPagePages, true);
}

}  // namespace zimbrat::jet

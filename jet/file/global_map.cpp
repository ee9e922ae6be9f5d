#include "jet/file/global_map.h"

#include <algorithm>
#include <optional>

#include "jet/file/data_page.h"
#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

// Clears the bits below `end` and keeps what `row` (an inline map from page 0 on) says of them.
void CopyInlineBits(ConstBytes row, Bytes bitsPage) {
  std::copy(row.begin() + kOffsetMapBits, row.end(), bitsPage.begin() + kOffsetMapPageBits);
}

}  // namespace

PageNumber GlobalMap::Take() {
  if (generation_ != pager_.Generation()) {
    generation_ = pager_.Generation();
    firstFree_ = 0;
  }
  const std::optional<PageNumber> free = map_.Next(firstFree_);
  if (free && *free < pager_.PageCount()) {
    firstFree_ = *free + 1;
    map_.Remove(*free);
    pager_.GetZeroed(*free);
    return *free;
  }
  while (!IsCovered(pager_.PageCount())) Extend();
  const PageNumber page = pager_.PageCount();
  pager_.GetZeroed(page);
  map_.Remove(page);
  firstFree_ = page + 1;
  return page;
}

void GlobalMap::Free(PageNumber page) {
  if (page <= kRelationshipsPage || page >= pager_.PageCount()) {
    RaiseDamagedPage(page, u"nie może zostać zwolniona");
  }
  pager_.GetZeroed(page);
  map_.Add(page);
  firstFree_ = std::min(firstFree_, page);
}

bool GlobalMap::IsCovered(PageNumber page) {
  const PageRef home = pager_.Get(kGlobalMapPage);
  const ConstBytes row = RowBytes(home.Read(), 0);
  if (row.size() < kSizeMapRow) RaiseDamagedPage(kGlobalMapPage, u"mapa wolnych stron jest za krótka");
  if (Get8(row, 0) == kMapInline) {
    const PageNumber first = Get32(row, kOffsetMapFirstPage);
    if (first != 0) RaiseDamagedPage(kGlobalMapPage, u"mapa wolnych stron jest przesunięta");
    return page < (row.size() - kOffsetMapBits) * 8;
  }
  const std::size_t entry = page / kMapPagePages;
  if (entry >= kMapReferences) Raise(platform::kErrDatabaseFull);
  return Get32(row, kOffsetMapPages + 4 * entry) != 0;
}

// The page after the file's end becomes a page of bits: all ones, its own bit clear, and, for the first
// one, what the inline map said of the pages before.
void GlobalMap::Extend() {
  const PageNumber number = pager_.PageCount();
  PageRef bits = pager_.GetZeroed(number);
  InitBitsPage(bits.Change(), true);
  PageRef home = pager_.Get(kGlobalMapPage);
  const Bytes row = RowBytes(home.Change(), 0);
  if (Get8(row, 0) == kMapInline) {
    CopyInlineBits(row, bits.Change());
    std::fill(row.begin(), row.end(), std::byte{0});
    Put8(row, 0, kMapReference);
  }
  Put32(row, kOffsetMapPages + 4 * (number / kMapPagePages), number);
  map_.Remove(number);
}

}  // namespace zimbrat::jet

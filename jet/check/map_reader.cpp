#include "map_reader.h"

#include <bit>
#include <optional>

#include "row_page.h"

namespace zimbrat::jet::check {

namespace {

using Visit = std::function<void(PageNumber)>;

// Returns the map's row once it is known to be one, and nobody else's.
std::optional<RowView> TakeMapRow(Checking& check, const std::u16string& place, RowPointer map) {
  const std::uint32_t owner = map.page == kGlobalMapPage ? kGlobalMapPage : 0;
  if (!check.Claim(place, map.page, {PageUse::MapRows})) return std::nullopt;
  const PageView page = check.pages.Read(map.page);
  // The page is checked when its first map is met.
  if (check.heldRows.Add({map.page, kWholePage}) &&
      !CheckRowPage(check, place, map.page, *page, owner)) {
    return std::nullopt;
  }
  const std::optional<RowView> row = FindRow(check, map);
  if (!row || SlotFlags(*page, map.row) != 0) {
    check.PageLoss(place, map.page, TextOf(u"mapy stron ", map.row, u" nie ma"));
    return std::nullopt;
  }
  if (!check.heldRows.Add(map)) {
    check.PageLoss(place, map.page, TextOf(u"mapa stron ", map.row, u" ma dwóch właścicieli"));
    return std::nullopt;
  }
  return row;
}

class MapWalk {
 public:
  // A peek claims and reports nothing.
  MapWalk(Checking& check, const std::u16string& place, RowPointer map, const Visit& visit,
          bool isPeek = false)
      : check_(check), place_(place), map_(map), visit_(visit), isPeek_(isPeek) {}

  void Walk(ConstBytes row);
  bool HasFailed() const { return hasFailed_; }

 private:
  void WalkBits(ConstBytes bits, std::uint64_t first);
  void WalkReferences(ConstBytes row);
  void WalkReference(std::size_t i, PageNumber number);
  bool IsLikelyStart(PageNumber first) const;
  void Warn(const std::u16string& text) {
    check_.report.Warning(TextOf(place_, u", strona ", map_.page), TextOf(u"mapa stron ", map_.row, text));
  }
  void Fault(std::u16string text) { Fault(map_.page, std::move(text)); }
  void Fault(PageNumber page, std::u16string text) {
    hasFailed_ = true;
    if (!isPeek_) check_.PageLoss(place_, page, std::move(text));
  }

  Checking& check_;
  const std::u16string& place_;
  RowPointer map_;
  const Visit& visit_;
  bool isPeek_;
  bool hasFailed_ = false;
};

void MapWalk::WalkBits(ConstBytes bits, std::uint64_t first) {
  for (std::size_t i = 0; i < bits.size(); ++i) {
    for (unsigned byte = Get8(bits, i); byte != 0; byte &= byte - 1) {
      const std::uint64_t page = first + 8 * i + static_cast<unsigned>(std::countr_zero(byte));
      if (page >= kMaxPages)
        return Fault(TextOf(u"mapa stron ", map_.row, u" sięga poza granicę pliku"));
      visit_(static_cast<PageNumber>(page));
    }
  }
}

void MapWalk::WalkReferences(ConstBytes row) {
  if (row.size() < kSizeMapRow) return Fault(TextOf(u"mapa stron ", map_.row, u" jest za krótka"));
  bool hasPages = false;
  for (std::size_t i = 0; i < kMapReferences; ++i) {
    const PageNumber number = Get32(row, kOffsetMapPages + 4 * i);
    hasPages = hasPages || number != 0;
    if (number != 0) WalkReference(i, number);
  }
  if (!hasPages && !isPeek_) Warn(u" nie wskazuje żadnej strony mapy");
}

void MapWalk::WalkReference(std::size_t i, PageNumber number) {
  if (!isPeek_ && !check_.Claim(place_, number, {PageUse::MapBits})) return;
  if (!check_.pages.Has(number)) return Fault(number, u"strony mapy nie ma w pliku");
  const PageView page = check_.pages.Read(number);
  if (Get8(*page, 0) != kPageMapBits || Get8(*page, 1) != 1) {
    return Fault(number, u"nie jest stroną mapy");
  }
  WalkBits(ConstBytes(*page).subspan(kOffsetMapPageBits), i * std::uint64_t{kMapPagePages});
}

// A window begins at the file's start unless it has to reach beyond the pages that it shows from there.
bool MapWalk::IsLikelyStart(PageNumber first) const {
  if (first == 0) return true;
  const PageNumber count = check_.pages.Count();
  return map_.page != kGlobalMapPage && first % 8 == 0 && first < count && count > kMapInlinePages;
}

void MapWalk::Walk(ConstBytes row) {
  if (row.size() != kSizeMapRow)
    Fault(TextOf(u"mapa stron ", map_.row, u" ma ", row.size(), u" bajtów"));
  if (!row.empty() && Get8(row, 0) == kMapReference) return WalkReferences(row);
  if (row.size() < kOffsetMapBits || Get8(row, 0) != kMapInline) {
    return Fault(TextOf(u"mapa stron ", map_.row, u" jest nieznanego rodzaju"));
  }
  const PageNumber first = Get32(row, kOffsetMapFirstPage);
  if (!isPeek_ && !IsLikelyStart(first)) {
    Warn(TextOf(u" zaczyna się od strony ", first));
  }
  WalkBits(row.subspan(kOffsetMapBits), first);
}

}  // namespace

void ReadUsageMap(Checking& check, const std::u16string& place, RowPointer map,
                  const Visit& visit) {
  const std::optional<RowView> row = TakeMapRow(check, place, map);
  if (!row) return;
  bool saidSo = false;
  const Visit inFile = [&](PageNumber page) {
    if (check.pages.Has(page)) return visit(page);
    if (!saidSo)
      check.PageLoss(place, map.page,
                      TextOf(u"mapa stron ", map.row, u" zawiera strony spoza pliku"));
    saidSo = true;
  };
  MapWalk(check, place, map, inFile).Walk(row->bytes);
}

bool PeekUsageMap(Checking& check, RowPointer map, const Visit& visit) {
  const std::optional<RowView> row = FindRow(check, map);
  if (!row || SlotFlags(*row->page, map.row) != 0) return false;
  const std::uint32_t owner = map.page == kGlobalMapPage ? kGlobalMapPage : 0;
  if (Get32(*row->page, kOffsetOwner) != owner) return false;
  const std::u16string place;
  MapWalk walk(check, place, map, visit, true);
  walk.Walk(row->bytes);
  return !walk.HasFailed();
}

void ReadGlobalMaps(Checking& check, RowPointer freePages, RowPointer second) {
  const std::u16string place = u"mapa wolnych stron";
  if (const std::optional<RowView> row = TakeMapRow(check, place, freePages)) {
    // Beyond the end of the file all pages are free, as far as the map speaks of them.
    PageNumber next = check.pages.Count();
    bool hasGap = false;
    MapWalk(check, place, freePages, [&](PageNumber page) {
      if (check.pages.Has(page)) return check.census.MarkFree(page);
      hasGap = hasGap || page != next;
      next = page + 1;
    }).Walk(row->bytes);
    const bool isInline = row->bytes.size() > kOffsetMapBits && Get8(row->bytes, 0) == kMapInline;
    const std::uint64_t covered = isInline ? (row->bytes.size() - kOffsetMapBits) * 8 : 0;
    if (hasGap || next < covered) {
      check.report.Warning(TextOf(place, u", strona ", freePages.page),
                           u"strony za końcem pliku nie są wolne");
    }
  }
  bool isEmpty = true;
  ReadUsageMap(check, u"druga mapa pliku", second, [&](PageNumber) { isEmpty = false; });
  if (!isEmpty) check.report.Warning(u"druga mapa pliku", u"mapa nie jest pusta");
}

}  // namespace zimbrat::jet::check

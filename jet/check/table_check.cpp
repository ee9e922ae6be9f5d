#include "table_check.h"

#include <algorithm>

#include "index_check.h"
#include "map_reader.h"

namespace zimbrat::jet::check {

namespace {

std::u16string PlaceOfIndex(const TableLayout& table, const IndexLayout& index) {
  return TextOf(table.place, u", indeks „", index.name, u"”");
}

}  // namespace

void TableCheck::RowError(RowPointer row, std::u16string text) {
  check_.PageLoss(table_.place, row.page, TextOf(u"wiersz ", row.row, u": ", text));
}

void TableCheck::ReadMaps() {
  ReadUsageMap(check_, table_.place, table_.ownedMap, [&](PageNumber page) {
    if (check_.Claim(table_.place, page, {PageUse::Data, table_.page})) pages_.push_back(page);
  });
  std::vector<PageNumber> withRoom;
  ReadUsageMap(check_, table_.place, table_.freeMap, [&](PageNumber page) {
    withRoom.push_back(page);
    const PageOwner owner = check_.census.OwnerOf(page);
    if (owner.use != PageUse::Data || owner.table != table_.page) {
      check_.PageError(table_.place, page, u"strona z wolnym miejscem nie należy do tabeli");
    }
  });
  CheckRoom(std::move(withRoom));
  ReadLongValueMaps();
}

// How full a page is when it leaves the map of room is the writer's affair; one with more than half of it left has
// not, unless it has no slot left. Of long values real files have maps that do not tell of such pages.
void TableCheck::CheckRoom(std::vector<PageNumber> withRoom) {
  std::ranges::sort(withRoom);
  for (const PageNumber number : pages_) {
    if (std::ranges::binary_search(withRoom, number)) continue;
    const PageView page = check_.pages.Read(number);
    if (Get8(*page, 0) != kPageData || Get16(*page, kOffsetFreeBytes) < kPageSize / 2 ||
        SlotCount(*page) >= kMaxRowSlots) {
      continue;
    }
    check_.report.Warning(TextOf(table_.place, u", strona ", number),
                          u"strona ma wolne miejsce, a mapa wolnego miejsca jej nie podaje");
  }
}

void TableCheck::ReadLongValueMaps() {
  for (std::size_t i = 0; i < table_.longValueMaps.size(); ++i) {
    const LongValueMapsLayout& maps = table_.longValueMaps[i];
    const PageOwner owner{PageUse::LongValues, table_.page, static_cast<std::uint8_t>(i)};
    // System tables that were added later have columns without maps.
    if (!maps.owned.IsNull()) {
      ReadUsageMap(check_, table_.place, maps.owned, [&](PageNumber page) {
        if (!check_.Claim(table_.place, page, owner)) return;
        CheckRowPage(check_, table_.place, page, *check_.pages.Read(page), kOwnerLongValues);
        valuePages_.push_back(page);
      });
    }
    if (!maps.free.IsNull()) {
      ReadUsageMap(check_, table_.place, maps.free, [&](PageNumber page) {
        if (check_.census.OwnerOf(page) == owner) return;
        check_.PageError(table_.place, page, u"strona z wolnym miejscem nie należy do kolumny");
      });
    }
  }
}

void TableCheck::CheckPage(PageNumber number, const RowVisit& visit) {
  const PageView page = check_.pages.Read(number);
  if (!CheckRowPage(check_, table_.place, number, *page, table_.page)) return;
  for (std::size_t slot = 0; slot < SlotCount(*page) && !check_.report.IsFull(); ++slot) {
    const std::uint16_t flags = SlotFlags(*page, slot);
    if (flags == 0 || flags == kRowMoved) {
      CheckHome({number, static_cast<std::uint8_t>(slot)}, flags, visit);
    }
  }
}

bool TableCheck::FollowMove(RowPointer home, ConstBytes pointer) {
  if (pointer.size() < sizeof(std::uint32_t)) {
    RowError(home, u"wskaźnik przeniesionego wiersza jest za krótki");
    return false;
  }
  const RowPointer far = RowPointer::FromPacked(Get32(pointer, 0));
  if (!FindHomeRow(check_, table_.page, home)) {
    RowError(home,
             TextOf(u"przeniesionego wiersza nie ma: strona ", far.page, u", wiersz ", far.row));
    return false;
  }
  if (!check_.heldRows.Add(far)) {
    RowError(home, TextOf(u"na wiersz ", far.row, u" strony ", far.page, u" wskazują dwa wiersze"));
    return false;
  }
  return true;
}

void TableCheck::CheckHome(RowPointer home, std::uint16_t flags, const RowVisit& visit) {
  ++rows_;
  const std::optional<RowView> stored = FindRow(check_, home);
  if (!stored) return;
  if (flags == 0) return CheckRow(home, stored->bytes, visit);
  if (!FollowMove(home, stored->bytes)) return;
  if (const std::optional<RowView> far = FindHomeRow(check_, table_.page, home)) {
    CheckRow(home, far->bytes, visit);
  }
}

void TableCheck::CheckRow(RowPointer home, ConstBytes row, const RowVisit& visit) {
  RowParts parts;
  if (const std::u16string fault = parts.Parse(table_, row); !fault.empty())
    return RowError(home, fault);
  bool isSound = true;
  for (const ColumnLayout& column : table_.columns) {
    const std::optional<ConstBytes> field = parts.Field(column);
    if (!field) continue;
    if (const std::u16string fault = CheckField(check_, table_, column, *field); !fault.empty()) {
      RowError(home, fault);
      isSound = false;
    }
  }
  for (std::size_t i = 0; i < table_.indexes.size(); ++i) {
    if (!NeedsEntry(table_, table_.indexes[i], parts)) continue;
    ++entriesExpected_[i];
    if (isSound && indexColumns_[i].AreComparable()) indexColumns_[i].AddEntry(check_, parts, home, entrySums_[i]);
  }
  if (isSound && visit) visit(parts);
}

// A row with the hidden flag alone is the far half of a moved one, whose home slot was met before.
void TableCheck::CheckHiddenRows() {
  for (const PageNumber number : pages_) {
    const PageView page = check_.pages.Read(number);
    if (Get8(*page, 0) != kPageData) continue;
    const std::size_t slots = std::min(SlotCount(*page), kMaxRowSlots);
    for (std::size_t slot = 0; slot < slots; ++slot) {
      const RowPointer row{number, static_cast<std::uint8_t>(slot)};
      if (SlotFlags(*page, slot) != kRowHidden || check_.heldRows.Contains(row)) continue;
      RowError(row, u"na przeniesiony wiersz nic nie wskazuje");
    }
  }
}

void TableCheck::CheckRowCount() {
  if (rows_ == table_.rows || !table_.HasReliableRowCount()) return;
  check_.PageError(table_.place, table_.page,
                   TextOf(u"definicja podaje ", table_.rows, u" wierszy, a jest ich ", rows_));
}

void TableCheck::CheckIndexes() {
  for (std::size_t i = 0; i < table_.indexes.size() && !check_.report.IsFull(); ++i) {
    IndexCheck index(check_, table_, i, PlaceOfIndex(table_, table_.indexes[i]));
    index.Run(entrySums_[i]);
    if (index.Entries() == entriesExpected_[i]) continue;
    check_.Error(PlaceOfIndex(table_, table_.indexes[i]),
                 TextOf(u"indeks ma ", index.Entries(), u" wpisów zamiast ", entriesExpected_[i]));
    for (const PageNumber page : pages_) index.NameMissing(page);
  }
}

void TableCheck::Run(const RowVisit& visit) {
  entriesExpected_.assign(table_.indexes.size(), 0);
  entrySums_.assign(table_.indexes.size(), {});
  for (const IndexLayout& index : table_.indexes) indexColumns_.emplace_back(table_, index);
  ReadMaps();
  for (const PageNumber page : pages_) {
    if (check_.report.IsFull()) return;
    CheckPage(page, visit);
  }
  CheckHiddenRows();
  if (check_.options.reportUnused) {
    for (const PageNumber page : valuePages_) check_.NameUnusedRows(table_.place, page);
  }
  CheckRowCount();
  CheckIndexes();
}

}  // namespace zimbrat::jet::check

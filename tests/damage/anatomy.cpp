#include "anatomy.h"

#include <algorithm>

#include "jet/file/data_page.h"
#include "jet/table/long_values.h"
#include "jet/table/table.h"
#include "platform/text.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

std::string HexText(ConstBytes bytes) {
  constexpr char kHex[] = "0123456789abcdef";
  std::string text = "x";
  for (const std::byte byte : bytes) {
    text += kHex[std::to_integer<unsigned>(byte >> 4)];
    text += kHex[std::to_integer<unsigned>(byte & std::byte{15})];
  }
  return text;
}

class Dissection {
 public:
  explicit Dissection(DatabaseFile& database) : database_(database), pager_(database.Pages()) {}

  Anatomy Run();

 private:
  void TakeMap(MapKind kind, RowPointer place, PageKind content, PageNumber table);
  void TakeTable(const CatalogObject& object);
  RowAnatomy RowOf(Table& table, const RowScan& scan);
  void FollowValue(ConstBytes descriptor, FieldAnatomy& field);
  void Put(PageNumber page, const PageAnatomy& what) { result_.pages[page] = what; }

  DatabaseFile& database_;
  Pager& pager_;
  Anatomy result_;
};

void Dissection::TakeMap(MapKind kind, RowPointer place, PageKind content, PageNumber table) {
  if (place.IsNull()) return;
  Put(place.page, {PageKind::MapRows});
  result_.maps.push_back({kind, place, table});
  UsageMap map(pager_, database_.Allocator(), place);
  map.ForEachBitsPage([&](PageNumber page) { Put(page, {PageKind::MapBits, table}); });
  if (content == PageKind::Unused) return;
  map.ForEach([&](PageNumber page) { Put(page, {content, table}); });
}

void Dissection::FollowValue(ConstBytes descriptor, FieldAnatomy& field) {
  const std::uint32_t kind = Get32(descriptor, 0) & ~kLongValueLengthMask;
  if (kind == kLongValueInline) return;
  RowPointer row = RowPointer::FromPacked(Get32(descriptor, sizeof(std::uint32_t)));
  while (!row.IsNull()) {
    field.pages.insert(row.page);
    result_.valueRows.insert(row);
    if (kind == kLongValueSingle) return;
    const PageRef page = pager_.Get(row.page);
    row = RowPointer::FromPacked(Get32(RowBytes(page.Read(), row.row), 0));
  }
}

RowAnatomy Dissection::RowOf(Table& table, const RowScan& scan) {
  RowAnatomy row;
  row.home = row.place = scan.Place().page;
  const PageRef home = pager_.Get(scan.Place().page);
  if (RowFlags(home.Read(), scan.Place().row) == kRowMoved)
    row.place = RowPointer::FromPacked(Get32(RowBytes(home.Read(), scan.Place().row), 0)).page;
  const TableDefinition& d = table.Definition();
  for (std::size_t i = 0; i < d.columns.size(); ++i) {
    const FieldBytes& bytes = scan.Fields()[i];
    FieldAnatomy field{d.columns[i].IsLongValue(), "-", {}};
    if (bytes.present && field.isLongValue) {
      field.text = HexText(LoadLongValue(table.GetStorage(), bytes.bytes));
      FollowValue(bytes.bytes, field);
    } else if (bytes.present) {
      field.text = HexText(bytes.bytes);
    }
    row.fields.push_back(std::move(field));
  }
  return row;
}

void Dissection::TakeTable(const CatalogObject& object) {
  const auto page = static_cast<PageNumber>(object.id);
  const TableDefinition d = ReadDefinition(pager_, page);
  for (const PageNumber part : DefinitionPages(pager_, page)) Put(part, {PageKind::Definition, page, part == page});
  TakeMap(MapKind::Owned, d.ownedMap, PageKind::Data, page);
  TakeMap(MapKind::Room, d.freeMap, PageKind::Unused, page);
  for (const RealIndex& index : d.realIndexes) TakeMap(MapKind::Index, index.map, PageKind::Index, page);
  for (const LongValueMaps& maps : d.longValueMaps) {
    TakeMap(MapKind::ValuesOwned, maps.owned, PageKind::LongValues, page);
    TakeMap(MapKind::ValuesRoom, maps.free, PageKind::Unused, page);
  }
  TableAnatomy& table = result_.tables[page];
  table.page = page;
  table.name = platform::Utf8FromUtf16(object.name);
  const auto opened = database_.GetCatalog().Open(page);
  for (RowScan scan(*opened); scan.Next();) table.rows.push_back(RowOf(*opened, scan));
}

Anatomy Dissection::Run() {
  result_.pages.resize(pager_.PageCount());
  Put(0, {PageKind::Header});
  TakeMap(MapKind::Free, {kGlobalMapPage, 0}, PageKind::Unused, 0);
  TakeMap(MapKind::Second, {kGlobalMapPage, 1}, PageKind::Unused, 0);
  for (const CatalogObject& object : database_.GetCatalog().Objects()) {
    if (object.Is(ObjectType::Table)) TakeTable(object);
  }
  return std::move(result_);
}

}  // namespace

std::string RowAnatomy::Text() const {
  std::string text;
  for (const FieldAnatomy& field : fields) text += field.text + "|";
  return text;
}

std::string RowAnatomy::TextWithoutValues() const {
  std::string text;
  for (const FieldAnatomy& field : fields) text += field.isLongValue ? "*|" : field.text + "|";
  return text;
}

const TableAnatomy* Anatomy::FindTable(const std::string& name) const {
  const auto found =
      std::ranges::find_if(tables, [&](const auto& entry) { return entry.second.name == name; });
  return found == tables.end() ? nullptr : &found->second;
}

Anatomy DissectDatabase(DatabaseFile& database) {
  return Dissection(database).Run();
}

}  // namespace zimbrat::tests

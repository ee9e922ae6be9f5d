#include "contents.h"

#include <algorithm>
#include <sstream>

#include "jet/table/long_values.h"
#include "jet/table/table.h"
#include "platform/text.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;
using platform::Utf8FromUtf16;

namespace {

class Reader {
 public:
  explicit Reader(DatabaseFile& database)
      : database_(database), objects_(database.GetCatalog().Objects()) {}

  Contents Read();

 private:
  std::string NameOf(std::int32_t id) const;
  std::vector<std::string> DefinitionOf(Table& table) const;
  std::vector<std::string> RowsOf(Table& table) const;
  std::string FieldText(Table& table, std::size_t column, const FieldBytes& field) const;

  DatabaseFile& database_;
  std::vector<CatalogObject> objects_;
};

// Of tables; other objects keep their ids.
std::string Reader::NameOf(std::int32_t id) const {
  for (const CatalogObject& object : objects_) {
    if (object.id == id && object.Is(ObjectType::Table)) return Utf8FromUtf16(object.name);
  }
  return std::to_string(id);
}

std::vector<std::string> Reader::DefinitionOf(Table& table) const {
  const TableDefinition& d = table.Definition();
  std::vector<std::string> lines;
  const auto add = [&](const auto&... parts) {
    std::ostringstream line;
    line << lines.size() << ' ';
    ((line << parts << ' '), ...);
    lines.push_back(line.str());
  };
  add("table", +d.tableType, d.maxColumns, d.variableColumns, d.counter);
  for (const Column& c : d.columns) {
    add("column", Utf8FromUtf16(c.name), +c.type, c.id, c.variableIndex, c.displayOrder, c.extra,
        +c.flags, +c.flags2, c.length);
  }
  for (const RealIndex& index : d.realIndexes) {
    std::string columns;
    for (const IndexColumn& c : index.columns)
      columns += std::to_string(c.columnId) + (c.ascending ? "+" : "-");
    add("index", columns, +index.flags);
  }
  for (const LogicalIndex& i : d.logicalIndexes) {
    add("name", Utf8FromUtf16(i.name), i.number, i.realIndex, +i.end, i.otherNumber, +i.kind,
        +i.cascadeUpdate, +i.cascadeDelete,
        i.IsRelation() ? NameOf(static_cast<std::int32_t>(i.otherTable)) : "");
  }
  return lines;
}

std::string Reader::FieldText(Table& table, std::size_t position, const FieldBytes& field) const {
  const Column& column = table.Definition().columns[position];
  if (!field.present) return "-";
  const bool isObjectId = (table.Page() == kObjectsPage && column.name == u"Id") ||
                          (table.Page() == kAcesPage && column.name == u"ObjectId");
  if (isObjectId) return NameOf(GetLittle<std::int32_t>(field.bytes, 0));
  const std::vector<std::byte> bytes =
      column.IsLongValue() ? LoadLongValue(table.GetStorage(), field.bytes) : field.bytes;
  std::string text = "x";
  for (const std::byte byte : bytes) {
    constexpr char kHex[] = "0123456789abcdef";
    text += kHex[std::to_integer<unsigned>(byte >> 4)];
    text += kHex[std::to_integer<unsigned>(byte & std::byte{15})];
  }
  return text;
}

std::vector<std::string> Reader::RowsOf(Table& table) const {
  std::vector<std::string> rows;
  for (RowScan scan(table); scan.Next();) {
    std::string row;
    for (std::size_t i = 0; i < scan.Fields().size(); ++i)
      row += FieldText(table, i, scan.Fields()[i]) + "|";
    rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

Contents Reader::Read() {
  Contents contents;
  for (const CatalogObject& object : objects_) {
    if (!object.Is(ObjectType::Table)) continue;
    const auto table = database_.GetCatalog().Open(static_cast<PageNumber>(object.id));
    contents[Utf8FromUtf16(object.name)] = {DefinitionOf(*table), RowsOf(*table)};
  }
  return contents;
}

}  // namespace

std::string DifferenceOf(const Contents& before, const Contents& after) {
  constexpr std::size_t kMostText = 2000;
  std::string text;
  const auto add = [&](const char* sign, const Contents& a, const Contents& b) {
    for (const auto& [name, table] : a) {
      const auto found = b.find(name);
      TableContents other = found == b.end() ? TableContents() : found->second;
      const auto compare = [&](const std::vector<std::string>& lines,
                               std::vector<std::string> others) {
        for (const std::string& line : lines) {
          const auto same = std::find(others.begin(), others.end(), line);
          if (same == others.end()) text += sign + name + ": " + line + "\n";
          if (same != others.end()) others.erase(same);
        }
      };
      compare(table.definition, other.definition);
      compare(table.rows, other.rows);
    }
  };
  add("- ", before, after);
  add("+ ", after, before);
  return text.substr(0, kMostText);
}

Contents ReadContents(DatabaseFile& database) {
  return Reader(database).Read();
}

}  // namespace zimbrat::tests

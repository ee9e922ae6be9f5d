#include "layout_faults.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "jet/index/key.h"

namespace zimbrat::jet::check {

namespace {

class LayoutCheck {
 public:
  LayoutCheck(const TableLayout& table, LayoutFaults& faults) : table_(table), faults_(faults) {}

  void CheckColumns();
  void CheckIndexes();
  void CheckLogicals();
  void CheckLongValueMaps();

 private:
  void CheckColumn(const ColumnLayout& column);

  const TableLayout& table_;
  LayoutFaults& faults_;
};

void LayoutCheck::CheckColumn(const ColumnLayout& column) {
  const std::size_t size = column.FixedSize();
  if (!IsKnownType(column.type))
    faults_.Loss(TextOf(u"kolumna „", column.name, u"” jest nieznanego typu ", column.type));
  if (column.id >= table_.maxColumns)
    faults_.Error(TextOf(u"kolumna „", column.name, u"” ma numer ", column.id));
  if (column.name.empty() || column.name.size() > kMaxNameLength) {
    faults_.Error(TextOf(u"nazwa kolumny ", column.id, u" ma ", column.name.size(), u" znaków"));
  }
  if (!column.IsFixed() && column.variableIndex >= table_.variableColumns) {
    faults_.Error(TextOf(u"kolumna „", column.name, u"” ma miejsce zmienne ", column.variableIndex));
  }
  if (size != 0 && column.length != size) {
    faults_.Error(TextOf(u"kolumna „", column.name, u"” ma długość ", column.length, u" zamiast ", size));
  }
  if (column.IsFixed() && column.fixedOffset + std::size_t{column.length} > kMaxRowSize) {
    faults_.Error(TextOf(u"kolumna „", column.name, u"” leży poza wierszem"));
  }
  if ((column.IsBoolean() && !column.IsFixed()) || (column.IsFixed() && column.IsLongValue())) {
    faults_.Error(TextOf(u"kolumna „", column.name, u"” ma flagi niezgodne z typem"));
  }
}

void LayoutCheck::CheckColumns() {
  std::set<std::uint16_t> ids, variable;
  std::vector<std::pair<std::size_t, std::size_t>> fixed;
  for (const ColumnLayout& column : table_.columns) {
    CheckColumn(column);
    if (!ids.insert(column.id).second) faults_.Error(TextOf(u"dwie kolumny mają numer ", column.id));
    if (!column.IsFixed() && !variable.insert(column.variableIndex).second) {
      faults_.Error(TextOf(u"dwie kolumny mają miejsce zmienne ", column.variableIndex));
    }
    if (column.IsFixed() && !column.IsBoolean())
      fixed.push_back({column.fixedOffset, column.length});
  }
  std::sort(fixed.begin(), fixed.end());
  for (std::size_t i = 1; i < fixed.size(); ++i) {
    if (fixed[i - 1].first + fixed[i - 1].second > fixed[i].first) {
      faults_.Error(TextOf(u"kolumny stałe zachodzą na siebie od bajtu ", fixed[i].first));
    }
  }
}

void LayoutCheck::CheckIndexes() {
  for (std::size_t i = 0; i < table_.indexes.size(); ++i) {
    const IndexLayout& index = table_.indexes[i];
    if (index.parts.empty()) faults_.Error(TextOf(u"indeks ", i, u" nie ma kolumn"));
    for (const IndexLayout::Part& part : index.parts) {
      const ColumnLayout* column = table_.FindColumn(part.columnId);
      if (!column || !IsIndexable(column->type)) {
        faults_.Error(TextOf(u"indeks ", i, u" ma niemożliwą kolumnę ", part.columnId));
      }
    }
    if (!index.Has(kIndexAlways)) faults_.Error(TextOf(u"indeks ", i, u" ma flagi ", index.flags));
  }
}

void LayoutCheck::CheckLogicals() {
  std::set<std::uint32_t> numbers;
  std::vector<bool> used(table_.indexes.size());
  for (const LogicalLayout& logical : table_.logicals) {
    const std::u16string name = TextOf(u"indeks „", logical.name, u"” ");
    if (logical.name.empty() || logical.name.size() > kMaxNameLength)
      faults_.Error(u"indeks ma niemożliwą nazwę");
    if (!numbers.insert(logical.number).second) faults_.Error(name + u"ma numer innego indeksu");
    if (logical.index >= used.size()) {
      faults_.Error(TextOf(name, u"wskazuje drzewo ", logical.index, u", którego nie ma"));
      continue;
    }
    used[logical.index] = true;
    const bool isRelation = logical.kind == kIndexRelation;
    if (logical.kind > kIndexRelation || isRelation != (logical.end != 0) ||
        logical.end > kEndReferring) {
      faults_.Error(name + u"jest nieznanego rodzaju");
    }
    if (!isRelation && (logical.cascadeUpdates != kCascadeNone ||
                        logical.cascadeDeletes != kCascadeNone || logical.otherTable != 0)) {
      faults_.Error(name + u"ma pola relacji, choć nią nie jest");
    }
  }
  const auto unused = std::find(used.begin(), used.end(), false);
  if (unused != used.end())
    faults_.Error(TextOf(u"drzewo indeksu ", unused - used.begin(), u" nie ma nazwy"));
}

void LayoutCheck::CheckLongValueMaps() {
  std::set<std::uint16_t> ids;
  for (const LongValueMapsLayout& maps : table_.longValueMaps) {
    const ColumnLayout* column = table_.FindColumn(maps.columnId);
    // Maps of a deleted column may have stayed behind.
    const bool isWrong = column && !column->IsLongValue();
    if (isWrong || !ids.insert(maps.columnId).second) {
      faults_.Error(TextOf(u"mapy długich wartości należą do niemożliwej kolumny ", maps.columnId));
    }
  }
  for (const ColumnLayout& column : table_.columns) {
    if (column.IsLongValue() && !ids.contains(column.id)) {
      faults_.Error(TextOf(u"kolumna „", column.name, u"” nie ma map długich wartości"));
    }
  }
}

}  // namespace

void CheckLayout(const TableLayout& table, LayoutFaults& faults) {
  LayoutCheck check(table, faults);
  check.CheckColumns();
  check.CheckIndexes();
  check.CheckLogicals();
  check.CheckLongValueMaps();
}

}  // namespace zimbrat::jet::check

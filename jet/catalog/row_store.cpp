#include "jet/catalog/row_store.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/key.h"
#include "jet/table/long_values.h"

namespace zimbrat::jet {

namespace {

constexpr int kMaxCascadeDepth = 50;
constexpr std::uint8_t kCascadeYes = 1;
constexpr std::uint8_t kCascadeSetNull = 2;

const LogicalIndex& OtherEnd(Table& other, const LogicalIndex& entry) {
  const LogicalIndex* found = other.Definition().FindIndexByNumber(entry.otherNumber);
  if (!found) RaiseDamaged(u"relacja tabeli „" + other.Name() + u"” nie ma drugiego końca");
  return *found;
}

bool HasRules(Catalog& catalog, Table& table) {
  const std::vector<FieldRules>& rules = catalog.Rules(table);
  if (std::any_of(rules.begin(), rules.end(), [](const FieldRules& rule) { return !rule.validationRule.empty(); })) {
    return true;
  }
  const CatalogObject* object = catalog.FindTableByPage(table.Page());
  return object && !catalog.Properties(object->id).FindText({}, u"ValidationRule").empty();
}

// Long values are compared as what they say, the others as they are stored.
bool HoldsAlready(Table& table, std::size_t column, const FieldBytes& field, const dao::Value& value) {
  if (table.Definition().columns[column].IsLongValue()) return table.ValueOf(column, field) == value;
  const FieldBytes wanted = table.FieldOf(column, value);
  return field.present == wanted.present && field.bytes == wanted.bytes;
}

}  // namespace

std::optional<std::vector<std::byte>> TranslateKey(Table& source, const RealIndex& from, Table& target,
                                                   const RealIndex& to, const RowFields& fields) {
  if (from.columns.size() != to.columns.size()) RaiseDamaged(u"relacja o różnej liczbie kolumn");
  std::vector<KeyColumn> columns;
  std::vector<dao::Value> values;
  for (std::size_t i = 0; i < from.columns.size(); ++i) {
    const std::size_t position = *source.Definition().FindColumnById(from.columns[i].columnId);
    const std::size_t other = *target.Definition().FindColumnById(to.columns[i].columnId);
    values.push_back(source.ValueOf(position, fields[position]));
    if (dao::IsNull(values.back())) return std::nullopt;
    columns.push_back({target.Definition().columns[other].type, to.columns[i].ascending});
  }
  return EncodeKey(columns, values);
}

void RowStore::CheckFields(Table& table, const std::vector<dao::Value>& values) {
  const std::vector<FieldRules>& rules = catalog_.Rules(table);
  const std::vector<Column>& columns = table.Definition().columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (rules[i].required && dao::IsNull(values[i])) Raise(platform::kErrRequired, columns[i].name);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto* text = std::get_if<std::u16string>(&values[i]);
    const bool system = table.Definition().tableType == kTableSystem;
    if (text && text->empty() && columns[i].IsText() && !rules[i].allowZeroLength && !system) {
      Raise(platform::kErrZeroLength, columns[i].name);
    }
  }
  if (checkRules) checkRules(table, values);
}

void RowStore::CheckParents(Table& table, const RowFields& fields, const RowFields* former) {
  for (const LogicalIndex& entry : table.Definition().logicalIndexes) {
    if (!entry.IsRelation() || entry.end != kEndReferring) continue;
    const RealIndex& childIndex = table.Definition().realIndexes[entry.realIndex];
    const std::shared_ptr<Table> parent = catalog_.Open(entry.otherTable);
    const std::uint32_t parentReal = OtherEnd(*parent, entry).realIndex;
    const RealIndex& parentIndex = parent->Definition().realIndexes[parentReal];
    const auto key = TranslateKey(table, childIndex, *parent, parentIndex, fields);
    if (!key) continue;
    if (former && TranslateKey(table, childIndex, *parent, parentIndex, *former) == key) continue;
    const bool isOwnParent = parent->Page() == table.Page() && table.KeyOf(parentReal, fields) == key;
    if (!isOwnParent && !parent->Tree(parentReal).ContainsKey(*key)) {
      Raise(platform::kErrRelatedRecordRequired, parent->Name());
    }
  }
}

RowPointer RowStore::Insert(Table& table, const std::vector<dao::Value>& values) {
  CheckFields(table, values);
  RowFields fields;
  for (std::size_t i = 0; i < values.size(); ++i) fields.push_back(table.FieldOf(i, values[i]));
  const PreparedRow row = table.Prepare(fields);
  CheckParents(table, fields, nullptr);
  const RowPointer home = table.Insert(row);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto* counter = std::get_if<std::int32_t>(&values[i]);
    if (table.Definition().columns[i].IsCounter() && counter) table.NoteCounter(*counter);
  }
  return home;
}

// The referring end of a relationship; nothing for an entry that is not its referenced end.
std::optional<RowStore::Child> RowStore::FindChild(const LogicalIndex& entry, bool onDelete) {
  if (!entry.IsRelation() || entry.end != kEndReferenced) return std::nullopt;
  Child child;
  child.table = catalog_.Open(entry.otherTable);
  child.realIndex = OtherEnd(*child.table, entry).realIndex;
  child.cascade = onDelete ? entry.cascadeDelete : entry.cascadeUpdate;
  return child;
}

std::vector<RowPointer> RowStore::RowsOf(Child& child, Table& table, const LogicalIndex& entry,
                                         const RowFields& row) {
  const RealIndex& own = table.Definition().realIndexes[entry.realIndex];
  const RealIndex& theirs = child.table->Definition().realIndexes[child.realIndex];
  const auto key = TranslateKey(table, own, *child.table, theirs, row);
  std::vector<RowPointer> rows;
  if (!key) return rows;
  const IndexTree tree = child.table->Tree(child.realIndex);
  for (auto cursor = tree.Seek(*key); cursor.Valid(); cursor.Next()) {
    const ConstBytes found = cursor.Key();
    if (!std::equal(key->begin(), key->end(), found.begin(), found.end())) break;
    rows.push_back(cursor.Row());
  }
  return rows;
}

// A list instead of recursion: a chain of rows may be as long as the table.
void RowStore::Delete(Table& first, RowPointer firstHome) {
  std::vector<std::pair<std::shared_ptr<Table>, RowPointer>> pending = {
      {catalog_.Open(first.Page()), firstHome}};
  while (!pending.empty()) {
    const auto [table, home] = pending.back();
    pending.pop_back();
    const std::optional<RowFields> former = table->FindRow(home);
    if (!former) continue;  // reached on two ways
    const std::vector<LogicalIndex> entries = table->Definition().logicalIndexes;
    std::vector<std::pair<Child, RowPointer>> toNull;
    for (const LogicalIndex& entry : entries) {
      std::optional<Child> child = FindChild(entry, true);
      if (!child) continue;
      for (const RowPointer row : RowsOf(*child, *table, entry, *former)) {
        if (child->table->Page() == table->Page() && row == home) continue;
        if (child->cascade == kCascadeYes) {
          pending.emplace_back(child->table, row);
        } else if (child->cascade == kCascadeSetNull) {
          toNull.emplace_back(*child, row);
        } else {
          Raise(platform::kErrRelatedRecords, child->table->Name());
        }
      }
    }
    table->Delete(home, *former);
    for (auto& [child, row] : toNull) SetNull(child, row, 0);
  }
}

void RowStore::SetNull(Child& child, RowPointer row, int depth) {
  std::vector<ColumnChange> changes;
  for (const IndexColumn& part : child.table->Definition().realIndexes[child.realIndex].columns) {
    changes.emplace_back(*child.table->Definition().FindColumnById(part.columnId), dao::Null{});
  }
  UpdateRow(*child.table, row, changes, depth + 1);
}

// Long values that stay as they are count as there or not; only a rule has to read them.
std::vector<dao::Value> RowStore::ValuesToCheck(Table& table, const RowFields& former,
                                                const std::vector<ColumnChange>& changes) {
  const bool reads = HasRules(catalog_, table);
  const std::vector<Column>& columns = table.Definition().columns;
  std::vector<dao::Value> values(former.size());
  for (std::size_t i = 0; i < former.size(); ++i) {
    const bool isLong = columns[i].IsLongValue() && former[i].present;
    values[i] = isLong && !reads ? dao::Value(dao::Binary{}) : table.ValueOf(i, former[i]);
  }
  for (const auto& [column, value] : changes) values[column] = value;
  return values;
}

void RowStore::Update(Table& table, RowPointer home, const std::vector<ColumnChange>& changes) {
  UpdateRow(table, home, changes, 0);
}

void RowStore::UpdateRow(Table& table, RowPointer home, const std::vector<ColumnChange>& changes, int depth) {
  if (depth > kMaxCascadeDepth) Raise(platform::kErrRelatedRecords, table.Name());
  const RowFields former = table.Read(home);
  CheckFields(table, ValuesToCheck(table, former, changes));
  RowFields fields = former;
  std::vector<std::size_t> changed;
  for (const auto& [column, value] : changes) {
    if (HoldsAlready(table, column, former[column], value)) continue;
    fields[column] = table.FieldOf(column, value);
    changed.push_back(column);
  }
  // Work that is done again leaves the file as it is.
  if (changed.empty()) return;
  const PreparedRow row = table.Prepare(fields, &former);
  CheckParents(table, fields, &former);
  table.Update(home, former, row);
  for (const std::size_t column : changed) {
    const Column& c = table.Definition().columns[column];
    const LongValueMaps* maps = table.Definition().FindLongValueMaps(c.id);
    if (c.IsLongValue() && maps && former[column].present) {
      FreeLongValue(table.GetStorage(), *maps, former[column].bytes);
    }
  }
  FollowUpdate(table, home, former, fields, depth);
}

// The children of a changed key: carried along, or the change is refused.
void RowStore::FollowUpdate(Table& table, RowPointer home, const RowFields& former, const RowFields& fields,
                            int depth) {
  const std::vector<LogicalIndex> entries = table.Definition().logicalIndexes;
  for (const LogicalIndex& entry : entries) {
    std::optional<Child> child = FindChild(entry, false);
    if (!child || table.KeyOf(entry.realIndex, former) == table.KeyOf(entry.realIndex, fields)) continue;
    for (const RowPointer row : RowsOf(*child, table, entry, former)) {
      if (child->cascade != kCascadeYes) Raise(platform::kErrRelatedRecords, child->table->Name());
      if (child->table->Page() == table.Page() && row == home && depth > 0) continue;
      CascadeUpdate(*child, row, table, entry, fields, depth);
    }
  }
}

void RowStore::CascadeUpdate(Child& child, RowPointer row, Table& table, const LogicalIndex& entry,
                             const RowFields& fields, int depth) {
  const RealIndex own = table.Definition().realIndexes[entry.realIndex];
  const RealIndex theirs = child.table->Definition().realIndexes[child.realIndex];
  std::vector<ColumnChange> changes;
  for (std::size_t i = 0; i < own.columns.size(); ++i) {
    const std::size_t from = *table.Definition().FindColumnById(own.columns[i].columnId);
    const std::size_t to = *child.table->Definition().FindColumnById(theirs.columns[i].columnId);
    changes.emplace_back(to, table.ValueOf(from, fields[from]));
  }
  UpdateRow(*child.table, row, changes, depth + 1);
}

}  // namespace zimbrat::jet

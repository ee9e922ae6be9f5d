#include "rebuild_relation_rows.h"

#include <algorithm>
#include <utility>

#include "rebuild_table.h"
#include "jet/index/collation.h"

namespace zimbrat::jet {

using check::NumberIn;
using check::RescuedRow;
using check::TableLayout;
using check::TextIn;

namespace {

std::vector<std::byte> KeyOfName(std::u16string_view name) {
  std::vector<std::byte> key;
  AppendTextKey(name, true, key);
  return key;
}

constexpr std::uint8_t kCascades = 1;  // 2, of deletions: the referring fields become Null

std::uint32_t FlagsOf(const TableLayout& layout, const RescuedRow& row) {
  return static_cast<std::uint32_t>(NumberIn(layout, row, u"grbit").value_or(0));
}

// Whether a row tells of one pair of the relationship's columns, and of what else the definitions
// know. The order of the columns in the index may differ.
bool Agrees(const TableLayout& layout, const RescuedRow& row, const Relationship& relation) {
  const std::u16string column = TextIn(layout, row, u"szColumn");
  const std::u16string referenced = TextIn(layout, row, u"szReferencedColumn");
  constexpr std::uint32_t kKnown = kRelationDontEnforce | kRelationUpdateCascade | kRelationDeleteCascade;
  const auto isPair = [&](const RelationField& field) {
    return EqualText(field.foreignName, column) && EqualText(field.name, referenced);
  };
  return EqualText(TextIn(layout, row, u"szObject"), relation.foreignTable) &&
         EqualText(TextIn(layout, row, u"szReferencedObject"), relation.table) &&
         NumberIn(layout, row, u"ccolumn") == static_cast<std::int32_t>(relation.fields.size()) &&
         (FlagsOf(layout, row) & kKnown) == (relation.attributes & kKnown) &&
         std::ranges::any_of(relation.fields, isPair);
}

}  // namespace

RelationRowsRebuild::RelationRowsRebuild(check::Rescue& source, DatabaseFile& target,
                                         RebuiltTables& tables,
                                         const std::vector<RebuiltRelation>& enforced)
    : source_(source), target_(target), tables_(tables) {
  for (const RebuiltRelation& relation : enforced) {
    enforced_[KeyOfName(relation.name)].relation = RelationOf(relation);
  }
  for (auto& [former, table] : tables_) {
    if (table.page != 0) tablesByName_[KeyOfName(table.report.name)] = &table;
  }
}

Relationship RelationRowsRebuild::RelationOf(const RebuiltRelation& relation) {
  const RebuiltTable& parentTable = tables_[relation.referenced];
  const RebuiltTable& childTable = tables_[relation.referring];
  const TableDefinition parent = ReadDefinition(target_.Pages(), parentTable.page);
  const TableDefinition child = ReadDefinition(target_.Pages(), childTable.page);
  const LogicalIndex& end = *child.FindIndexByNumber(relation.number);
  const RealIndex& childIndex = child.realIndexes[end.realIndex];
  const RealIndex& parentIndex =
      parent.realIndexes[parent.FindIndexByNumber(relation.referencedNumber)->realIndex];
  Relationship result{relation.name, parentTable.report.name, childTable.report.name, 0, {}};
  if (childIndex.IsUnique()) result.attributes |= kRelationUnique;
  if (end.cascadeUpdate == kCascades) result.attributes |= kRelationUpdateCascade;
  if (end.cascadeDelete == kCascades) result.attributes |= kRelationDeleteCascade;
  for (std::size_t i = 0; i < childIndex.columns.size(); ++i) {
    result.fields.push_back(
        {parent.columns[*parent.FindColumnById(parentIndex.columns[i].columnId)].name,
         child.columns[*child.FindColumnById(childIndex.columns[i].columnId)].name});
  }
  return result;
}

void RelationRowsRebuild::CountRows() {
  const TableLayout layout = source_.ReadTable(kRelationshipsPage)->layout;
  source_.ReadRows(layout, [&](const RescuedRow& row) {
    const auto found = enforced_.find(KeyOfName(TextIn(layout, row, u"szRelationship")));
    if (found == enforced_.end()) return;
    Rows& rows = found->second;
    const std::int32_t position = NumberIn(layout, row, u"icolumn").value_or(-1);
    const bool isPlace = position >= 0 && std::cmp_less(position, rows.relation.fields.size());
    const bool agrees = isPlace && Agrees(layout, row, rows.relation);
    if (!agrees || !rows.agreeing.insert(position).second) ++rows.others;
    rows.joins |= FlagsOf(layout, row) & (kRelationLeft | kRelationRight);
  });
}

RebuiltTable* RelationRowsRebuild::FindTable(std::u16string_view name) const {
  const auto found = tablesByName_.find(KeyOfName(name));
  return found == tablesByName_.end() ? nullptr : found->second;
}

RowFate RelationRowsRebuild::CopyRow(const TableLayout& layout, const RescuedRow& row,
                                     Table& table) {
  const std::u16string name = TextIn(layout, row, u"szRelationship");
  if (name.empty() || name.size() > kMaxNameLength) return RowFate::Lost;
  const NameKey key = KeyOfName(name);
  const auto found = enforced_.find(key);
  if (found != enforced_.end() && !found->second.AreSound()) return RowFate::NotNeeded;
  RowFields fields = FieldsFrom(table, row);
  const std::uint32_t flags = FlagsOf(layout, row);
  RebuiltTable* referring = FindTable(TextIn(layout, row, u"szObject"));
  const bool isReleased = found == enforced_.end() && (flags & kRelationDontEnforce) == 0 &&
                          referring && FindTable(TextIn(layout, row, u"szReferencedObject"));
  if (isReleased) {
    PutValue(table, fields, u"grbit", static_cast<std::int32_t>(flags | kRelationDontEnforce));
    const std::u16string note = u"relacja „" + name + u"” nie jest już wymuszana";
    const auto& notes = referring->report.notes;
    const bool isKnown = std::ranges::any_of(
        notes, [&](const std::u16string& other) { return other.starts_with(note); });
    if (!isKnown) referring->report.notes.push_back(note);
  }
  return StoreSystemRow(table, fields);
}

void RelationRowsRebuild::AddMissingRows(RepairedTable& report) {
  for (const auto& [key, rows] : enforced_) {
    if (rows.AreSound()) continue;
    Relationship relation = rows.relation;
    relation.attributes |= rows.joins;
    Relationships(target_.GetStorage(), target_.GetCatalog()).AddRows(relation);
    const std::uint64_t count = rows.relation.fields.size();
    report.saved += count;
    report.lost -= std::min(report.lost, count);
  }
}

void RelationRowsRebuild::AddMissingObjects() {
  Catalog& catalog = target_.GetCatalog();
  for (const Relationship& relation : Relationships(target_.GetStorage(), catalog).List()) {
    if (!catalog.FindRelationship(relation.name)) catalog.AddRelationship(relation.name);
  }
}

RepairedTable RelationRowsRebuild::Run() {
  CountRows();
  const std::shared_ptr<Table> table = target_.GetCatalog().Open(kRelationshipsPage);
  RepairedTable report =
      CopySystemRows(source_, *table, [&](const TableLayout& layout, const RescuedRow& row) {
        return CopyRow(layout, row, *table);
      });
  AddMissingRows(report);
  AddMissingObjects();
  return report;
}

}  // namespace zimbrat::jet

#include "rebuild_relations.h"

#include <algorithm>

#include "jet/catalog/row_store.h"
#include "jet/table/table_design.h"

namespace zimbrat::jet {

namespace {

bool AreEndsOfOneRelation(const LogicalIndex& referring, PageNumber referringTable,
                          const LogicalIndex& referenced) {
  return referenced.IsRelation() && referenced.end == kEndReferenced &&
         referenced.otherTable == referringTable && referenced.otherNumber == referring.number &&
         referenced.cascadeUpdate == referring.cascadeUpdate &&
         referenced.cascadeDelete == referring.cascadeDelete;
}

bool HaveSameTypes(Table& a, const RealIndex& indexOfA, Table& b, const RealIndex& indexOfB) {
  const auto typeOf = [](Table& table, const IndexColumn& part) {
    const TableDefinition& d = table.Definition();
    return d.columns[*d.FindColumnById(part.columnId)].type;
  };
  return std::ranges::equal(indexOfA.columns, indexOfB.columns, [&](const auto& x, const auto& y) {
    return typeOf(a, x) == typeOf(b, y);
  });
}

}  // namespace

void RelationRebuild::Note(PageNumber former, const std::u16string& relation,
                           const std::u16string& reason) {
  tables_[former].report.notes.push_back(u"relacja „" + relation + u"” nie jest już wymuszana: " +
                                         reason);
}

void RelationRebuild::CollectFrom(PageNumber former, const LogicalIndex& end) {
  const auto other = tables_.find(end.otherTable);
  if (other != tables_.end() && other->second.page != 0) {
    const TableDefinition d = ReadDefinition(storage_.pager, other->second.page);
    const LogicalIndex* partner = d.FindIndexByNumber(end.otherNumber);
    if (partner && AreEndsOfOneRelation(end, former, *partner)) {
      relations_.push_back({end.name, former, end.otherTable, end.number, end.otherNumber});
      return;
    }
  }
  Note(former, end.name, u"brak jej drugiego końca");
}

void RelationRebuild::Collect() {
  for (const auto& [former, table] : tables_) {
    if (table.page == 0) continue;
    const TableDefinition d = ReadDefinition(storage_.pager, table.page);
    for (const LogicalIndex& index : d.logicalIndexes) {
      if (index.IsRelation() && index.end == kEndReferring) CollectFrom(former, index);
    }
  }
}

// Empty: it is enforced.
std::u16string RelationRebuild::WhyNotEnforced(const RebuiltRelation& relation) {
  const RebuiltTable& parentTable = tables_[relation.referenced];
  const RebuiltTable& childTable = tables_[relation.referring];
  Table parent(storage_, parentTable.page, parentTable.report.name);
  Table child(storage_, childTable.page, childTable.report.name);
  const std::uint32_t parentReal =
      parent.Definition().FindIndexByNumber(relation.referencedNumber)->realIndex;
  const std::uint32_t childReal = child.Definition().FindIndexByNumber(relation.number)->realIndex;
  const RealIndex parentIndex = parent.Definition().realIndexes[parentReal];
  const RealIndex childIndex = child.Definition().realIndexes[childReal];
  if (!parentIndex.IsUnique()) {
    return u"klucz tabeli „" + parentTable.report.name + u"” dopuszcza powtórzenia";
  }
  if (!HaveSameTypes(parent, parentIndex, child, childIndex))
    return u"jej kolumny są różnych typów";
  for (RowScan scan(child); scan.Next();) {
    const auto key = TranslateKey(child, childIndex, parent, parentIndex, scan.Fields());
    if (key && !parent.Tree(parentReal).ContainsKey(*key)) {
      return u"są wiersze bez odpowiednika w tabeli „" + parentTable.report.name + u"”";
    }
  }
  return {};
}

void RelationRebuild::Relink(PageNumber former, RebuiltTable& table) {
  TableDesign design(storage_, table.page);
  std::vector<std::uint32_t> dropped;
  bool isChanged = false;
  for (LogicalIndex& index : design.definition.logicalIndexes) {
    if (!index.IsRelation()) continue;
    isChanged = true;
    if (kept_.contains({former, index.number})) {
      index.otherTable = tables_[index.otherTable].page;
    } else {
      dropped.push_back(index.number);
    }
  }
  for (const std::uint32_t number : dropped) design.RemoveLogicalIndex(number);
  if (isChanged) design.Write();
}

void RelationRebuild::Run() {
  Collect();
  std::erase_if(relations_, [&](const RebuiltRelation& relation) {
    const std::u16string reason = WhyNotEnforced(relation);
    if (!reason.empty()) Note(relation.referring, relation.name, reason);
    return !reason.empty();
  });
  for (const RebuiltRelation& relation : relations_) {
    kept_.insert({relation.referring, relation.number});
    kept_.insert({relation.referenced, relation.referencedNumber});
  }
  for (auto& [former, table] : tables_) {
    if (table.page != 0) Relink(former, table);
  }
}

}  // namespace zimbrat::jet

// The rows of MSysRelationships, in step with the ends of relationships in the new definitions.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "rebuild_relations.h"
#include "system_rows.h"
#include "jet/catalog/database_file.h"
#include "jet/catalog/relationships.h"

namespace zimbrat::jet {

class RelationRowsRebuild {
 public:
  // `enforced`: the relationships whose ends the definitions hold.
  RelationRowsRebuild(check::Rescue& source, DatabaseFile& target, RebuiltTables& tables,
                      const std::vector<RebuiltRelation>& enforced);

  // Rows that agree with the definitions stay as they are. Others of an enforced relationship are
  // made anew; what is not enforced any more is marked so.
  RepairedTable Run();

 private:
  using NameKey = std::vector<std::byte>;
  struct Rows {
    Relationship relation;  // as the definitions tell
    std::set<std::int32_t> agreeing;  // their positions
    std::size_t others = 0;
    std::uint32_t joins = 0;  // flags of the rows that the definitions do not know
    bool AreSound() const { return agreeing.size() == relation.fields.size() && others == 0; }
  };

  Relationship RelationOf(const RebuiltRelation& relation);
  void CountRows();
  RowFate CopyRow(const check::TableLayout& layout, const check::RescuedRow& row, Table& table);
  RebuiltTable* FindTable(std::u16string_view name) const;
  void AddMissingRows(RepairedTable& report);
  void AddMissingObjects();

  check::Rescue& source_;
  DatabaseFile& target_;
  RebuiltTables& tables_;
  std::map<NameKey, Rows> enforced_;
  std::map<NameKey, RebuiltTable*> tablesByName_;
};

}  // namespace zimbrat::jet

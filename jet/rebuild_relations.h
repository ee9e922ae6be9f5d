// The ends of relationships in the definitions of new tables.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "rebuilt_tables.h"
#include "jet/file/storage.h"
#include "jet/table/table.h"

namespace zimbrat::jet {

// An enforced relationship whose ends name each other; tables by their former pages.
struct RebuiltRelation {
  std::u16string name;
  PageNumber referring = 0;
  PageNumber referenced = 0;
  std::uint32_t number = 0;  // of the referring end
  std::uint32_t referencedNumber = 0;
};

class RelationRebuild {
 public:
  RelationRebuild(const Storage& storage, RebuiltTables& tables)
      : storage_(storage), tables_(tables) {}

  // Points the ends at the new pages. Ends that do not meet, or that the rows contradict, are taken
  // away; a note of the referring table tells of each.
  void Run();
  // What is enforced after that.
  const std::vector<RebuiltRelation>& Enforced() const { return relations_; }

 private:
  void Collect();
  void CollectFrom(PageNumber former, const LogicalIndex& end);
  std::u16string WhyNotEnforced(const RebuiltRelation& relation);
  void Relink(PageNumber former, RebuiltTable& table);
  void Note(PageNumber former, const std::u16string& relation, const std::u16string& reason);

  Storage storage_;
  RebuiltTables& tables_;
  std::vector<RebuiltRelation> relations_;
  std::set<std::pair<PageNumber, std::uint32_t>> kept_;  // ends
};

}  // namespace zimbrat::jet

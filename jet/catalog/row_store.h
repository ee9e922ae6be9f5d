// Storing rows under the rules of the database: required and zero-length fields, validation rules, keys,
// relationships with their cascades. Each call belongs into a savepoint of the caller, which undoes all of
// it when an error comes.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "jet/catalog/catalog.h"

namespace zimbrat::jet {

using ColumnChange = std::pair<std::size_t, dao::Value>;

class RowStore {
 public:
  explicit RowStore(Catalog& catalog) : catalog_(catalog) {}

  // `values` by column position, brought to the columns' types.
  RowPointer Insert(Table& table, const std::vector<dao::Value>& values);
  void Update(Table& table, RowPointer home, const std::vector<ColumnChange>& changes);
  void Delete(Table& table, RowPointer home);

  // Asked for every row before its keys are; raises 3316 or 3317. Set by who can evaluate expressions.
  std::function<void(Table&, const std::vector<dao::Value>&)> checkRules;

 private:
  struct Child {
    std::shared_ptr<Table> table;
    std::size_t realIndex = 0;
    std::uint8_t cascade = 0;
  };

  void CheckFields(Table& table, const std::vector<dao::Value>& values);
  std::vector<dao::Value> ValuesToCheck(Table& table, const RowFields& former,
                                        const std::vector<ColumnChange>& changes);
  void CheckParents(Table& table, const RowFields& fields, const RowFields* former);
  std::optional<Child> FindChild(const LogicalIndex& entry, bool onDelete);
  std::vector<RowPointer> RowsOf(Child& child, Table& table, const LogicalIndex& entry, const RowFields& row);
  void UpdateRow(Table& table, RowPointer home, const std::vector<ColumnChange>& changes, int depth);
  void FollowUpdate(Table& table, RowPointer home, const RowFields& former, const RowFields& fields,
                    int depth);
  void CascadeUpdate(Child& child, RowPointer row, Table& table, const LogicalIndex& entry,
                     const RowFields& fields, int depth);
  void SetNull(Child& child, RowPointer row, int depth);

  Catalog& catalog_;
};

// The values that `fields` has in the columns of `from` (an index of `source`), as a key of `to` (an index of
// `target`, the other end of a relationship); nothing when one of them is null.
std::optional<std::vector<std::byte>> TranslateKey(Table& source, const RealIndex& from, Table& target,
                                                   const RealIndex& to, const RowFields& fields);

}  // namespace zimbrat::jet

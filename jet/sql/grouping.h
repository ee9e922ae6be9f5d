// GROUP BY: one row for all rows with equal keys, made of the keys and of aggregates.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "jet/file/scratch.h"
#include "jet/sql/binder.h"
#include "jet/sql/row_source.h"
#include "jet/sql/scope.h"

#include "aggregates.h"

namespace zimbrat::jet {

struct Aggregate {
  AggregateKind kind = AggregateKind::Count;
  ExpressionPtr argument;
};

// The rows of groups: the keys, then the aggregates. Without keys all rows are one group, even if there are
// none.
class GroupedRows : public LeafSource {
 public:
  GroupedRows(RowSourcePtr input, std::vector<const Expression*> keys, const std::vector<Aggregate>& aggregates,
              const EvaluationContext& rowContext, Pager& pager);

  void Start() override;
  bool Next() override;
  std::size_t PlaceSize() const override { return sizeof(std::uint64_t); }
  void Save(std::vector<std::byte>& place) override;
  void Load(ConstBytes& place) override;
  void SetNull() override { values_.clear(); }
  void Forget() override { sorted_.Forget(); }
  dao::Value ValueAt(std::size_t column) override;

 private:
  std::vector<const Expression*> keys_;
  const std::vector<Aggregate>& aggregates_;
  const EvaluationContext& rowContext_;
  Pager& pager_;
  SortedRows sorted_;
  std::optional<Scratch> kept_;  // rows of groups, each behind its size
  std::vector<dao::Value> values_;
  bool isAtRow_ = false;         // the sorted rows have one that belongs to the next group
  bool isStarted_ = false;
};

// Names behind GROUP BY, seen from subqueries: the keys alone.
class GroupScope : public Scope {
 public:
  GroupScope(Scope* outer, TableScope& tables, const std::vector<ExpressionPtr>& keys)
      : Scope(outer), tables_(tables), keys_(keys) {}
  // Error 3122 for a column that is no key.
  std::optional<FoundName> FindOwn(std::u16string_view qualifier, std::u16string_view name) override;

 private:
  TableScope& tables_;
  const std::vector<ExpressionPtr>& keys_;
};

// Binds what stands in the list, in HAVING and in ORDER BY of a query with groups: keys and aggregates become
// the columns of the groups' rows.
class GroupBinder {
 public:
  GroupBinder(Scope* outer, TableScope& tables, const std::vector<ExpressionPtr>& keys, Compilation& compilation)
      : tables_(tables), keys_(keys), scope_(outer, tables, keys), compilation_(compilation) {}

  // Errors 3099 (an aggregate within one), 3115 (of an OLE field), 3122, those of Binder.
  void Bind(Expression& expression);
  std::vector<Aggregate> TakeAggregates() { return std::move(aggregates_); }
  bool FollowsOuter() const { return scope_.FollowsOuter(); }

 private:
  void BindColumns(Expression& e);
  void Rewrite(Expression& e);
  void RewriteAggregate(Expression& e);

  TableScope& tables_;
  const std::vector<ExpressionPtr>& keys_;
  GroupScope scope_;
  Compilation& compilation_;
  std::vector<Aggregate> aggregates_;
};

}  // namespace zimbrat::jet

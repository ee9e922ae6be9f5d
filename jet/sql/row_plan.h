// A query ready to be run: its columns, and its rows one after another or by their places.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/sql/binder.h"
#include "jet/sql/row_source.h"
#include "jet/sql/statement.h"
#include "jet/sql/table_source.h"

namespace zimbrat::jet {

class RowPlan {
 public:
  virtual ~RowPlan() = default;

  // Named as a recordset names them.
  virtual const std::vector<ScopeColumn>& Columns() const = 0;
  virtual RowSource& Rows() = 0;
  // Of the current row.
  virtual dao::Value ValueAt(std::size_t column) = 0;
  // The row of the query around this one; its names are looked up there.
  virtual void SetOuter(const EvaluationContext* outer) = 0;
  virtual bool FollowsOuter() const = 0;

  // The table whose rows these are, when there is one for each: what an edit of a row changes.
  virtual TableSource* EditedTable() { return nullptr; }
  // The column of that table, for a column that is one.
  virtual std::optional<std::size_t> EditedColumn(std::size_t) const { return std::nullopt; }
};
using RowPlanPtr = std::unique_ptr<RowPlan>;

// The query must outlive the plan and is bound by this. Errors of 3061 are left to the compilation.
RowPlanPtr CompileQuery(std::shared_ptr<QueryStatement> query, Scope* outer, Compilation& compilation);

// The rows of a plan as a table of FROM.
class DerivedRows : public LeafSource {
 public:
  explicit DerivedRows(RowPlanPtr plan) : plan_(std::move(plan)) {}
  RowPlan& Plan() { return *plan_; }

  void Start() override;
  bool Next() override { return plan_->Rows().Next(); }
  // A byte that says whether there is a row, then its place.
  std::size_t PlaceSize() const override { return 1 + plan_->Rows().PlaceSize(); }
  void Save(std::vector<std::byte>& place) override;
  void Load(ConstBytes& place) override;
  void SetNull() override { isNull_ = true; }
  dao::Value ValueAt(std::size_t column) override {
    return isNull_ ? dao::Value() : plan_->ValueAt(column);
  }

 private:
  RowPlanPtr plan_;
  bool isNull_ = false;
};

}  // namespace zimbrat::jet

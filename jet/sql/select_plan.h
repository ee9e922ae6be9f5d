// One SELECT, compiled and run.
#pragma once

#include <memory>
#include <vector>

#include "jet/sql/row_plan.h"

#include "from_compiler.h"
#include "grouping.h"

namespace zimbrat::jet {

class SelectPlan : public RowPlan {
 public:
  SelectPlan(SelectStatement statement, Compilation& compilation);

  const std::vector<ScopeColumn>& Columns() const override { return columns_; }
  RowSource& Rows() override { return *root_; }
  dao::Value ValueAt(std::size_t column) override;
  void SetOuter(const EvaluationContext* outer) override;
  bool FollowsOuter() const override { return followsOuter_; }
  TableSource* EditedTable() override;
  std::optional<std::size_t> EditedColumn(std::size_t column) const override;

  // For statements that change the rows of a FROM list.
  const std::vector<FromLeaf>& Tables() const { return leaves_; }
  const EvaluationContext& Context() const { return isGrouped_ ? groupContext_ : rowContext_; }

 private:
  friend class SelectCompiler;

  struct Slot {
    LeafSource* source;
    std::size_t column;
  };

  SelectStatement statement_;
  EvaluationContext rowContext_;    // of the tables' rows
  EvaluationContext groupContext_;  // of the groups' rows
  std::vector<FromLeaf> leaves_;
  std::vector<Slot> slots_;         // columns of the tables, by their numbers
  GroupedRows* groups_ = nullptr;
  std::vector<Aggregate> aggregates_;
  std::vector<ExpressionPtr> outputs_;
  std::vector<ScopeColumn> columns_;
  RowSourcePtr root_;
  bool isGrouped_ = false;
  bool followsOuter_ = false;
};

std::unique_ptr<SelectPlan> CompileSelect(SelectStatement statement, Scope* outer, Compilation& compilation);

}  // namespace zimbrat::jet

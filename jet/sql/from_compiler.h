// FROM, WHERE and the joins between as a tree of sources: conditions go as near to the tables as they may, and
// each join finds its partners by an index, by hashes, or one by one.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "jet/sql/binder.h"
#include "jet/sql/row_plan.h"
#include "jet/sql/statement.h"
#include "jet/sql/table_source.h"

#include "join_source.h"

namespace zimbrat::jet {

// A table of FROM while and after it is compiled; the tree of sources owns what stands here.
struct FromLeaf {
  LeafSource* source = nullptr;
  TableSource* table = nullptr;    // a table of the database
  DerivedRows* derived = nullptr;  // a query in parentheses
};

class FromCompiler {
 public:
  // A set of tables, by their numbers as bits.
  using Leaves = std::uint64_t;

  FromCompiler(Compilation& compilation, TableScope& scope, const EvaluationContext& context);
  ~FromCompiler();

  // Errors 3074, 3078, 3360 above 32 tables; for joins 3079, 3082, 3097, 3118, 3258, 3296, 3615.
  void Add(FromList& list);
  // The list is bound; so is `where`, which may be null.
  RowSourcePtr Plan(const Expression* where);
  const std::vector<FromLeaf>& Tables() const { return leaves_; }

 private:
  struct Node;
  using NodePtr = std::unique_ptr<Node>;

  NodePtr AddItem(FromItem& item);
  NodePtr AddLeaf(FromItem& item);
  NodePtr AddJoin(FromItem& item);
  void BindOn(Expression& on, const Node& join);
  void RequireJoined(const Expression& on, const Node& join);
  void CheckOn(const Expression& on, Node& join);
  Leaves LeavesOf(const Expression& e) const;
  // Puts the condition where it is asked earliest; false when it must be asked of whole rows.
  bool Push(Node& node, const Expression* condition, Leaves leaves);
  RowSourcePtr Build(Node& node);
  RowSourcePtr BuildLeaf(Node& node, const Conditions& joined);
  RowSourcePtr BuildJoin(Node& node);
  bool UseIndex(Node& leaf, const Conditions& conditions);
  RowSourcePtr Filtered(RowSourcePtr source, Conditions conditions);

  Compilation& compilation_;
  TableScope& scope_;
  const EvaluationContext& context_;
  std::vector<FromLeaf> leaves_;
  std::vector<std::unique_ptr<LeafSource>> sources_;  // until they are planned
  NodePtr root_;
};

// The table of that name. Error `error` when there is none, 3251 for links and stored queries.
std::shared_ptr<Table> OpenTable(DatabaseFile& database, std::u16string_view name, std::int32_t error);
// DAO's number of a column's type, and its size as DAO gives it.
ScopeColumn DescribeColumn(const Column& column);

}  // namespace zimbrat::jet

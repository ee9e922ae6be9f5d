#include "from_compiler.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "platform/text.h"

#include "column_type.h"
#include "subquery.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kMaxTables = 32;

// Types compare when they are of one kind; unknown ones may.
enum class TypeKind { Unknown, Number, Text, Other };
TypeKind KindOf(std::int16_t type) {
  if (type == 0) return TypeKind::Unknown;
  if (type == dao::dbText || type == dao::dbMemo) return TypeKind::Text;
  if (type == dao::dbBinary || type == dao::dbLongBinary || type == dao::dbGUID) return TypeKind::Other;
  return TypeKind::Number;
}

void SplitConditions(const Expression& e, Conditions& conditions) {
  const bool splits = e.kind == Expression::Kind::Operation && e.op == Operator::And &&
                      IsCondition(*e.operands[0]) && IsCondition(*e.operands[1]);
  if (!splits) return conditions.push_back(&e);
  SplitConditions(*e.operands[0], conditions);
  SplitConditions(*e.operands[1], conditions);
}

}  // namespace

struct FromCompiler::Node {
  std::size_t first = 0;  // its tables, last one excluded
  std::size_t last = 0;
  JoinKind join = JoinKind::Inner;
  NodePtr left;
  NodePtr right;
  Conditions conditions;  // of a table: asked of its rows; of a join: of pairs

  bool IsLeaf() const { return !left; }
  Leaves All() const { return ((Leaves{1} << last) - 1) & ~((Leaves{1} << first) - 1); }
  // Tables that may have nulls for a row that they have not.
  Leaves Nullable() const {
    if (IsLeaf()) return 0;
    const Leaves inner = left->Nullable() | right->Nullable();
    if (join == JoinKind::Left) return inner | right->All();
    return join == JoinKind::Right ? inner | left->All() : inner;
  }
  bool HasInnerJoin() const {
    return !IsLeaf() && (join == JoinKind::Inner || left->HasInnerJoin() || right->HasInnerJoin());
  }
};

FromCompiler::FromCompiler(Compilation& compilation, TableScope& scope, const EvaluationContext& context)
    : compilation_(compilation), scope_(scope), context_(context) {}

FromCompiler::~FromCompiler() = default;

std::shared_ptr<Table> OpenTable(DatabaseFile& database, std::u16string_view name, std::int32_t error) {
  const CatalogObject* object = database.GetCatalog().FindTableOrQuery(name);
  if (!object) Raise(error, name);
  // Links and stored queries lead outside of what this engine reads.
  if (!object->Is(ObjectType::Table)) {
    RaiseUnsupported((object->IsLink() ? u"tabela dołączona „" : u"kwerenda zapisana „") + object->name + u"”");
  }
  return database.GetCatalog().Open(static_cast<PageNumber>(object->id));
}

ScopeColumn DescribeColumn(const Column& column) {
  const std::int16_t type = column.type == kTypeDecimal ? dao::dbDecimal : static_cast<std::int16_t>(column.type);
  return {column.name, type, column.type == kTypeText ? column.length / 2 : column.length, column.IsCounter(),
          column.displayOrder};
}

void FromCompiler::Add(FromList& list) {
  for (const std::unique_ptr<FromItem>& item : list) {
    NodePtr node = AddItem(*item);
    if (!root_) {
      root_ = std::move(node);
      continue;
    }
    auto join = std::make_unique<Node>();
    join->first = root_->first;
    join->last = node->last;
    join->left = std::move(root_);
    join->right = std::move(node);
    root_ = std::move(join);
  }
}

FromCompiler::NodePtr FromCompiler::AddItem(FromItem& item) {
  return item.IsJoin() ? AddJoin(item) : AddLeaf(item);
}

FromCompiler::NodePtr FromCompiler::AddLeaf(FromItem& item) {
  if (leaves_.size() == kMaxTables) Raise(platform::kErrQueryTooComplex);
  FromLeaf leaf;
  ScopeTable columns;
  columns.name = item.Name();
  if (item.query) {
    RowPlanPtr plan = CompileQuery(std::move(item.query), nullptr, compilation_);
    columns.columns = plan->Columns();
    auto source = std::make_unique<DerivedRows>(std::move(plan));
    leaf.source = leaf.derived = source.get();
    sources_.push_back(std::move(source));
  } else {
    std::shared_ptr<Table> table = OpenTable(compilation_.database, item.table, platform::kErrTableNotFound);
    for (const Column& column : table->Definition().columns) columns.columns.push_back(DescribeColumn(column));
    compilation_.reads.push_back(table->Page());
    auto source = std::make_unique<TableSource>(std::move(table), context_);
    leaf.source = leaf.table = source.get();
    sources_.push_back(std::move(source));
  }
  scope_.Add(std::move(columns));
  leaves_.push_back(leaf);
  auto node = std::make_unique<Node>();
  node->first = leaves_.size() - 1;
  node->last = leaves_.size();
  return node;
}

FromCompiler::NodePtr FromCompiler::AddJoin(FromItem& item) {
  auto node = std::make_unique<Node>();
  node->left = AddItem(*item.left);
  node->right = AddItem(*item.right);
  node->first = node->left->first;
  node->last = node->right->last;
  node->join = item.join;
  BindOn(*item.on, *node);
  CheckOn(*item.on, *node);
  SplitConditions(*item.on, node->conditions);
  return node;
}

void FromCompiler::BindOn(Expression& on, const Node& join) {
  RequireJoined(on, join);
  scope_.Restrict(join.first, join.last);
  Binder(scope_, compilation_, platform::kErrAggregateInJoin).Bind(on);
  scope_.Unrestrict();
}

// A name of a table that is not joined here must not be taken for one of a query around.
void FromCompiler::RequireJoined(const Expression& e, const Node& join) {
  if (e.kind == Expression::Kind::Name) {
    scope_.Restrict(join.first, join.last);
    const bool isJoined = scope_.FindOwn(e.qualifier, e.name).has_value();
    scope_.Unrestrict();
    if (!isJoined && scope_.FindOwn(e.qualifier, e.name)) Raise(platform::kErrNotInJoin, e.name);
  }
  for (const ExpressionPtr& operand : e.operands) RequireJoined(*operand, join);
}

// Both sides must be named, outer joins must leave no doubt about the order of joining, types must compare.
void FromCompiler::CheckOn(const Expression& on, Node& join) {
  if (!compilation_.unknown.empty()) return;
  const Leaves leaves = LeavesOf(on);
  if ((leaves & join.left->All()) == 0 || (leaves & join.right->All()) == 0) {
    Raise(platform::kErrJoinNotSupported);
  }
  if (join.join == JoinKind::Inner && (leaves & (join.left->Nullable() | join.right->Nullable())) != 0) {
    Raise(platform::kErrAmbiguousOuterJoin);
  }
  const Node& optional = join.join == JoinKind::Left ? *join.right : *join.left;
  if (join.join != JoinKind::Inner && optional.HasInnerJoin()) Raise(platform::kErrJoinNotSupported);
  Conditions conditions;
  SplitConditions(on, conditions);
  for (const Expression* c : conditions) {
    if (c->kind != Expression::Kind::Operation || c->operands.size() != 2) continue;
    if (c->op < Operator::Equal || c->op > Operator::GreaterEqual) continue;
    for (const ExpressionPtr& operand : c->operands) {
      const bool isName = operand->kind == Expression::Kind::Name;
      if (isName && (operand->type == dao::dbMemo || operand->type == dao::dbLongBinary)) {
        Raise(platform::kErrJoinOnLongValue, operand->name);
      }
    }
    const TypeKind a = KindOf(TypeOf(*c->operands[0]).type), b = KindOf(TypeOf(*c->operands[1]).type);
    if (a != b && a != TypeKind::Unknown && b != TypeKind::Unknown) Raise(platform::kErrJoinTypeMismatch);
  }
}

FromCompiler::Leaves FromCompiler::LeavesOf(const Expression& e) const {
  const Leaves all = (Leaves{1} << leaves_.size()) - 1;
  if (e.kind == Expression::Kind::Name) return e.level == 0 ? Leaves{1} << scope_.TableOf(e.column) : 0;
  if (e.kind == Expression::Kind::Subquery && FollowsOuter(e)) return all;
  Leaves leaves = 0;
  for (const ExpressionPtr& operand : e.operands) leaves |= LeavesOf(*operand);
  return leaves;
}

bool FromCompiler::Push(Node& node, const Expression* condition, Leaves leaves) {
  const auto within = [&](const Node& part) { return leaves != 0 && (leaves & ~part.All()) == 0; };
  if (node.IsLeaf()) {
    node.conditions.push_back(condition);
    return true;
  }
  if (node.join != JoinKind::Right && within(*node.left)) return Push(*node.left, condition, leaves);
  if (node.join != JoinKind::Left && within(*node.right)) return Push(*node.right, condition, leaves);
  if (node.join != JoinKind::Inner) return false;
  node.conditions.push_back(condition);
  return true;
}

RowSourcePtr FromCompiler::Plan(const Expression* where) {
  Conditions conditions, rest;
  if (where) SplitConditions(*where, conditions);
  for (const Expression* condition : conditions) {
    if (!root_ || !Push(*root_, condition, LeavesOf(*condition))) rest.push_back(condition);
  }
  return Filtered(root_ ? Build(*root_) : std::make_unique<SingleRow>(), std::move(rest));
}

RowSourcePtr FromCompiler::Filtered(RowSourcePtr source, Conditions conditions) {
  if (conditions.empty()) return source;
  return std::make_unique<FilteredRows>(std::move(source), std::move(conditions), context_);
}

bool FromCompiler::UseIndex(Node& leaf, const Conditions& conditions) {
  const std::size_t number = leaf.first;
  if (!leaves_[number].table) return false;
  const std::size_t first = scope_.Tables()[number].first;
  const OwnColumn column = [&](const Expression& e) -> std::optional<std::size_t> {
    const bool own = e.kind == Expression::Kind::Name && e.level == 0 && scope_.TableOf(e.column) == number;
    return own ? std::optional(e.column - first) : std::nullopt;
  };
  const IsKnown isKnown = [&](const Expression& e) { return (LeavesOf(e) & leaf.All()) == 0; };
  return leaves_[number].table->UseIndex(conditions, column, isKnown);
}

// `joined` are conditions of a join that lead from rows of its other side to rows of this table.
RowSourcePtr FromCompiler::BuildLeaf(Node& node, const Conditions& joined) {
  if (joined.empty()) UseIndex(node, node.conditions);
  Conditions conditions = joined;
  conditions.insert(conditions.end(), node.conditions.begin(), node.conditions.end());
  return Filtered(std::move(sources_[node.first]), std::move(conditions));
}

RowSourcePtr FromCompiler::Build(Node& node) { return node.IsLeaf() ? BuildLeaf(node, {}) : BuildJoin(node); }

RowSourcePtr FromCompiler::BuildJoin(Node& node) {
  Node& left = node.join == JoinKind::Right ? *node.right : *node.left;
  Node& right = node.join == JoinKind::Right ? *node.left : *node.right;
  Pager& pager = compilation_.database.Pages();
  JoinPlan plan;
  plan.outer = node.join != JoinKind::Inner;
  RowSourcePtr outer = Build(left);
  if (right.IsLeaf() && UseIndex(right, node.conditions)) {
    return std::make_unique<JoinedRows>(std::move(outer), BuildLeaf(right, node.conditions), std::move(plan),
                                        context_, pager);
  }
  plan.conditions = node.conditions;
  for (const Expression* c : node.conditions) {
    if (c->kind != Expression::Kind::Operation || c->op != Operator::Equal) continue;
    for (const std::size_t side : {0, 1}) {
      const Leaves a = LeavesOf(*c->operands[side]), b = LeavesOf(*c->operands[1 - side]);
      const bool sameKind =
          KindOf(TypeOf(*c->operands[0]).type) == KindOf(TypeOf(*c->operands[1]).type);  // else keys differ
      if (!sameKind || a == 0 || b == 0 || (a & ~left.All()) != 0 || (b & ~right.All()) != 0) continue;
      plan.equal.emplace_back(c->operands[side].get(), c->operands[1 - side].get());
      break;
    }
  }
  const bool isPlain = right.IsLeaf() && right.conditions.empty() && leaves_[right.first].table;
  RowSourcePtr inner = Build(right);
  if (plan.equal.empty() && !isPlain) inner = std::make_unique<KeptRows>(std::move(inner), pager);
  return std::make_unique<JoinedRows>(std::move(outer), std::move(inner), std::move(plan), context_, pager);
}

}  // namespace zimbrat::jet

// Expressions bound to the tables of a query: each name finds its column, each subquery becomes one that can be
// evaluated.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/database_file.h"
#include "jet/sql/expression.h"
#include "jet/sql/scope.h"

namespace zimbrat::jet {

// One statement on its way to being carried out.
struct Compilation {
  DatabaseFile& database;
  double now = 0;
  std::vector<std::u16string> unknown{};  // names without a meaning, each once
  std::vector<PageNumber> reads{};        // tables whose rows are read

  // Error 3061 with their number, when there are any.
  void RequireAllKnown() const;
};

class Binder {
 public:
  // `aggregateError` is raised for Count and its like.
  Binder(Scope& scope, Compilation& compilation, std::int32_t aggregateError)
      : scope_(scope), compilation_(compilation), aggregateError_(aggregateError) {}

  // Errors 3079, 3085, 3075 for a wrong number of arguments, and those of subqueries; unknown names are left to the compilation.
  void Bind(Expression& expression);
  // The names alone.
  void BindName(Expression& name);

 private:
  Scope& scope_;
  Compilation& compilation_;
  std::int32_t aggregateError_;
};

bool IsAggregate(const Expression& expression);
// Anywhere in it, but not in its subqueries.
bool ContainsAggregate(const Expression& expression);
bool SameExpression(const Expression& a, const Expression& b);

}  // namespace zimbrat::jet

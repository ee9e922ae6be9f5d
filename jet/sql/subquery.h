// Subqueries within expressions: as a value, in IN, EXISTS, and in comparisons with ANY, SOME and ALL.
#pragma once

#include <memory>

#include "jet/sql/binder.h"
#include "jet/sql/scope.h"

#include "column_type.h"

namespace zimbrat::jet {

// Takes the expression's query over. Error 3306 for more than one column where a value is needed; when it is
// evaluated 3354 for more than one row.
std::shared_ptr<BoundSubquery> BindSubquery(Expression& expression, Scope& outer, Compilation& compilation);

ColumnType TypeOfSubquery(const Expression& expression);
// Whether its rows depend on the row of a query around it.
bool FollowsOuter(const Expression& subquery);

}  // namespace zimbrat::jet

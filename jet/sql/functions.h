// The functions that expressions may call.
#pragma once

#include <string_view>
#include <vector>

#include "jet/sql/expression.h"

namespace zimbrat::jet {

bool IsKnownFunction(std::u16string_view name);
// What can be told without a row: error 3085 for an unknown name, 3075 for a wrong number of arguments.
void CheckCall(const Expression& call);
// The errors of CheckCall, 5 for an argument that makes no sense, 3464, 6, 7, 13, 94.
dao::Value CallFunction(const Expression& call, const EvaluationContext& context);

}  // namespace zimbrat::jet

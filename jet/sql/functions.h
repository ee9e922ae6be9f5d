// The functions that expressions may call.
#pragma once

#include <string_view>
#include <vector>

#include "jet/sql/expression.h"

namespace zimbrat::jet {

bool IsKnownFunction(std::u16string_view name);
// Error 3085 for an unknown name, 3075 for a wrong number of arguments, 5 for an argument out of range.
dao::Value CallFunction(const Expression& call, const EvaluationContext& context);

}  // namespace zimbrat::jet

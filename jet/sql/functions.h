// The functions that expressions may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "jet/sql/expression.h"

namespace zimbrat::jet {

bool IsKnownFunction(std::u16string_view name);
// The type of what a function gives.
struct FunctionResult {
  std::int16_t type = 0;     // DAO's number; 0: the type of an argument
  std::size_t argument = 0;  // which
  std::size_t step = 0;      // to the next one that may tell; 0: there is none
};
// Text for a name that is no function's.
FunctionResult ResultOf(std::u16string_view functionName);
// What can be told without a row: error 3085 for an unknown name, 3075 for a wrong number of arguments.
void CheckCall(const Expression& call);
// The errors of CheckCall, 5 for an argument that makes no sense, 3464, 6, 7, 13, 94.
dao::Value CallFunction(const Expression& call, const EvaluationContext& context);

}  // namespace zimbrat::jet

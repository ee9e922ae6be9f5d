// SELECT and UNION as text, with the clauses that other statements share.
#pragma once

#include <memory>

#include "jet/sql/statement.h"

namespace zimbrat::jet {

// From the word SELECT to the end of the query. Errors 3067, 3075, 3131 to 3133, 3135, 3138, 3141, 3145, 3308.
std::shared_ptr<QueryStatement> ParseQuery(TokenStream& tokens);

// The tables behind FROM or UPDATE, up to one of the words that may follow; `depth` grows with expressions.
FromList ParseFrom(TokenStream& tokens, std::int32_t error, int& depth);
// Nothing when there is no WHERE.
ExpressionPtr ParseWhere(TokenStream& tokens, int& depth);

}  // namespace zimbrat::jet

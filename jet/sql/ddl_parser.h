// Statements that change the structure, as text; each begins behind its first word.
#pragma once

#include "jet/sql/statement.h"

namespace zimbrat::jet {

// Errors 3289 to 3295 for malformed clauses, 3292 for an unknown type, 3251 for CHECK, DEFAULT and the like.
Statement ParseCreate(TokenStream& tokens);
Statement ParseAlter(TokenStream& tokens);
Statement ParseDrop(TokenStream& tokens);

}  // namespace zimbrat::jet

// What DBEngine.CompactDatabase does here.
#pragma once

#include <string_view>

#include "server_state.h"

namespace zimbrat::tests {

// A repaired copy of `source`; what was lost is listed in a table MSysCompactError of the copy. Errors: 3204
// when there is a target, those of opening, 3044, 3026, 3051. A target that was begun is left.
void Compact(ServerState& state, std::u16string_view source, std::u16string_view target, std::u16string_view connect);

}  // namespace zimbrat::tests

// The program's version, as all entries show it.
#pragma once

#include <string_view>

namespace zimbrat::app {

// "major.minor.revision".
std::u16string_view ProgramVersion();

}  // namespace zimbrat::app

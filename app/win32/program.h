// The program with windows, from its command line to its end.
#pragma once

#include <string_view>

namespace zimbrat::app {

// `commandLine` is what stands behind the program's name; `showCommand` how the starter wants the window
// (SW_*). No window of any kind is made for an automatic run.
void RunProgram(std::u16string_view commandLine, int showCommand);

// What stands behind the program's name in a whole command line, blanks before it left out. A tab stays:
// it separates tokens.
std::u16string_view TailOf(std::u16string_view wholeCommandLine);

}  // namespace zimbrat::app

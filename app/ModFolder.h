// The check of a new database's name and folder.
#pragma once

#include "suite/program_state.h"

#include <string_view>

namespace zimbrat::app {

// Tells the user what is wrong. Two rules only: a name that is not empty and a folder that exists;
// what the file system has against a name is told when the run starts.
bool ValidateNameAndFolder(suite::ProgramState& state, std::u16string_view name,
                           std::u16string_view folder);

}  // namespace zimbrat::app

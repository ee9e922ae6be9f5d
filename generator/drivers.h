// What the drivers of the two tasks that make a database share.
#pragma once

#include "suite/program_state.h"

#include <string>
#include <string_view>

namespace zimbrat::generator {

// Folder, separator, name, ".mdb", with doubled separators made single.
std::u16string DatabasePath(std::u16string_view folder, std::u16string_view name);

// True when nothing stands there, or the user says that it may go.
bool MayTakePlace(suite::ProgramState& state, const std::u16string& path);

}  // namespace zimbrat::generator

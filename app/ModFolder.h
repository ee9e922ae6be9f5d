// The folder dialog, and the check of a new database's name and folder.
#pragma once

#include "suite/program_state.h"
#include "platform/shell.h"

#include <string>
#include <string_view>

namespace zimbrat::app {

// Tells the user what is wrong. Two rules only: a name that is not empty and a folder that exists;
// what the file system has against a name is told when the run starts.
bool ValidateNameAndFolder(suite::ProgramState& state, std::u16string_view name,
                           std::u16string_view folder);

// Folders only, without a button that makes one.
inline constexpr unsigned kBrowseFlags = 0x0001 | 0x0040 | 0x0200;
// All drives (CSIDL_DRIVES).
inline constexpr int kBrowseRoot = 17;

// The folder that the user chose over the owner's window; empty when he cancelled.
std::u16string BrowseForFolder(platform::Shell& owner, std::u16string_view title, unsigned flags,
                               int root);

// A folder or file as a person types or pastes it: without blanks around and quotes, and a full path.
// Empty stays empty.
std::u16string FullPath(suite::ProgramState& state, std::u16string_view typed);

}  // namespace zimbrat::app

// Definitions that contradict themselves, put right as far as their rows stay readable.
#pragma once

#include <string>
#include <vector>

#include "jet/check/table_layout.h"

namespace zimbrat::jet::check {

// Columns and indexes that cannot be what they claim are changed or left out, so that a new
// definition can be made of the rest. Says what was done, a note each; nothing for a sound one.
std::vector<std::u16string> MakeSound(TableLayout& table);

}  // namespace zimbrat::jet::check

// The entry of a created database into the suite's list.
#pragma once

#include "suite/program_state.h"

#include <string>

namespace zimbrat::app {

// `akt_baza` is the database's path; ".mdb" is put behind it when it lacks it. The name in the list
// is the file's without every ".mdb", ".Mdb" and ".MDB"; other spellings stay in it.
void DodajDoListy(suite::ProgramState& state, std::u16string& akt_baza);

}  // namespace zimbrat::app

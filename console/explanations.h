// Run-time errors as the console tells them: what failed, and what a person can do about it.
#pragma once

#include "suite/program_state.h"
#include "platform/run_time_error.h"

#include <string>

namespace zimbrat::console {

// "Błąd nr 70; (Odmowa uprawnień)", and the explanation on a line of its own where Errormsg.txt has one.
std::u16string ErrorText(const suite::ProgramState& state, const platform::RunTimeError& error);

// The explanation alone; empty where there is none.
std::u16string Explanation(const suite::ProgramState& state, const platform::RunTimeError& error);
// Of the engine's last failure, and of the last database that could not be opened.
std::u16string Explanation(const suite::ProgramState& state);

}  // namespace zimbrat::console

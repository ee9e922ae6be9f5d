// Run-time errors as the console tells them: what failed, and what a person can do about it.
#pragma once

#include "suite/ModPrgFun.h"
#include "suite/program_state.h"
#include "platform/run_time_error.h"

#include <string>
#include <string_view>

namespace zimbrat::console {

// "Błąd nr 70; (Odmowa uprawnień)", and the explanation on a line of its own where Errormsg.txt has one.
std::u16string ErrorText(const suite::ProgramState& state, const platform::RunTimeError& error);

// The explanation alone of the last database that could not be opened, else of the engine's last failure; empty
// where there is none.
std::u16string Explanation(const suite::ProgramState& state);

// Why a database could not be worked on, where `said` does not say it: what belongs behind that.
std::u16string ReasonBehind(const suite::ProgramState& state, std::u16string_view said);

// That the structures could not be compared with the database, and why.
std::u16string NotComparedText(const suite::ProgramState& state, std::u16string_view database,
                               const suite::Comparison& comparison);

}  // namespace zimbrat::console

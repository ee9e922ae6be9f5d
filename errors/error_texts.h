// The explanations of errors, read from Errormsg.txt: profile syntax in Windows-1250, a section for each kind
// of source ("DAO", "Program", or another source's own name), in it a line for each error number.
#pragma once

#include "suite/program_state.h"
#include "platform/run_time_error.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zimbrat::errors {

// Of Errormsg.txt and Error.log: the folder that the state names, else the program's own.
std::u16string ErrorFile(const suite::ProgramState& state, std::u16string_view name);

// The section of a source: "DAO" for one that begins so, "Program" for the program's own, else the source.
std::u16string SourceLabel(std::u16string_view source);

// The text of that number, at most 3999 characters; empty when the file lists none, or is not there.
std::u16string FindErrorText(const suite::ProgramState& state, std::u16string_view sourceLabel,
                             std::int32_t errorNumber);

// The same for an error, by its source.
std::u16string FindErrorText(const suite::ProgramState& state, const platform::RunTimeError& error);

// Never empty: without a text of its own, what a person can do about an error of `currentSource`. Raises
// nothing.
std::u16string ErrorTextLookup(const suite::ProgramState& state, std::u16string_view sourceLabel,
                               std::int32_t errorNumber, std::u16string_view currentSource);

}  // namespace zimbrat::errors

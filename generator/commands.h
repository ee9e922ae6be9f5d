// What the renaming commands and the data statements share: when a pass runs at all, the version in
// front of a line, and the way a malformed line fails.
#pragma once

#include "generator/ModGeneruj.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zimbrat::generator {

inline constexpr std::u16string_view kStructureFileSource = u"Plik struktury";

// The program's structure version as the database records it.
struct RecordedVersion {
  std::int16_t major = 0;
  std::int16_t minor = 0;
};

using CommandRunner = std::function<bool(std::u16string_view key, std::u16string_view value,
                                         const RecordedVersion& recorded)>;

// Runs each line of `section` in order, up to the first false, on a database that records the
// program. A database with fewer than five tables counts as new: nothing runs.
bool RunCommandSection(ProgramState& state, dao::Database& database, std::u16string_view section,
                       std::u16string_view structureFilePath, std::u16string_view symbol,
                       const CommandRunner& run);

// Takes "<major>.<minor>," off the line. False when its point or comma is missing or comes first.
bool TakeVersion(std::u16string_view& line, RecordedVersion& version);

// Whether a command of that version belongs to an older structure than the recorded one. 16-bit
// arithmetic.
bool IsOlder(const RecordedVersion& command, const RecordedVersion& recorded);

// Number 1 with that description.
bool FailUnknownCommand(ProgramState& state, std::u16string description);

// Number 2, and then error 438 for the caller: the next step asks the error object for its
// "Decription".
[[noreturn]] void FailSyntax(ProgramState& state);

}  // namespace zimbrat::generator

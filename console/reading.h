// What several commands read from their options. Each function returns the outcome that refuses
// them, or nothing.
#pragma once

#include "commands.h"

#include "generator/ModGeneruj.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::console {

// --od and --do; January and December of the current year without them.
std::optional<Outcome> ReadPeriods(const CommandContext& context, generator::Periods& periods);

// --nazwa without extension and --folder as a full path.
std::optional<Outcome> ReadNameAndFolder(const CommandContext& context, std::u16string& name,
                                         std::u16string& folder);

// --struktury as full paths, each once, without the separator that cuts the driver's list.
std::optional<Outcome> ReadStructures(const CommandContext& context, char16_t separator,
                                      std::vector<std::u16string>& paths);

// A path with the separator that cuts the driver's list.
std::optional<Outcome> FindSeparator(const std::vector<std::u16string>& paths, char16_t separator);

// --haslo, else ZIMBRAT_HASLO.
platform::Secret TakePassword(const CommandContext& context);

// The full path of an existing database, and its password for the program.
std::u16string TakeDatabase(const CommandContext& context, std::u16string_view option);

}  // namespace zimbrat::console

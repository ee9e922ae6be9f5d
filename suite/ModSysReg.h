// The suite's branch of the registry: the list of databases, the default folder, the wizard's own
// settings. All operations work under the current user and raise nothing: a failure comes back as
// the registry's code, as an empty result, or not at all. Only a write can raise what its registry raises
// (exhausted memory).
#pragma once

#include "suite/program_state.h"
#include "platform/controls.h"
#include "platform/registry.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zimbrat::suite {

inline constexpr std::u16string_view kSuiteKey = u"SOFTWARE\\Orvane\\Kalmix";
inline constexpr std::u16string_view kDatabaseListKey = u"SOFTWARE\\Orvane\\Kalmix\\Bazy danych";
inline constexpr std::u16string_view kWizardKey = u"SOFTWARE\\Orvane\\Kalmix\\Zimbrat bazy";
inline constexpr std::u16string_view kNoDatabase = u"(brak)";

// Empty, a text or a 32-bit number.
using RegVariant = std::variant<std::monostate, std::u16string, std::int32_t>;

// A null key answers with the code of an invalid handle. A text of size 0 stays "empty" although
// the code says success.
std::int32_t RegValueQuery(platform::RegistryKey* key, std::u16string_view name, RegVariant& value);
// Types other than kRegSz and kRegDword write nothing and return 0.
std::int32_t RegValueSet(platform::RegistryKey* key, std::u16string_view name, std::uint32_t type,
                         const RegVariant& value);
void RegKeyCreate(platform::Registry& registry, std::u16string_view path,
                  platform::RegistryRoot root);
// Writes only into a key that exists.
void RegKeyValueSet(platform::Registry& registry, std::u16string_view path,
                    std::u16string_view name, const RegVariant& value, std::uint32_t type);
RegVariant RegKeyValueGet(platform::Registry& registry, std::u16string_view path,
                          std::u16string_view name);
// After n subkeys `names` has n + 1 elements, the last one empty. Without any it stays as it was.
bool RegSubKeysList(platform::Registry& registry, std::u16string_view path,
                    std::vector<std::u16string>& names);
// Creates the key as well.
void RegStringSave(platform::Registry& registry, std::u16string_view path, std::u16string_view name,
                   std::u16string_view text);
// A missing value is written back with the default, where its key exists.
std::u16string RegStringRead(platform::Registry& registry, std::u16string_view path,
                             std::u16string_view name, std::u16string_view defaultText);

// Records a database in the suite's list under `name`; `path` is its file.
void RegBaseKeySave(ProgramState& state, std::u16string_view name, std::u16string_view path);
// "(brak)" and the recorded databases whose files exist, one per path, in the registry's order.
// False, and the list untouched, when none is recorded.
bool RegBaseListLoad(ProgramState& state, platform::OrvCombo& list);

}  // namespace zimbrat::suite

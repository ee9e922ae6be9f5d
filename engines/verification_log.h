// A text file of the faults that a verification found and let pass.
#pragma once

#include <string_view>
#include <vector>

#include "jet/check/check.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zimbrat::engines {

// A line with the time, the database and how many faults there are, then one for each of the first twenty; in
// Windows-1250, as Error.log. A log that has grown beyond 64 KiB is begun anew; one that cannot be written is
// done without.
void AppendToLog(platform::Files& files, platform::Clock& clock, std::u16string_view log,
                 std::u16string_view database, const std::vector<jet::Fault>& faults) noexcept;

}  // namespace zimbrat::engines

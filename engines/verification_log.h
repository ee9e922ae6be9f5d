// A text file of what was found and stopped nobody: faults that a verification let pass, engines that cannot work.
//
// Windows-1250, as Error.log. One that has grown beyond 64 KiB is begun anew; one that cannot be written is done
// without.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/check/check.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zimbrat::engines {

// The time and the text, which may have several lines.
void AppendToLog(platform::Files& files, platform::Clock& clock, std::u16string_view log,
                 std::u16string_view text) noexcept;

// The database and how many faults there are, then a line for each of the first twenty.
std::u16string TextOfFaults(std::u16string_view database, const std::vector<jet::Fault>& faults);

}  // namespace zimbrat::engines

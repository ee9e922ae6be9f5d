// Everything that can be asked of a database through the engine's face, and a change of each table.
#pragma once

#include "platform/files.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::fuzz {

// Errors are allowed everywhere; what was found out in spite of them is used. Whether one of them told of damage.
bool WalkDatabase(platform::Files& files, tests::FakeClock& clock);

}  // namespace zimbrat::fuzz

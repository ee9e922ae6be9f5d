// A person's use of a database that may be damaged: it is opened, described, read through and changed.
#pragma once

#include <functional>

#include "platform/clock.h"
#include "platform/files.h"

namespace zimbrat::tests {

// Whether it went well. An error must be one of the engine's, and tell something.
bool Try(const std::function<void()>& work);

// The file is changed where it lets itself be.
void UseDatabase(platform::Files& files, platform::Clock& clock);

}  // namespace zimbrat::tests

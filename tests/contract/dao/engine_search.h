// The installed engine, for a program in which nobody tells a password.
#pragma once

#include <optional>

#include "platform/installed_engine.h"
#include "platform/system.h"

namespace zimbrat::tests {

inline std::shared_ptr<dao::Engine> FindEngine(platform::System& system) {
  return platform::FindInstalledEngine(
      {*system.files, *system.clock, [](std::u16string_view, bool) { return std::nullopt; }, [] {}});
}

}  // namespace zimbrat::tests

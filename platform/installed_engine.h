// The database engine that is installed in the system, where there is one.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/clock.h"
#include "platform/dao.h"
#include "platform/files.h"
#include "platform/secret.h"

namespace zimbrat::platform {

// What such an engine needs of the program. The references must outlive it; functions may be empty.
struct InstalledEngineNeeds {
  Files& files;
  Clock& clock;
  // A password for a protected database that is to be repaired: the one that the program holds, or,
  // `isTyped`, one that somebody types now. Nothing when there is none, or nobody to type one.
  std::function<std::optional<Secret>(std::u16string_view path, bool isTyped)> password;
  // Called between the engine's calls of long work.
  std::function<void()> pulse;
};

// Told of an engine that is registered and cannot work: its name and why.
using UnusableEngine = std::function<void(std::u16string_view)>;

// The first usable one, by preference; null without any.
std::shared_ptr<dao::Engine> FindInstalledEngine(const InstalledEngineNeeds& needs,
                                                 const UnusableEngine& unusable = {});

}  // namespace zimbrat::platform

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

// What such an engine needs of the program. The references must outlive it.
struct InstalledEngineNeeds {
  Files& files;
  Clock& clock;
  // The password of a protected database that is to be repaired, asked for after the first refusal; nothing
  // when nobody is there to type one.
  std::function<std::optional<Secret>(std::u16string_view path)> password;
  // Called between the engine's calls of long work.
  std::function<void()> pulse;
};

// The first usable one, by preference; null without any. Raises nothing.
std::shared_ptr<dao::Engine> FindInstalledEngine(const InstalledEngineNeeds& needs);

}  // namespace zimbrat::platform

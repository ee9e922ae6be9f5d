#include "platform/installed_engine.h"

namespace zimbrat::platform {

std::shared_ptr<dao::Engine> FindInstalledEngine(const InstalledEngineNeeds&, const UnusableEngine&) { return nullptr; }

}  // namespace zimbrat::platform

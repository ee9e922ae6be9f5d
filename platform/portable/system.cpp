#include "platform/system.h"

#include <csignal>

#include "platform/portable/portable_clock.h"
#include "platform/portable/posix_console.h"
#include "platform/portable/posix_environment.h"
#include "platform/portable/posix_files.h"
#include "platform/portable/profile.h"
#include "platform/portable/registry.h"

namespace zimbrat::platform {

System MakeSystem(int argc, char** argv) {
  // A reader that went away is a failed write, not the end of the process half-way through its work.
  std::signal(SIGPIPE, SIG_IGN);
  System system;
  system.console = std::make_unique<PosixConsole>(argc, argv);
  system.environment = std::make_unique<PosixEnvironment>();
  system.clock = std::make_unique<PortableClock>();
  system.files = std::make_unique<PosixFiles>();
  system.profile = std::make_unique<PortableProfile>(*system.files);
  system.registry =
      std::make_unique<PortableRegistry>(*system.files, RegistryFilePath(*system.environment));
  return system;
}

}  // namespace zimbrat::platform

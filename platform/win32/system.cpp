#include "platform/system.h"

#include <windows.h>

#include "win32_clock.h"
#include "win32_console.h"
#include "win32_environment.h"
#include "win32_files.h"
#include "win32_profile.h"
#include "win32_registry.h"

namespace zimbrat::platform {

System MakeSystem(int, char**) {
  // A drive without a disk is an error like others, and no box of the system's own that waits for somebody.
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  System system;
  system.console = std::make_unique<Win32Console>();
  system.environment = std::make_unique<Win32Environment>();
  system.clock = std::make_unique<Win32Clock>();
  system.files = std::make_unique<Win32Files>();
  system.profile = std::make_unique<Win32Profile>();
  system.registry = std::make_unique<Win32Registry>();
  return system;
}

}  // namespace zimbrat::platform

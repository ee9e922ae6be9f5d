// All interfaces of the system that the program runs on. An entry program needs no other word about it:
//
//   int main(int argc, char** argv) {
//     zimbrat::platform::System system = zimbrat::platform::MakeSystem(argc, argv);
//     system.console->WriteOutput(u"...");
//   }
//
// and links the target `platform_system`, which is platform_win32 on Windows and platform_portable
// elsewhere. Windows programs with wide entry points pass (0, nullptr): there the words are asked of the
// system anyway.
#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/console.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "platform/registry.h"

namespace zimbrat::platform {

// Members may use the ones above them, so they end in reverse order.
struct System {
  std::unique_ptr<Console> console;
  std::unique_ptr<Environment> environment;
  std::unique_ptr<Clock> clock;
  std::unique_ptr<Files> files;
  std::unique_ptr<Profile> profile;
  std::unique_ptr<Registry> registry;
};

System MakeSystem(int argc, char** argv);

}  // namespace zimbrat::platform

#include "console/run.h"

#include "platform/run_time_error.h"
#include "platform/system.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
  try {
    zimbrat::platform::System system = zimbrat::platform::MakeSystem(argc, argv);
    return zimbrat::console::Run(system);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

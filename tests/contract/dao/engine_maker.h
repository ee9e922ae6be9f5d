// The engine under the contract: each program that runs the suite says how it is made.
#pragma once

#include <functional>
#include <memory>

#include "platform/dao.h"
#include "platform/system.h"

namespace zimbrat::tests {

struct EngineUnderTest {
  // How many of its objects somebody still holds, and of the texts and values that went to and fro, asked once the
  // engine was given back. Empty: nobody counts.
  std::function<long()> held = {};
  std::shared_ptr<dao::Engine> engine;
  // One that others made: where the sources leave a number open it may raise any of those that they name, and
  // what it raises is told.
  bool isForeign = false;
};

EngineUnderTest MakeEngineUnderTest(platform::System& system);

}  // namespace zimbrat::tests

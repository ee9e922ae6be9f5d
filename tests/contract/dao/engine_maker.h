// The engine under the contract: each program that runs the suite defines it.
#pragma once

#include <memory>

#include "platform/dao.h"
#include "platform/system.h"

namespace zimbrat::tests {

std::shared_ptr<dao::Engine> MakeEngineUnderTest(platform::System& system);

}  // namespace zimbrat::tests

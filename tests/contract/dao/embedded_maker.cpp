#include "jet/engine.h"
#include "engine_maker.h"

namespace zimbrat::tests {

std::shared_ptr<dao::Engine> MakeEngineUnderTest(platform::System& system) {
  return jet::MakeEngine(*system.files, *system.clock, {});
}

}  // namespace zimbrat::tests

#include "jet/engine.h"
#include "engine_maker.h"

namespace zimbrat::tests {

EngineUnderTest MakeEngineUnderTest(platform::System& system) {
  return {.engine = jet::MakeEngine(*system.files, *system.clock, {})};
}

}  // namespace zimbrat::tests

// The adapter for an installed engine, over the stand-in for one.
#include <stdexcept>

#include "jet/engine.h"
#include "engine_maker.h"
#include "engine_search.h"
#include "tests/daoserver/allocation_count.h"
#include "tests/daoserver/dao_server.h"

namespace zimbrat::tests {

EngineUnderTest MakeEngineUnderTest(platform::System& system) {
  const auto server = std::make_shared<DaoServer>(jet::MakeEngine(*system.files, *system.clock, {}));
  std::shared_ptr<dao::Engine> found = FindEngine(system);
  if (!found) throw std::runtime_error("the adapter does not find the server");
  const auto count = std::make_shared<AllocationCount>();
  return {.held = [server, count] { return server->Objects() + count->Live(); }, .engine = std::move(found)};
}

}  // namespace zimbrat::tests

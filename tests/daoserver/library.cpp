// daoserver.dll: the server for programs that are processes of their own, over the embedded engine. Registered by
// daoserver.reg.
#include <windows.h>

#include <objbase.h>

#include "jet/engine.h"
#include "platform/system.h"
#include "factory.h"
#include "server_state.h"

namespace zimbrat::tests {
namespace {

// As daoserver.reg has it.
constexpr CLSID kClass = {0x5b0d7f3e, 0x86a1, 0x4c0f, {0x9d, 0x52, 0x3a, 0x71, 0xe4, 0x08, 0xbc, 0x96}};

struct EmbeddedEngine {
  platform::System system = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine = jet::MakeEngine(*system.files, *system.clock, {});
};

std::shared_ptr<ServerState> MakeState() {
  const auto embedded = std::make_shared<EmbeddedEngine>();
  auto state = std::make_shared<ServerState>();
  state->engine = {embedded, embedded->engine.get()};
  state->makesNewerFiles = true;
  return state;
}

}  // namespace
}  // namespace zimbrat::tests

STDAPI DllGetClassObject(REFCLSID id, REFIID type, void** object) {
  using namespace zimbrat::tests;
  *object = nullptr;
  if (!::IsEqualCLSID(id, kClass)) return CLASS_E_CLASSNOTAVAILABLE;
  return std::make_shared<Factory>(MakeState())->QueryInterface(type, object);
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

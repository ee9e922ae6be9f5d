#include "patience.h"

#include "platform/patience.h"

namespace zimbrat::generator {

void Patiently(const suite::Surroundings& on, const std::function<void()>& step) {
  platform::Patiently(on.clock, [&] { on.host.Pulse(); }, step);
}

std::unique_ptr<suite::DatabaseSession> OpenPatiently(suite::ProgramState& state,
                                                      std::u16string_view path,
                                                      std::u16string_view connect) {
  std::unique_ptr<suite::DatabaseSession> session;
  Patiently(state.on, [&] {
    session = std::make_unique<suite::DatabaseSession>(state, path, connect);
  });
  return session;
}

}  // namespace zimbrat::generator

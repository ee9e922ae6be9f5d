#include "patience.h"

#include <algorithm>
#include <iterator>

#include "suite/manners.h"
#include "platform/error_numbers.h"

namespace zimbrat::generator {
namespace {

constexpr std::int32_t kSomebodyElses[] = {
    platform::kErrPermissionDenied, platform::kErrFileInUse,   platform::kErrCannotLockFile,
    platform::kErrCannotOpenFile,   platform::kErrOpenedByUser, platform::kErrOpenedExclusivelyByUser,
};

bool IsSomebodyElses(std::int32_t number) {
  return std::ranges::find(kSomebodyElses, number) != std::end(kSomebodyElses);
}

}  // namespace

void Patiently(const suite::Surroundings& on, const std::function<void()>& step) {
  for (std::uint32_t waited = 0; waited < kPatience; waited += kPatienceStep) {
    const auto error = suite::Attempt(step);
    if (!error) return;
    if (!IsSomebodyElses(error->Number())) throw *error;
    on.clock.Sleep(kPatienceStep);
    // A user who wants to stop is heard elsewhere: what is waited for may be the clearing up.
    suite::Attempt([&] { on.host.Pulse(); });
  }
  step();
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

#include "patience.h"

#include "suite/manners.h"
#include "platform/error_numbers.h"

namespace zimbrat::generator {

void Patiently(const suite::Surroundings& on, const std::function<void()>& step) {
  for (std::uint32_t waited = 0; waited < kPatience; waited += kPatienceStep) {
    const auto error = suite::Attempt(step);
    if (!error) return;
    if (error->Number() != platform::kErrPermissionDenied) throw *error;
    on.clock.Sleep(kPatienceStep);
    on.host.Pulse();
  }
  step();
}

}  // namespace zimbrat::generator

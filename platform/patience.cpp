#include "platform/patience.h"

#include <algorithm>
#include <iterator>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {
namespace {

constexpr std::int32_t kSomebodyElses[] = {
    kErrPermissionDenied,        kErrFileInUse,    kErrCannotLockFile, kErrCannotOpenFile,
    kErrOpenedExclusivelyByUser, kErrOpenedByUser, kErrBeingClosed,    kErrBeingClosedByUser,
};

// False when it is worth another attempt.
bool IsDone(const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& error) {
    if (!IsSomebodyElses(error.Number())) throw;
    return false;
  }
}

void PulseUnheard(const std::function<void()>& pulse) {
  try {
    pulse();
  } catch (const std::exception&) {
    // Asked again by whoever is not clearing up.
  }
}

}  // namespace

bool IsSomebodyElses(std::int32_t number) {
  return std::ranges::find(kSomebodyElses, number) != std::end(kSomebodyElses);
}

void Patiently(Clock& clock, const std::function<void()>& pulse,
               const std::function<void()>& step) {
  for (std::uint32_t waited = 0; waited < kPatience; waited += kPatienceStep) {
    if (IsDone(step)) return;
    clock.Sleep(kPatienceStep);
    PulseUnheard(pulse);
  }
  step();
}

}  // namespace zimbrat::platform

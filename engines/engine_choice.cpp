#include "engines/engine_choice.h"

#include "jet/check/check.h"
#include "jet/check/new_faults.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zimbrat::engines {

namespace {

// So many that a new fault is not lost behind old ones, and so few that they fit into some 20 MiB.
constexpr std::size_t kMaxComparedFaults = 50'000;

}  // namespace

std::shared_ptr<dao::Engine> MakeEngine(platform::Files& files, platform::Clock& clock,
                                        std::function<void()> pulse) {
  return jet::MakeEngine(files, clock, std::move(pulse));
}

void VerifyDatabase(platform::Files& files, std::u16string_view path, std::u16string_view original,
                    std::function<void()> pulse) {
  jet::CheckOptions options;
  options.maxFaults = kMaxComparedFaults;
  options.pulse = std::move(pulse);
  const std::vector<jet::Fault> faults = jet::CheckFile(files, path, options);
  if (!jet::HasErrors(faults)) return;
  std::vector<jet::Fault> former;
  if (!original.empty()) former = jet::CheckFile(files, original, options);
  // The last one says that there are more, of which nothing is known.
  const auto errors = std::ranges::count_if(former, &jet::Fault::isError);
  if (static_cast<std::size_t>(errors) > options.maxFaults) former.pop_back();
  const std::vector<jet::Fault> found = jet::NewFaults(faults, former);
  if (found.empty()) return;
  const jet::Fault& fault = found.front();
  throw platform::RunTimeError(
      platform::kErrCannotOpenDatabase, u"Zimbrat",
      u"Baza danych nie przeszła sprawdzenia: " + fault.place + u": " + fault.text);
}

}  // namespace zimbrat::engines

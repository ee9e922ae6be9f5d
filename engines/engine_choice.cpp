#include "engines/engine_choice.h"

#include "jet/check/check.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

#include <utility>

namespace zimbrat::engines {

std::shared_ptr<dao::Engine> MakeEngine(platform::Files& files, platform::Clock& clock,
                                        std::function<void()> pulse) {
  return jet::MakeEngine(files, clock, std::move(pulse));
}

void VerifyDatabase(platform::Files& files, std::u16string_view path, std::function<void()> pulse) {
  jet::CheckOptions options;
  options.pulse = std::move(pulse);
  for (const jet::Fault& fault : jet::CheckFile(files, path, options)) {
    if (!fault.isError) continue;
    throw platform::RunTimeError(
        platform::kErrCannotOpenDatabase, u"Zimbrat",
        u"Baza danych nie przeszła sprawdzenia: " + fault.place + u": " + fault.text);
  }
}

}  // namespace zimbrat::engines

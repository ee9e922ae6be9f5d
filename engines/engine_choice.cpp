#include "engines/engine_choice.h"

#include "jet/check/check.h"
#include "jet/check/new_faults.h"
#include "jet/engine.h"
#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "verification_log.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zimbrat::engines {

namespace {

// So many that a new fault is not lost behind old ones, and so few that they fit into some 20 MiB.
constexpr std::size_t kMaxComparedFaults = 50'000;

std::u16string_view BitsOfTheProgram() { return sizeof(void*) == 8 ? u"64" : u"32"; }

// A person can do three things about it.
[[noreturn]] void RaiseNoneInstalled(const std::u16string& unusable) {
  const std::u16string bits(BitsOfTheProgram());
  throw platform::RunTimeError(
      platform::kErrCannotCreateObject, std::u16string(dao::kSourceEngine),
      u"W systemie nie ma silnika baz danych DAO, którego mógłby użyć program " + bits +
          u"-bitowy. Zainstaluj silnik baz danych Access w wersji " + bits +
          u"-bitowej, użyj programu o innej liczbie bitów albo wybierz silnik wbudowany (opcja --silnik programu "
          u"zimbratc, zmienna ZIMBRAT_SILNIK)." +
          (unusable.empty() ? u"" : u" Zarejestrowane, lecz nie działają: " + unusable + u"."));
}

std::vector<jet::Fault> NewFaultsOf(const Surroundings& on, std::u16string_view path,
                                    std::u16string_view original) {
  jet::CheckOptions options;
  options.maxFaults = kMaxComparedFaults;
  options.pulse = on.pulse;
  const std::vector<jet::Fault> faults = jet::CheckFile(on.files, path, options);
  if (!jet::HasErrors(faults)) return {};
  std::vector<jet::Fault> former;
  if (!original.empty()) former = jet::CheckFile(on.files, original, options);
  // The last one says that there are more, of which nothing is known.
  const auto errors = std::ranges::count_if(former, &jet::Fault::isError);
  if (static_cast<std::size_t>(errors) > options.maxFaults) former.pop_back();
  return jet::NewFaults(faults, former);
}

}  // namespace

EngineChoice::EngineChoice(Surroundings on, Find find) : on_(std::move(on)), find_(std::move(find)) {
  if (!on_.pulse) on_.pulse = [] {};
}

std::optional<Wish> FindWish(std::u16string_view word) {
  if (word.empty()) return Wish::Found;
  if (word == kInstalledWord) return Wish::Installed;
  if (word == kEmbeddedWord) return Wish::Embedded;
  return std::nullopt;
}

std::shared_ptr<dao::Engine> EngineChoice::Engine(const Password& password) {
  if (engine_) return engine_;
  std::u16string unusable;
  if (on_.wish != Wish::Embedded) {
    engine_ = find_({on_.files, on_.clock, password, on_.pulse}, [&](std::u16string_view why) {
      unusable.append(unusable.empty() ? u"" : u"; ").append(why);
    });
  }
  isInstalled_ = engine_ != nullptr;
  if (!engine_ && on_.wish == Wish::Installed) RaiseNoneInstalled(unusable);
  if (!unusable.empty()) Log(u"Silniki zarejestrowane w systemie, które nie działają: " + unusable);
  if (!engine_) engine_ = jet::MakeEngine(on_.files, on_.clock, on_.pulse);
  return engine_;
}

void EngineChoice::Verify(std::u16string_view path, std::u16string_view original) const {
  const std::vector<jet::Fault> faults = NewFaultsOf(on_, path, original);
  const auto stopping = std::ranges::find_if(
      faults, [&](const jet::Fault& fault) { return !isInstalled_ || fault.isLoss; });
  if (stopping != faults.end()) {
    throw platform::RunTimeError(
        platform::kErrCannotOpenDatabase, platform::kOwnErrorSource,
        u"Baza danych nie przeszła sprawdzenia: " + stopping->place + u": " + stopping->text);
  }
  if (!faults.empty()) Log(TextOfFaults(path, faults));
}

void EngineChoice::Log(std::u16string_view text) const {
  if (!on_.log.empty()) AppendToLog(on_.files, on_.clock, on_.log, text);
}

}  // namespace zimbrat::engines

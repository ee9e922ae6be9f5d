// Which database engine the program works with, and who verifies a finished copy.
#pragma once

#include "platform/clock.h"
#include "platform/dao.h"
#include "platform/files.h"
#include "platform/installed_engine.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::engines {

// Found: the installed engine, the embedded one where there is none.
enum class Wish { Found, Installed, Embedded };

// The environment variable and what it may say.
inline constexpr std::u16string_view kEngineVariable = u"ZIMBRAT_SILNIK";
inline constexpr std::u16string_view kEmbeddedWord = dao::kEmbeddedEngine;
inline constexpr std::u16string_view kInstalledWord = u"zainstalowany";

// Found for an empty word, nothing for an unknown one.
std::optional<Wish> FindWish(std::u16string_view word);

// Beside Error.log.
inline constexpr std::u16string_view kVerificationLog = u"Sprawdzenia.log";

// What the engines and the verification need of the program. The references must outlive them.
struct Surroundings {
  platform::Files& files;
  platform::Clock& clock;
  Wish wish = Wish::Found;
  // Called from time to time during long work; may be empty.
  std::function<void()> pulse = {};
  // The path of the log of what stops nobody; empty: there is none.
  std::u16string log = {};
};

// The choice of one program run.
class EngineChoice {
 public:
  using Find = std::function<std::shared_ptr<dao::Engine>(const platform::InstalledEngineNeeds&,
                                                          const platform::UnusableEngine&)>;
  using Password = decltype(platform::InstalledEngineNeeds::password);

  explicit EngineChoice(Surroundings on, Find find = &platform::FindInstalledEngine);

  // Made at the first call; `password` tells that of a database to be repaired, and may be empty. Error 429 when
  // an installed one is wished for and there is none.
  std::shared_ptr<dao::Engine> Engine(const Password& password = {});

  // Throws a RunTimeError that names a fault of the file which `original` has not; of all its faults when
  // `original` is empty. In a file of the embedded engine any fault counts; in one of an installed engine that
  // which cannot be read, while the rest goes into the log. The original is read only when the file has faults.
  void Verify(std::u16string_view path, std::u16string_view original) const;

 private:
  void Log(std::u16string_view text) const;

  Surroundings on_;
  Find find_;
  std::shared_ptr<dao::Engine> engine_;
  bool isInstalled_ = false;
};

}  // namespace zimbrat::engines

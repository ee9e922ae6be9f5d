#include "app/existing_database_run.h"

#include "generator/ModGeneruj.h"
#include "suite/manners.h"
#include "suite/product.h"
#include "platform/error_numbers.h"
#include "platform/files.h"
#include "platform/host.h"

namespace zimbrat::app {
namespace {

constexpr std::u16string_view kNoChoice = u"Wskaż bazę danych i spróbuj ponownie.";

constexpr std::u16string_view kNoRepair =
    u"Sprawdzenie, naprawa bazy nie powiodły się. Zimbrat nie może sprawdzić struktury bazy. "
    u"Zakończ działanie innych programów korzystających z bazy i spróbuj ponownie.";

constexpr std::u16string_view kNothingToAdd =
    u"Zaznacz programy i spróbuj ponownie. Jeżeli lista jest pusta lub brakuje nazw "
    u"zainstalowanych programów, sprawdź czy pliki definicji struktur *.stb znajdują się w "
    u"katalogu Zimbrata.";

constexpr std::u16string_view kNothingToCheck =
    u"Zaznacz programy, dla których rozbudowana zostanie baza danych. Jeżeli lista jest pusta lub "
    u"brakuje nazw zainstalowanych programów, sprawdź czy pliki definicji struktur *.stb znajdują "
    u"się w katalogu Zimbrata.";

bool Refuse(suite::ProgramState& state, std::u16string_view text, int icon) {
  state.on.host.ShowMessage(text, icon, u"");
  return false;
}

bool Repair(suite::ProgramState& state, std::u16string_view path) {
  if (path.empty()) return Refuse(state, kNoChoice, platform::kMsgInformation);
  return NaprawBaze(state, path) || Refuse(state, kNoRepair, platform::kMsgCritical);
}

// Nobody should learn of lost rows from his customers.
void TellLosses(suite::ProgramState& state, const dao::RepairOutcome& outcome) {
  if (outcome.losses.empty()) return;
  std::u16string text =
      u"Baza danych była uszkodzona. Naprawa odzyskała z niej wszystko, co dało się odczytać, oprócz:";
  for (const std::u16string& loss : outcome.losses) text.append(suite::kCrLf).append(loss);
  if (!outcome.keptFile.empty()) {
    text.append(suite::kCrLf).append(u"Uszkodzony plik zachowano: ").append(outcome.keptFile);
  }
  state.on.host.ShowMessage(text, platform::kMsgExclamation, suite::MessageTitle());
}

}  // namespace

bool NaprawBaze(suite::ProgramState& state, std::u16string_view path) {
  const bool isDone = suite::Record(state.context, [&] {
    TellLosses(state, state.Engine().RepairDatabase(path));
    return true;
  });
  // The next attempt asks for another one.
  if (!isDone && state.context.Number == platform::kErrInvalidPassword) state.databasePassword.Clear();
  return isDone;
}

Prepared PrepareDatabase(suite::ProgramState& state, suite::Task task, std::u16string_view path,
                         const std::vector<std::u16string>& structureFiles,
                         platform::OrvListCheck& programs) {
  state.task = task;
  const bool isCheck = task == suite::Task::Sprawdz;
  if (isCheck && !Repair(state, path)) return {};
  if (!suite::OpenAndIdentify(state, path)) return {};
  // A run killed in its last moment: the programs are there, so no run may follow that clears up.
  suite::Attempt([&] { generator::RemoveLeftovers(state.on, platform::FolderOfPath(path)); });
  return {true, suite::CompareWithDatabase(state, path, structureFiles, programs, isCheck)};
}

bool OpenTemplate(suite::ProgramState& state, std::u16string_view path) {
  state.task = suite::Task::Wzorzec;
  return suite::OpenAndIdentify(state, path);
}

bool TakeSelection(suite::ProgramState& state, suite::Task task, platform::OrvListCheck& programs,
                   Selection& selection) {
  selection = {};
  if (task == suite::Task::Sprawdz) {
    selection.files = programs.CheckedValues();
    return !selection.files.empty() ||
           Refuse(state, kNothingToCheck, platform::kMsgInformation);
  }
  return suite::CollectSelection(programs, selection.files, selection.names) ||
         Refuse(state, kNothingToAdd, platform::kMsgInformation);
}

RunResult RunExtension(suite::ProgramState& state, suite::Task task, std::u16string_view path,
                       const Selection& selection, platform::ProgressBar& progress) {
  if (path.empty()) {
    Refuse(state, kNoChoice, platform::kMsgInformation);
    return {};
  }
  suite::Choices choices;
  choices.database = path;
  choices.programs = selection.names;
  return RunDriver(state, task, choices, progress, [&] {
    return generator::RozbudujBaze(state, path, selection.files, progress);
  });
}

}  // namespace zimbrat::app

// The commands that work on an existing database: structures added to it; checked and upgraded.
#include "progress_line.h"
#include "reading.h"
#include "app/existing_database_run.h"
#include "suite/ModPrgFun.h"
#include "platform/text.h"

namespace zimbrat::console {
namespace {

// A comparison passes over a file without program or version and ends quietly at an error: a file
// that was asked for by name must not go unnoticed.
std::optional<Outcome> FindUncompared(const CommandContext& context, std::u16string_view database,
                                      const std::vector<std::u16string>& structures) {
  platform::OrvListCheck all(u';');
  suite::CompareWithDatabase(context.state, database, structures, all, false);
  for (const std::u16string& path : structures) {
    if (all.FindValue(path) >= 0) continue;
    return Failed(u"Pliku struktury nie można porównać z bazą (brak w nim nazwy lub wersji "
                  u"programu, symbol jest błędny albo bazę zajął właśnie inny program): " + path);
  }
  return std::nullopt;
}

// The message of the page, and the engine's reason where the message gives none.
Outcome NotReady(const CommandContext& context) {
  std::u16string text = context.host.Messages();
  const suite::KontekstBledu& error = context.state.context;
  if (error.Number != 0) {
    text += u"Błąd nr " + platform::DecimalText(error.Number) + u"; (" + error.Description + u")";
  }
  return Failed(std::move(text));
}

Outcome Extend(const CommandContext& context, suite::Task task,
               const std::vector<std::u16string>& structures, bool areGiven) {
  suite::ProgramState& state = context.state;
  const std::u16string database = TakeDatabase(context, u"--baza");
  platform::OrvListCheck programs(u';');
  const app::Prepared prepared = app::PrepareDatabase(state, task, database, structures, programs);
  if (!prepared) return NotReady(context);
  if (areGiven) {
    if (auto refusal = FindUncompared(context, database, structures)) return *refusal;
  }
  if (!prepared.isCompared) return Failed(u"Nie można porównać struktur z bazą: " + database);
  Outcome outcome;
  if (task == suite::Task::Dodaj) {
    for (int i = 0; i < programs.Count(); ++i) programs.SetChecked(i, true);
  }
  app::Selection selection;
  if (!app::TakeSelection(state, task, programs, selection)) {
    return Failed(context.host.Messages());
  }
  TakePrograms(context, programs, outcome);
  const app::RunResult result = WithProgressLine(context, [&](platform::ProgressBar& bar) {
    return app::RunExtension(state, task, database, selection, bar);
  });
  if (!result.done) return Failed(context.host.Messages() + result.text);
  outcome.text = context.host.Messages() + result.text;
  outcome.database = database;
  return outcome;
}

}  // namespace

Outcome RunDodaj(const CommandContext& context) {
  std::vector<std::u16string> structures;
  if (auto refusal = ReadStructures(context, u';', structures)) return *refusal;
  return Extend(context, suite::Task::Dodaj, structures, true);
}

Outcome RunSprawdz(const CommandContext& context) {
  const bool isGiven = context.arguments.Has(u"--struktury");
  std::vector<std::u16string> structures;
  if (!isGiven) {
    structures = suite::StructureFiles(context.state);
  } else if (auto refusal = ReadStructures(context, u';', structures)) {
    return *refusal;
  }
  return Extend(context, suite::Task::Sprawdz, structures, isGiven);
}

}  // namespace zimbrat::console

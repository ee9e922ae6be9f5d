// The commands that work on an existing database: structures added to it; checked and upgraded.
#include "console/explanations.h"
#include "progress_line.h"
#include "reading.h"
#include "app/existing_database_run.h"
#include "suite/ModPrgFun.h"

namespace zimbrat::console {
namespace {

// A comparison passes over a file without program or version: one that was asked for by name must
// not go unnoticed.
std::optional<Outcome> FindUnnamedProgram(const CommandContext& context,
                                          const std::vector<std::u16string>& structures) {
  for (const std::u16string& path : structures) {
    const auto header = suite::ReadProgramHeader(context.state.on.profile, path);
    if (header.program.empty() || header.verMajor.empty()) {
      return Failed(u"Plik struktury nie podaje nazwy lub wersji programu: " + path);
    }
  }
  return std::nullopt;
}

// The message of the page, and the engine's reason where the message gives none.
Outcome NotReady(const CommandContext& context) {
  const std::u16string& text = context.host.Messages();
  return Failed(text + ReasonBehind(context.state, text));
}

Outcome Extend(const CommandContext& context, suite::Task task,
               const std::vector<std::u16string>& structures) {
  suite::ProgramState& state = context.state;
  const std::u16string database = TakeDatabase(context, u"--baza");
  platform::OrvListCheck programs(u';');
  const app::Prepared prepared = app::PrepareDatabase(state, task, database, structures, programs);
  if (!prepared) return NotReady(context);
  // The rest of the list would be missing, and a check would praise what it has not seen.
  if (prepared.comparison.error) return Failed(NotComparedText(state, database, prepared.comparison));
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
  if (!result.done) return Failed(context.host.Messages() + result.text + Explanation(context.state));
  outcome.text = context.host.Messages() + result.text;
  outcome.database = database;
  return outcome;
}

}  // namespace

Outcome RunDodaj(const CommandContext& context) {
  context.state.task = suite::Task::Dodaj;
  std::vector<std::u16string> structures;
  if (auto refusal = ReadStructures(context, u';', structures)) return *refusal;
  if (auto refusal = FindUnnamedProgram(context, structures)) return *refusal;
  return Extend(context, suite::Task::Dodaj, structures);
}

Outcome RunSprawdz(const CommandContext& context) {
  context.state.task = suite::Task::Sprawdz;
  std::vector<std::u16string> structures;
  if (!context.arguments.Has(u"--struktury")) {
    structures = suite::StructureFiles(context.state);
    if (auto refusal = FindSeparator(structures, u';')) return *refusal;
  } else {
    if (auto refusal = ReadStructures(context, u';', structures)) return *refusal;
    if (auto refusal = FindUnnamedProgram(context, structures)) return *refusal;
  }
  return Extend(context, suite::Task::Sprawdz, structures);
}

}  // namespace zimbrat::console

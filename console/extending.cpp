// The commands that work on an existing database: structures added to it; checked and upgraded.
#include "progress_line.h"
#include "reading.h"
#include "app/existing_database_run.h"
#include "suite/ModPrgFun.h"
#include "platform/text.h"

namespace zimbrat::console {
namespace {

// Each file must name its program: a comparison passes over one that does not.
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
  std::u16string text = context.host.Messages();
  const suite::KontekstBledu& error = context.state.context;
  if (error.Number != 0) {
    text += u"Błąd nr " + platform::DecimalText(error.Number) + u"; (" + error.Description + u")";
  }
  return Failed(std::move(text));
}

Outcome Extend(const CommandContext& context, suite::Task task,
               const std::vector<std::u16string>& structures) {
  suite::ProgramState& state = context.state;
  const std::u16string database = TakeDatabase(context, u"--baza");
  platform::OrvListCheck programs(u';');
  if (!app::PrepareDatabase(state, task, database, structures, programs)) return NotReady(context);
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
  if (auto refusal = FindUnnamedProgram(context, structures)) return *refusal;
  return Extend(context, suite::Task::Dodaj, structures);
}

Outcome RunSprawdz(const CommandContext& context) {
  if (!context.arguments.Has(u"--struktury")) {
    return Extend(context, suite::Task::Sprawdz, suite::StructureFiles(context.state));
  }
  std::vector<std::u16string> structures;
  if (auto refusal = ReadStructures(context, u';', structures)) return *refusal;
  if (auto refusal = FindUnnamedProgram(context, structures)) return *refusal;
  return Extend(context, suite::Task::Sprawdz, structures);
}

}  // namespace zimbrat::console

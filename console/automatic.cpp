// The automatic run over the form without a window, and what it came to.
#include "console/explanations.h"
#include "progress_line.h"
#include "reading.h"
#include "app/ModFolder.h"
#include "app/mdiMenu.h"
#include "app/modMain.h"
#include "app/run_host.h"
#include "suite/ModSysReg.h"
#include "platform/shell.h"

namespace zimbrat::console {
namespace {

constexpr std::u16string_view kUsage =
    u"Podaj człony w jednym cudzysłowie, na przykład: zimbratc auto \"auto|Firma\".";

// The program as it starts, over the surroundings of the command.
struct Program {
  explicit Program(const suite::Surroundings& on)
      : host(on.host, state),
        state({on.files, on.registry, on.profile, on.clock, on.environment, host, on.makeEngine}) {}

  app::RunHost host;
  suite::ProgramState state;
  platform::Shell shell;
  app::mdiMenu form{state, shell};
};

std::u16string DatabaseOf(Program& program) {
  const app::mdiMenu& form = program.form;
  return std::u16string(form.obListaBaz.Value() ? form.cmbBazaNazwa.HiddenValue()
                                                : form.txtBazaNazwa.Text());
}

// The registry's operations say nothing of their failures.
bool IsRecorded(Program& program, std::u16string_view status) {
  return suite::RegStringRead(program.state.on.registry, suite::kWizardKey, app::kStatusValue, u"") ==
         status;
}

Outcome OutcomeOf(Program& program) {
  const app::mdiMenu& form = program.form;
  std::u16string text = program.host.Suppressed();
  if (const auto& note = form.labUwaga.Caption(); !note.empty()) text.append(note).append(suite::kCrLf);
  if (form.akt_plansza == u"Koniec") text += form.txtOpisKon.Text();
  // A run that failed leaves Next disabled and the reason in the summary's place.
  if (!form.cmdDalej.Enabled()) text += form.txtOpisGen.Text();
  const bool isRight = app::HasFoundAllRight(form);
  if (!isRight) text += ReasonBehind(program.state, text);
  const bool isRecorded = IsRecorded(program, isRight ? u"Ok" : u"Error");
  if (!isRight && text.empty()) text = u"Baza nie została sprawdzona.";
  if (!isRecorded) text += u" Stanu pracy nie udało się zapisać w\u00A0rejestrze.";
  if (!isRight || !isRecorded) return Failed(std::move(text));
  Outcome outcome;
  outcome.text = std::move(text);
  outcome.database = DatabaseOf(program);
  return outcome;
}

}  // namespace

Outcome RunAuto(const CommandContext& context) {
  Program program(context.state.on);
  program.state.databasePassword = TakePassword(context);
  const bool isShown = !context.arguments.isQuiet && context.console.IsErrorTerminal();
  bool wantsWindow = false;
  {
    const ProgressLine line(context.console, program.form.progBar, isShown);
    app::Main(program.state, program.form, context.arguments.words, [&] { wantsWindow = true; });
  }
  if (wantsWindow) return WrongUsage(std::u16string(kUsage));
  if (program.state.ArgAuto.empty()) {
    return WrongUsage(u"Pierwszy człon jest pusty, więc nic nie zostało sprawdzone. " +
                      std::u16string(kUsage));
  }
  return OutcomeOf(program);
}

}  // namespace zimbrat::console

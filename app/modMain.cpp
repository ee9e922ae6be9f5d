#include "app/modMain.h"

#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "platform/files.h"
#include "platform/text.h"

namespace zimbrat::app {
namespace {

constexpr int kMostTokens = 10;

bool IsSeparator(char16_t unit) { return unit == u'|' || unit == u'\t'; }

void WriteStatus(suite::ProgramState& state, std::u16string_view status) {
  suite::RegStringSave(state.on.registry, state.StatusKey, kStatusValue, status);
}

// A listed name or path is taken from the list, any other text is a path of its own.
void ChooseDatabase(mdiMenu& form, std::u16string_view database) {
  form.cmbBazaNazwa.SetValue(database);
  if (form.cmbBazaNazwa.Value() == database) return;
  form.obInnaLok.Select();
  form.txtBazaNazwa.SetText(database);
}

void RunAutomatically(suite::ProgramState& state, mdiMenu& form) {
  using suite::Attempt;
  // Start, database, structures, the run itself.
  constexpr int kPresses = 4;
  Attempt([&] { form.obStartSprawdz.Select(); });
  Attempt([&] { ChooseDatabase(form, state.ArgBaza); });
  state.StatusKey = suite::kWizardKey;
  Attempt([&] { WriteStatus(state, u"start"); });
  for (int press = 0; press < kPresses; ++press) Attempt([&] { form.cmdDalej_Click(); });
  const bool isRight = HasFoundAllRight(form);
  Attempt([&] { WriteStatus(state, isRight ? u"Ok" : u"Error"); });
  Attempt([&] { form.cmdAnuluj_Click(); });
}

}  // namespace

void Main(suite::ProgramState& state, mdiMenu& form, std::u16string_view commandLine,
          const std::function<void()>& show) {
  using suite::Attempt;
  Attempt([&] {
    state.helpFile = platform::JoinPath(state.on.environment.ProgramFolder(), u"Zimbrat.chm");
  });
  // The kind of run first: what fails at loading is shown to nobody in an automatic one.
  std::vector<std::u16string> Args;
  int most = 0;
  const bool isStartedByAProgram = ParseCommandLine(commandLine, Args, most);
  Args.resize(static_cast<std::size_t>(kMostTokens) + 1);
  state.ArgAuto = Args[1];
  state.ArgBaza = Args[2];
  Attempt([&] { form.Form_Load(); });
  if (!isStartedByAProgram) return show();
  if (!state.ArgAuto.empty()) RunAutomatically(state, form);
}

bool HasFoundAllRight(const mdiMenu& form) {
  return form.cmdAnuluj.Caption() == u"Zakończ" &&
         platform::Contains(form.txtOpisKon.Text(), u"posiadają poprawną strukturę");
}

bool ParseCommandLine(std::u16string_view commandLine, std::vector<std::u16string>& Args, int& most) {
  if (most < 1) most = kMostTokens;
  const auto limit = static_cast<std::size_t>(most);
  Args.assign(limit + 1, {});
  if (commandLine.empty()) return false;
  std::size_t count = 0;
  bool isInside = false;
  for (std::size_t at = 0; at < commandLine.size(); ++at) {
    if (IsSeparator(commandLine[at])) {
      const bool isPair = at + 1 < commandLine.size() && IsSeparator(commandLine[at + 1]);
      // Empty tokens beyond the limit have no place either.
      if (isPair && count < limit) ++count;
      isInside = false;
      continue;
    }
    if (!isInside && count == limit) break;
    if (!isInside) ++count;
    isInside = true;
    Args[count] += commandLine[at];
  }
  Args.resize(count + 1);
  return true;
}

int ShowMessage(const suite::ProgramState& state, platform::Host& windows, std::u16string_view prompt,
                int buttons, std::u16string_view title) {
  if (!state.ArgAuto.empty()) return platform::kAnswerNone;
  return windows.ShowMessage(prompt, buttons, title);
}

}  // namespace zimbrat::app

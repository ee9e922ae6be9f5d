#include "errors/ModError.h"

#include "errors/error_texts.h"
#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "platform/text.h"

namespace zimbrat::errors {

DialogOwner OwnerAmong(const std::vector<const platform::Form*>& forms) {
  if (forms.size() <= 1) return DialogOwner::None;
  return forms.front()->Tag == u"mdi" ? DialogOwner::FirstForm : DialogOwner::ActiveForm;
}

void ErrorReport(suite::ProgramState& state, const platform::RunTimeError& error,
                 std::u16string_view routineName, std::u16string_view, const Outside& outside,
                 const ShowDialog& show) {
  dlgError dialog(state, outside);
  const std::u16string routine(routineName);
  dialog.txtErrorOpis.SetText(error.Description() + u" [" + routine + u"]");
  dialog.txtErrorNumber.SetText(platform::DecimalText(error.Number()));
  dialog.txtErrorSource.SetText(error.Source());
  dialog.SetCaption(u"Błąd programu");
  dialog.errFunkcja = routine;
  dialog.txtErrorPolski.SetText(
      ErrorTextLookup(state, SourceLabel(error.Source()), error.Number(), error.Source()));
  const bool wasChosen =
      suite::RegStringRead(state.on.registry, state.StatusKey, kSaveErrorsValue, u"0") == u"1";
  dialog.cbrejestr.SetValue(wasChosen ? 1 : 0);
  state.on.host.SetBusy(false);
  show(dialog, OwnerAmong(state.forms));
}

void ErrorReportUnseen(suite::ProgramState& state, const platform::RunTimeError& error,
                       std::u16string_view routineName) noexcept {
  suite::Abandon([&] {
    platform::Shell shell;
    platform::Automation automation;
    platform::Mapi mapi;
    ErrorReport(state, error, routineName, {}, {shell, automation, mapi, [] {}},
                [](dlgError& dialog, DialogOwner) { dialog.Unload(); });
  });
}

}  // namespace zimbrat::errors

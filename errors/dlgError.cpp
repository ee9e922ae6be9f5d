#include "errors/dlgError.h"

#include "errors/ModOutlook.h"
#include "errors/error_texts.h"
#include "errors/mail_method.h"
#include "report_mail.h"
#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "suite/product.h"
#include "platform/text.h"

#include <utility>

namespace zimbrat::errors {
namespace {

using suite::Attempt;

constexpr int kHeightWithDetails = 4740;  // twips

ErrorFacts FactsIn(const dlgError& dialog) {
  return {std::u16string(dialog.txtErrorNumber.Text()), std::u16string(dialog.txtErrorSource.Text()),
          std::u16string(dialog.txtErrorPolski.Text()), std::u16string(dialog.txtErrorOpis.Text())};
}

}  // namespace

dlgError::dlgError(suite::ProgramState& state, const Outside& outside) : state_(state), outside_(outside) {
  const std::pair<platform::Captioned*, std::u16string_view> captions[] = {
      {&labErrorNumber, u"Numer"},
      {&labErrorSource, u"Źródło"},
      {&cbrejestr, u"&Zapisuj błędy w\u00A0dzienniku Error.log"},
      {&cmdOK, u"OK"},
      {&cmdPrzerwij, u"&Przerwij"},
      {&cmdSzczegol, u"&Szczegóły"},
      {&cmdWyslij, u"&Wyślij"},
  };
  for (const auto& [control, caption] : captions) control->SetCaption(caption);
  ShowDetails(false);
  cmdOK.SetOnClick([this] { Unload(); });
  cmdPrzerwij.SetOnClick([this] { cmdPrzerwij_Click(); });
  cmdSzczegol.SetOnClick([this] { cmdSzczegol_Click(); });
  cmdWyslij.SetOnClick([this] { cmdWyslij_Click(); });
}

void dlgError::ShowDetails(bool areVisible) {
  platform::Control* const details[] = {&labErrorNumber, &labErrorSource, &txtErrorNumber, &txtErrorSource,
                                        &txtErrorOpis};
  for (platform::Control* control : details) control->SetVisible(areVisible);
}

void dlgError::Unload() {
  // While the mail program is at work, or a question stands over the window, messages may still come through.
  if (isSending_ || isAsking_) return;
  Attempt([&] {
    suite::RegStringSave(state_.on.registry, state_.StatusKey, kSaveErrorsValue,
                         platform::DecimalText(cbrejestr.Value()));
  });
  if (cbrejestr.Value() == 1) Attempt([&] { WriteErrorLog(); });
  SetVisible(false);
}

void dlgError::WriteErrorLog() {
  const std::pair<std::u16string_view, std::u16string> facts[] = {
      {u"Program", std::u16string(suite::ProductTitle()) + u" ver. " + std::u16string(suite::ProductVersion())},
      {u"Źródło", std::u16string(txtErrorSource.Text())},
      {u"Numer", std::u16string(txtErrorNumber.Text())},
      {u"Obiekt", errFunkcja},
      {u"Opis", std::u16string(txtErrorOpis.Text())},
  };
  const std::u16string file = ErrorFile(state_, u"Error.log");
  for (const auto& fact : facts) {
    Attempt([&] {
      const std::u16string now = state_.on.clock.ShortDate() + u" " + state_.on.clock.ShortTime();
      const std::string name = platform::Ansi1250FromUtf16(fact.first), text = platform::Ansi1250FromUtf16(fact.second);
      state_.on.profile.Write(platform::Ansi1250FromUtf16(now), &name, &text, file);
    });
  }
}

void dlgError::cmdPrzerwij_Click() {
  if (isAsking_) return;
  isAsking_ = true;
  int answer = platform::kAnswerNo;
  Attempt([&] {
    answer = state_.on.host.ShowMessage(
        u"Nastąpi przerwanie działania programu. Wszystkie niezapisane dane zostaną utracone. Kontynuować?",
        platform::kMsgQuestionYesNoDefaultNo, suite::ProductTitle());
  });
  isAsking_ = false;
  if (answer == platform::kAnswerYes) outside_.endProgram();
}

void dlgError::cmdSzczegol_Click() {
  ShowDetails(true);
  SetHeight(kHeightWithDetails);
  // The button would take the focus along.
  txtErrorOpis.SetFocus();
  cmdSzczegol.SetEnabled(false);
}

void dlgError::cmdWyslij_Click() {
  if (isSending_ || isAsking_) return;
  isSending_ = true;
  Attempt([&] {
    const suite::Hourglass hourglass(state_.on.host);
    Send();
  });
  isSending_ = false;
}

void dlgError::Send() {
  switch (WayOf(state_.mailMethod)) {
    case MailWay::Link:
      outside_.shell.Open(ReportLink(FactsIn(*this)));
      return;
    case MailWay::Outlook:
      return SendThroughOutlook();
    case MailWay::Mapi:
      return SendThroughMapi();
  }
}

void dlgError::SendThroughOutlook() {
  SendOutlookMail(state_, outside_.automation, ReportSubject(), suite::SupportAddress(),
                  ReportText(FactsIn(*this)), {});
}

void dlgError::SendThroughMapi() {
  if (session_ == platform::kNoMailSession) Attempt([&] { session_ = outside_.mapi.SignOn(); });
  Attempt([&] {
    outside_.mapi.Send(session_, {std::u16string(suite::SupportAddress()), ReportSubject(),
                                  ReportTextToComplete(FactsIn(*this))});
  });
  Attempt([&] {
    outside_.mapi.SignOff(session_);
    session_ = platform::kNoMailSession;
  });
}

}  // namespace zimbrat::errors

// The form that shows one run-time error, without a view: ErrorReport fills it in. A view draws the controls,
// runs while the form is visible, and hands a closed window in as Unload.
//
// Nothing that fails in it reaches the user: the step is passed over.
#pragma once

#include "suite/program_state.h"
#include "platform/automation.h"
#include "platform/controls.h"
#include "platform/mapi.h"
#include "platform/shell.h"

#include <functional>
#include <string>
#include <string_view>

namespace zimbrat::errors {

// Under the state's StatusKey: the check box of the last dialog, "0", "1" or "2".
inline constexpr std::u16string_view kSaveErrorsValue = u"Zapisz błędy";

// What the dialog reaches beyond the program.
struct Outside {
  platform::Shell& shell;
  platform::Automation& automation;
  platform::Mapi& mapi;
  // Ends the program at once, whatever it is doing.
  std::function<void()> endProgram;
};

class dlgError : public platform::Form {
 public:
  // Both must outlive the form.
  dlgError(suite::ProgramState& state, const Outside& outside);

  // Keeps the choice, writes the log where that is checked, and hides the form.
  void Unload();
  // Appends the error to Error.log: a section for the present minute, a key for each fact.
  void WriteErrorLog();

  std::u16string errFunkcja;  // the routine that failed

  platform::TextBox txtErrorPolski;
  platform::Label labErrorNumber;
  platform::TextBox txtErrorNumber;
  platform::Label labErrorSource;
  platform::TextBox txtErrorSource;
  platform::TextBox txtErrorOpis;
  platform::CheckBox cbrejestr;
  platform::Button cmdOK;
  platform::Button cmdPrzerwij;
  platform::Button cmdSzczegol;
  platform::Button cmdWyslij;

  // Whether the mail program is at work on a report.
  bool IsSending() const { return isSending_; }

 private:
  void ShowDetails(bool areVisible);
  void cmdPrzerwij_Click();
  void cmdSzczegol_Click();
  void cmdWyslij_Click();
  void Send();
  void SendThroughOutlook();
  void SendThroughMapi();

  suite::ProgramState& state_;
  const Outside& outside_;
  suite::Loaded loaded_{state_, *this};
  platform::MailSession session_ = platform::kNoMailSession;
  bool isSending_ = false;
  bool isAsking_ = false;  // whether the program is to end
};

}  // namespace zimbrat::errors

// The form for a database password, without a view. As designed it takes a new password twice; after
// NoweHaslo(true) it asks for the password of one database. A view draws the controls, runs while the
// form is visible, and hands a closed window in as a click on cmdAnuluj.
//
// The rest of the program asks through Host::AskPassword; a host with windows answers with PromptForPassword.
#pragma once

#include "platform/controls.h"
#include "platform/host.h"
#include "platform/secret.h"

#include <functional>
#include <optional>
#include <string_view>

namespace zimbrat::dialogs {

class dlgBazaHaslo : public platform::Form {
 public:
  // `host` shows the messages and must outlive the form.
  explicit dlgBazaHaslo(platform::Host& host);

  // Called before the form is shown. With false only the mouse pointer changes.
  void NoweHaslo(bool opcja_nowe);

  // OK wants both fields equal, else a password that is not empty. For the caller to set.
  bool mustConfirm = false;
  // The user's decision. The caller sets it before the form is shown; cmdAnuluj takes it back.
  bool Zapisz = false;

  platform::Label labOpis;
  platform::TextBox txtOpis;
  platform::Label labHaslo;
  platform::TextBox txtHaslo;  // the password
  platform::Button cmdOK;
  platform::Button cmdAnuluj;

 private:
  void cmdOK_Click();
  void cmdAnuluj_Click();

  platform::Host& host_;
};

// Asks for the password of that database. `showModal` makes the form visible and returns once it is
// hidden. Nothing when the user cancelled.
std::optional<platform::Secret> PromptForPassword(
    platform::Host& host, std::u16string_view database,
    const std::function<void(dlgBazaHaslo& form)>& showModal);

}  // namespace zimbrat::dialogs

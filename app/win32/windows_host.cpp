#include "windows_host.h"

#include "dialogs/dlgBazaHaslo.h"
#include "password_window.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"
#include "wizard_window.h"

#include <string>

namespace zimbrat::app {
namespace {

// The usual pointer while somebody is asked something in the middle of work.
class Asking {
 public:
  explicit Asking(bool& isAsking) : isAsking_(isAsking), wasAsking_(isAsking) {
    isAsking_ = true;
    // What was pressed before the question appeared is no answer to it.
    BusyWindow::DropInput();
    former_ = ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
  }
  ~Asking() {
    ::SetCursor(former_);
    isAsking_ = wasAsking_;
  }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

 private:
  bool& isAsking_;
  bool wasAsking_;
  HCURSOR former_;
};

}  // namespace

HWND WindowsHost::Owner() const { return window_ == nullptr ? nullptr : window_->Window(); }

// The window in front: a message of the password window lies over that one.
HWND WindowsHost::Front() const {
  const HWND owner = Owner();
  return owner == nullptr ? nullptr : ::GetLastActivePopup(owner);
}

int WindowsHost::ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) {
  const Asking asking(isAsking_);
  const std::u16string text(prompt), caption(title);
  return ::MessageBoxW(Front(), platform::Lend(text), platform::Lend(caption),
                       static_cast<UINT>(buttons));
}

void WindowsHost::Pulse() {
  if (window_ != nullptr) window_->Pulse();
}

std::optional<platform::Secret> WindowsHost::AskPassword(std::u16string_view database) {
  const Asking asking(isAsking_);
  return dialogs::PromptForPassword(*this, database, [this](dialogs::dlgBazaHaslo& form) {
    PasswordWindow window(form, *this, Owner());
    form.SetVisible(true);
    window.RunModally();
  });
}

void WindowsHost::ReportError(const platform::RunTimeError& error, std::u16string_view routine) {
  ShowMessage(u"Błąd nr " + platform::DecimalText(error.Number()) + u": " + error.Description() +
                  u" [" + std::u16string(routine) + u"]",
              platform::kMsgCritical, u"Błąd programu");
}

void WindowsHost::SetBusy(bool busy) {
  // A form that asks sets the usual pointer back; the work below it goes on afterwards.
  if (window_ != nullptr && !isAsking_) window_->SetBusy(busy);
}

}  // namespace zimbrat::app

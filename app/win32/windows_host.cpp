#include "windows_host.h"

#include "dialogs/dlgBazaHaslo.h"
#include "error_window.h"
#include "password_window.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "suite/manners.h"
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

// A message of the password window lies over that one.
HWND WindowsHost::Front() const {
  const HWND owner = Owner();
  return owner == nullptr ? ::GetActiveWindow() : ::GetLastActivePopup(owner);
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
  // A window that fails while it shows a failure must not do so without end.
  constexpr int kMostReports = 4;
  const Asking asking(isAsking_);
  ++reports_;
  const auto failure = suite::Attempt([&] {
    if (reports_ > kMostReports) throw error;
    errors::ErrorReport(state_, error, routine, {}, outside_,
                        [this](errors::dlgError& form, errors::DialogOwner owner) { ShowError(form, owner); });
  });
  --reports_;
  if (!failure) return;
  std::u16string text;
  suite::Attempt([&] {
    text = u"Błąd inicjowania okna obsługi błędów.\r\n\r\nBłąd nr " + platform::DecimalText(error.Number()) +
           u"; (" + error.Description() + u") [" + std::u16string(routine) + u"]";
  });
  ::MessageBoxW(Front(), platform::Lend(text), L"Błąd programu", MB_ICONERROR);
}

void WindowsHost::ShowError(errors::dlgError& form, errors::DialogOwner owner) {
  HWND over = nullptr;
  if (owner == errors::DialogOwner::FirstForm) over = Owner();
  if (owner == errors::DialogOwner::ActiveForm) over = ::GetActiveWindow();
  ErrorWindow window(form, *this, over);
  form.SetVisible(true);
  window.RunModally();
}

void WindowsHost::SetBusy(bool busy) {
  // The work below a form that asks goes on afterwards.
  if (isAsking_) {
    ::SetCursor(::LoadCursorW(nullptr, busy ? IDC_WAIT : IDC_ARROW));
  } else if (window_ != nullptr) {
    window_->SetBusy(busy);
  }
}

}  // namespace zimbrat::app

// The host with windows: message boxes, the password window, the error window, the hourglass.
#pragma once

#include <windows.h>

#include <functional>

#include "errors/ModError.h"
#include "suite/program_state.h"
#include "platform/host.h"

namespace zimbrat::app {

class WizardWindow;

class WindowsHost : public platform::Host {
 public:
  using Verify = std::function<void(std::u16string_view path, std::u16string_view original)>;
  // `verify` throws when a finished copy must not be put in place. The others must outlive the host, and
  // need not be constructed yet.
  WindowsHost(Verify verify, suite::ProgramState& state, const errors::Outside& outside)
      : verify_(std::move(verify)), state_(state), outside_(outside) {}

  // The window over which everything is shown; null while there is none.
  void SetWindow(WizardWindow* window) { window_ = window; }
  HWND Owner() const;
  // The window in front, over which the next one is shown; null while there is none.
  HWND Front() const;

  int ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) override;
  void Pulse() override;
  void VerifyCopy(std::u16string_view path, std::u16string_view original) override {
    verify_(path, original);
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view database) override;
  void ReportError(const platform::RunTimeError& error, std::u16string_view routine) override;
  void SetBusy(bool busy) override;

 private:
  void ShowError(errors::dlgError& form, errors::DialogOwner owner);

  Verify verify_;
  suite::ProgramState& state_;
  const errors::Outside& outside_;
  WizardWindow* window_ = nullptr;
  bool isAsking_ = false;
  int reports_ = 0;  // that are open
};

}  // namespace zimbrat::app

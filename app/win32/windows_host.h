// The host with windows: message boxes, the password window, the hourglass.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/host.h"

namespace zimbrat::app {

class WizardWindow;

class WindowsHost : public platform::Host {
 public:
  using Verify = std::function<void(std::u16string_view path, std::u16string_view original)>;
  // `verify` throws when a finished copy must not be put in place.
  explicit WindowsHost(Verify verify) : verify_(std::move(verify)) {}

  // The window over which everything is shown; null while there is none.
  void SetWindow(WizardWindow* window) { window_ = window; }
  HWND Owner() const;

  int ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) override;
  void Pulse() override;
  void VerifyCopy(std::u16string_view path, std::u16string_view original) override {
    verify_(path, original);
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view database) override;
  void ReportError(const platform::RunTimeError& error, std::u16string_view routine) override;
  void SetBusy(bool busy) override;

 private:
  HWND Front() const;

  Verify verify_;
  WizardWindow* window_ = nullptr;
  bool isAsking_ = false;
};

}  // namespace zimbrat::app

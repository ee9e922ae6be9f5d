// The host of both kinds of run: in an interactive one everything is handed on to the windows, in an
// automatic one nobody is shown or asked anything, whatever fails.
#pragma once

#include "suite/program_state.h"
#include "platform/host.h"

#include <string>

namespace zimbrat::app {

class RunHost : public platform::Host {
 public:
  // `windows` verifies copies and gives the pulse in both kinds of run. `state` tells which kind it is,
  // and need not be constructed yet.
  RunHost(platform::Host& windows, suite::ProgramState& state)
      : windows_(windows), state_(state) {}

  // What an automatic run has kept to itself, each text once, on lines of their own.
  const std::u16string& Suppressed() const { return suppressed_; }

  int ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) override;
  void Pulse() override { windows_.Pulse(); }
  void VerifyCopy(std::u16string_view path, std::u16string_view original) override {
    windows_.VerifyCopy(path, original);
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view database) override;
  void ReportError(const platform::RunTimeError& error, std::u16string_view routine) override;
  void SetBusy(bool busy) override;

 private:
  bool IsAutomatic() const { return !state_.ArgAuto.empty(); }
  void Keep(std::u16string_view text);

  platform::Host& windows_;
  suite::ProgramState& state_;
  std::u16string suppressed_;
};

}  // namespace zimbrat::app

// What the console answers to the floors below: messages are gathered for the outcome, questions
// are answered by options, a password is asked for only where somebody can type it.
#pragma once

#include "suite/program_state.h"
#include "platform/console.h"
#include "platform/host.h"

#include <functional>
#include <string>

namespace zimbrat::console {

class ConsoleHost : public platform::Host {
 public:
  using Verify = std::function<void(std::u16string_view path, std::u16string_view original)>;
  // `verify` throws when a finished copy must not be put in place. `state` need not be constructed yet.
  ConsoleHost(platform::Console& console, suite::ProgramState& state, Verify verify)
      : console_(console), state_(state), verify_(std::move(verify)) {}

  // The answer to questions; without it they are answered with no and told as messages.
  void SetAnswersYes(bool yes) { answersYes_ = yes; }
  // Messages shown so far, each on a line of its own.
  const std::u16string& Messages() const { return messages_; }

  int ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) override;
  // Error 18 when the user wants the work to end.
  void Pulse() override;
  void VerifyCopy(std::u16string_view path, std::u16string_view original) override {
    verify_(path, original);
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view database) override;
  void ReportError(const platform::RunTimeError& error, std::u16string_view routine) override;
  void SetBusy(bool) override {}

 private:
  platform::Console& console_;
  suite::ProgramState& state_;
  Verify verify_;
  std::u16string messages_;
  bool answersYes_ = false;
};

}  // namespace zimbrat::console

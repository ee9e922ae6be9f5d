// The terminal of a POSIX process, in UTF-8.
#pragma once

#include "platform/console.h"

namespace zimbrat::platform {

class PosixConsole : public Console {
 public:
  PosixConsole(int argc, char** argv) : argc_(argc), argv_(argv) {}

  std::vector<std::u16string> Arguments() override;
  void HideArgument(std::size_t index) override;
  void WriteOutput(std::u16string_view text) override;
  void WriteError(std::u16string_view text) override;
  bool HasFailed() override;
  bool IsErrorTerminal() override;
  void NoteInterrupts() override;
  bool IsInterrupted() override;
  std::optional<Secret> AskPassword(std::u16string_view prompt) override;

 private:
  int argc_;
  char** argv_;
  bool hasFailed_ = false;
};

}  // namespace zimbrat::platform

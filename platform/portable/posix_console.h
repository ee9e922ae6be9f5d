// The terminal of a POSIX process, in UTF-8.
#pragma once

#include "platform/console.h"

namespace zimbrat::platform {

class PosixConsole : public Console {
 public:
  PosixConsole(int argc, char** argv);

  std::vector<std::u16string> Arguments() override;
  void WriteOutput(std::u16string_view text) override;
  void WriteError(std::u16string_view text) override;
  bool HasFailed() override;
  bool IsErrorTerminal() override;
  std::optional<std::u16string> AskPassword(std::u16string_view prompt) override;

 private:
  std::vector<std::u16string> arguments_;
  bool hasFailed_ = false;
};

}  // namespace zimbrat::platform

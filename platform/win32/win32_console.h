// The console of a Windows process: wide calls into a console window, UTF-8 into files and pipes.
#pragma once

#include "platform/console.h"

namespace zimbrat::platform {

class Win32Console : public Console {
 public:
  std::vector<std::u16string> Arguments() override;
  void WriteOutput(std::u16string_view text) override;
  void WriteError(std::u16string_view text) override;
  bool HasFailed() override;
  bool IsErrorTerminal() override;
  void NoteInterrupts() override;
  bool IsInterrupted() override;
  std::optional<Secret> AskPassword(std::u16string_view prompt) override;

 private:
  bool hasFailed_ = false;
};

}  // namespace zimbrat::platform

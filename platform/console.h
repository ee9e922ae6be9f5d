// The terminal of a console program. Texts arrive whole whatever the system's code page: UTF-8 on POSIX
// systems and into redirected output, wide characters into a Windows console window.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/secret.h"

namespace zimbrat::platform {

class Console {
 public:
  virtual ~Console() = default;
  // The words of the command line without the program's name.
  virtual std::vector<std::u16string> Arguments() = 0;
  // Overwrites that word, counted as in Arguments, where the system shows it to others and lets us.
  virtual void HideArgument(std::size_t) {}
  // As given, no line end added. A closed pipe or full disk makes later output nothing; HasFailed tells.
  virtual void WriteOutput(std::u16string_view text) = 0;
  virtual void WriteError(std::u16string_view text) = 0;
  // Whether standard output took everything so far.
  virtual bool HasFailed() = 0;
  virtual bool IsErrorTerminal() = 0;
  // From now on the first Ctrl+C, or request of the system to end, is noted instead of ending the process.
  virtual void NoteInterrupts() = 0;
  virtual bool IsInterrupted() = 0;
  // Shows the prompt on standard error and reads a line without echo. Nothing when standard input is no
  // terminal or ends.
  virtual std::optional<Secret> AskPassword(std::u16string_view prompt) = 0;
};

}  // namespace zimbrat::platform

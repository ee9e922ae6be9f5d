// A terminal that the test looks at.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/console.h"

namespace zimbrat::tests {

class FakeConsole : public platform::Console {
 public:
  std::vector<std::u16string> words;
  std::vector<std::size_t> hiddenWords;
  std::u16string output, error;
  bool isTerminal = false;
  int passwordsAsked = 0;
  bool notesInterrupts = false;
  bool isInterrupted = false;

  std::vector<std::u16string> Arguments() override { return words; }
  void HideArgument(std::size_t index) override { hiddenWords.push_back(index); }
  void WriteOutput(std::u16string_view text) override { output += text; }
  void WriteError(std::u16string_view text) override { error += text; }
  bool HasFailed() override { return false; }
  void NoteInterrupts() override { notesInterrupts = true; }
  bool IsInterrupted() override { return notesInterrupts && isInterrupted; }
  bool IsErrorTerminal() override { return isTerminal; }
  std::optional<platform::Secret> AskPassword(std::u16string_view) override {
    ++passwordsAsked;
    return std::nullopt;
  }
};

}  // namespace zimbrat::tests

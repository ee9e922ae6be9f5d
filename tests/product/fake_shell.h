// A desktop that answers as the test says.
#pragma once

#include <string>
#include <vector>

#include "platform/shell.h"

namespace zimbrat::tests {

class FakeShell : public platform::Shell {
 public:
  std::u16string folder;  // what the folder browser gives
  std::u16string file;    // what the file dialog gives
  std::vector<std::u16string> opened;
  platform::FileDialog dialog;

  std::u16string BrowseForFolder(std::u16string_view, unsigned, int) override { return folder; }
  std::u16string OpenFileDialog(const platform::FileDialog& asked) override {
    dialog = asked;
    return file;
  }
  bool Open(std::u16string_view target) override {
    opened.emplace_back(target);
    return true;
  }
};

}  // namespace zimbrat::tests

// The shell's dialogs of Windows, over the window that `owner` names at the time.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/shell.h"

namespace zimbrat::platform {

class Win32Shell : public Shell {
 public:
  // `owner` may give null.
  explicit Win32Shell(std::function<HWND()> owner) : owner_(std::move(owner)) {}

  std::u16string BrowseForFolder(std::u16string_view title, unsigned flags, int root) override;
  std::u16string OpenFileDialog(const FileDialog& dialog) override;
  bool Open(std::u16string_view target) override;

 private:
  std::function<HWND()> owner_;
};

}  // namespace zimbrat::platform

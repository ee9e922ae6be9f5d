// The desktop's own dialogs and viewers, over one window. Where there is no desktop nothing is chosen
// and nothing opened, as this class answers itself.
#pragma once

#include <string>
#include <string_view>

namespace zimbrat::platform {

// A dialog that asks for a file to open.
struct FileDialog {
  std::u16string title;
  std::u16string folder;  // shown first
  std::u16string name;    // in the name field at first
  std::u16string filter;  // "description|pattern"
  unsigned flags = 0;     // OFN_*, passed on as they are
};

class Shell {
 public:
  virtual ~Shell() = default;
  // The folder chosen below the special folder `root` (CSIDL_*), with the flags BIF_*; empty when the
  // user cancelled or the choice has no path.
  virtual std::u16string BrowseForFolder(std::u16string_view title, unsigned flags, int root);
  // The file name that the dialog returns; empty when the user cancelled.
  virtual std::u16string OpenFileDialog(const FileDialog& dialog);
  // Opens a document or a link with the program that is registered for it; false when there is none.
  virtual bool Open(std::u16string_view target);
};

}  // namespace zimbrat::platform

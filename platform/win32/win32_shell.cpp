#include "win32_shell.h"

#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <string>

#include "com_apartment.h"
#include "handles.h"
#include "wide_text.h"

namespace zimbrat::platform {
namespace {

// The longest path that the system makes, in units.
constexpr std::size_t kLongestPath = 32'768;

// "description|pattern" as the dialog wants it: each part ended by a NUL, a further one at the end.
std::u16string FilterText(std::u16string filter) {
  std::ranges::replace(filter, u'|', u'\0');
  return filter + std::u16string(2, u'\0');
}

}  // namespace

std::u16string Win32Shell::BrowseForFolder(std::u16string_view title, unsigned flags, int root) {
  // The dialogs of the shell are COM objects underneath.
  const Apartment apartment;
  const HWND owner = owner_();
  ItemList top;
  ::SHGetSpecialFolderLocation(owner, root, top.Receive());
  const std::u16string shown(title);
  std::u16string name(MAX_PATH, u'\0');
  BROWSEINFOW info = {};
  info.hwndOwner = owner;
  if (top.IsOpen()) info.pidlRoot = top.Get();
  info.pszDisplayName = LendRoom(name);
  info.lpszTitle = Lend(shown);
  info.ulFlags = flags;
  const ItemList chosen(::SHBrowseForFolderW(&info));
  if (!chosen.IsOpen()) return {};
  std::u16string path(MAX_PATH, u'\0');
  if (!::SHGetPathFromIDListW(chosen.Get(), LendRoom(path))) return {};
  return path.substr(0, path.find(u'\0'));
}

std::u16string Win32Shell::OpenFileDialog(const FileDialog& dialog) {
  const Apartment apartment;
  const std::u16string filter = FilterText(dialog.filter);
  std::u16string file = dialog.name.substr(0, kLongestPath - 1);
  file.resize(kLongestPath, u'\0');
  OPENFILENAMEW open = {};
  open.lStructSize = sizeof open;
  open.hwndOwner = owner_();
  open.lpstrFilter = Lend(filter);
  open.nFilterIndex = 1;
  open.lpstrFile = LendRoom(file);
  open.nMaxFile = static_cast<DWORD>(file.size());
  open.lpstrInitialDir = Lend(dialog.folder);
  open.lpstrTitle = Lend(dialog.title);
  open.Flags = dialog.flags;
  if (!::GetOpenFileNameW(&open)) return {};
  return file.substr(0, file.find(u'\0'));
}

bool Win32Shell::Open(std::u16string_view target) {
  const Apartment apartment;
  constexpr INT_PTR kGreatestError = 32;
  const std::string text = AnsiText(std::u16string(target));
  const HINSTANCE answer =
      ::ShellExecuteA(owner_(), "open", text.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(answer) > kGreatestError;
}

}  // namespace zimbrat::platform

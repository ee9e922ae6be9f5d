#include "win32_hold.h"

#include <string>
#include <utility>

#include "handles.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "wide_text.h"
#include "win32_errors.h"

namespace zimbrat::platform {
namespace {

class Win32Hold : public Hold {
 public:
  explicit Win32Hold(FileHandle file) : file_(std::move(file)) {}

 private:
  FileHandle file_;
};

// A link is opened itself: somebody could have planted one in a folder open to all.
FileHandle OpenLockFile(const std::u16string& name, DWORD access, DWORD how, DWORD flags) {
  return FileHandle(::CreateFileW(Lend(name), access, 0, nullptr, how,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT | flags, nullptr));
}

}  // namespace

std::unique_ptr<Hold> TryWin32Hold(std::u16string_view path) {
  const std::u16string lockPath = std::u16string(path) + u".lock";
  const std::u16string name = SystemPath(lockPath);
  FileHandle file;
  DWORD code = ERROR_ACCESS_DENIED;
  // A lock file on its way out may be gone between the refusal and the question why.
  for (int round = 0; code == ERROR_ACCESS_DENIED && round < 3; ++round) {
    file = OpenLockFile(name, GENERIC_READ | DELETE, OPEN_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE);
    code = file.IsOpen() ? 0 : CodeOfRefusal(::GetLastError(), name);
  }
  if (code != 0) {
    if (code != ERROR_SHARING_VIOLATION) throw SystemError(code, u"blokada", lockPath);
    // One that may not be removed, another user's perhaps, is as good as one's own unless it is held.
    file = OpenLockFile(name, GENERIC_READ, OPEN_EXISTING, 0);
    if (!file.IsOpen()) return nullptr;
  }
  // A name such as COM1 opens a device.
  if (::GetFileType(file.Get()) != FILE_TYPE_DISK) throw FileError(kErrPathAccess, u"blokada", lockPath);
  return std::make_unique<Win32Hold>(std::move(file));
}

}  // namespace zimbrat::platform

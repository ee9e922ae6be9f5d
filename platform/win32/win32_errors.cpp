#include "win32_errors.h"

#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"
#include "wide_text.h"

namespace zimbrat::platform {
namespace {

constexpr DWORD kDiskQuotaExceeded = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which mingw's headers lack

std::int32_t NumberOf(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
      return kErrFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
      return kErrPathNotFound;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return kErrBadFileName;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_TOO_MANY_OPEN_FILES:
    case ERROR_PRIVILEGE_NOT_HELD:
      return kErrPathAccess;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_DELETE_PENDING:
    case ERROR_USER_MAPPED_FILE:
      return kErrPermissionDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return kErrFileExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return kErrDiskFull;
    case ERROR_NOT_READY:
      return kErrDiskNotReady;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return kErrOutOfMemory;
    default:
      return kErrDeviceIo;
  }
}

constexpr std::size_t kShortEnough = 240;  // folders must leave room for a name within 260
constexpr std::u16string_view kLongPrefix = u"\\\\?\\";

}  // namespace

RunTimeError SystemError(DWORD code, std::u16string_view operation, std::u16string_view path) {
  return FileError(NumberOf(code), operation, path);
}

DWORD CodeOfRefusal(DWORD code, const std::u16string& name) {
  if (code == ERROR_DELETE_PENDING) return ERROR_SHARING_VIOLATION;
  if (code != ERROR_ACCESS_DENIED) return code;
  const DWORD attributes = ::GetFileAttributesW(Lend(name));
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    const bool isPlain = (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) == 0;
    return isPlain ? ERROR_SHARING_VIOLATION : code;
  }
  const DWORD reason = ::GetLastError();
  const bool isBeingDeleted = reason == ERROR_ACCESS_DENIED || reason == ERROR_DELETE_PENDING;
  return isBeingDeleted ? ERROR_SHARING_VIOLATION : code;
}

std::u16string SystemPath(std::u16string_view path) {
  if (path.find(u'\0') != std::u16string_view::npos) {
    throw FileError(kErrBadFileName, u"ścieżka", path.substr(0, path.find(u'\0')));
  }
  std::u16string result(path);
  if (path.size() < kShortEnough || path.starts_with(kLongPrefix)) return result;
  const std::u16string full = GrownText([&](wchar_t* room, unsigned long size) {
    return ::GetFullPathNameW(Lend(result), size, room, nullptr);
  });
  if (full.empty()) throw SystemError(::GetLastError(), u"ścieżka", path);
  if (full.starts_with(u"\\\\")) return std::u16string(kLongPrefix) + u"UNC" + full.substr(1);
  return std::u16string(kLongPrefix) + full;
}

}  // namespace zimbrat::platform

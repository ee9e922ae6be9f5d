#include "posix_errors.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/files.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

bool FolderExists(std::u16string_view path) {
  const std::u16string_view folder = FolderOfPath(path);
  struct stat found;
  const std::string name = folder.empty() ? "." : Utf8FromUtf16(folder);
  return ::stat(name.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

std::int32_t NumberOf(int error, std::u16string_view path) {
  switch (error) {
    case ENOENT:
      return FolderExists(path) ? kErrFileNotFound : kErrPathNotFound;
    case ENOTDIR:
      return kErrPathNotFound;
    case ENAMETOOLONG:
    case EILSEQ:
      return kErrBadFileName;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP:
    case EMFILE:
    case ENFILE:
    case ENXIO:
    case EXDEV:
      return kErrPathAccess;
    case EWOULDBLOCK:
    case EBUSY:
    case ETXTBSY:
      return kErrPermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kErrDiskFull;
    case EEXIST:
      return kErrFileExists;
    case ENOMEM:
      return kErrOutOfMemory;
    case ENODEV:
    case ENOTCONN:
      return kErrDiskNotReady;
    default:
      return kErrDeviceIo;
  }
}

}  // namespace

RunTimeError ErrnoError(int error, std::u16string_view operation, std::u16string_view path) {
  return FileError(NumberOf(error, path), operation, path);
}

std::string SystemPath(std::u16string_view path) {
  if (path.find(u'\0') != std::u16string_view::npos) {
    throw FileError(kErrBadFileName, u"ścieżka", path.substr(0, path.find(u'\0')));
  }
  return Utf8FromUtf16(path);
}

}  // namespace zimbrat::platform

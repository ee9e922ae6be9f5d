#include "posix_attributes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "descriptor.h"
#include "posix_errors.h"

namespace zimbrat::platform {
namespace {

// What the file system or this user cannot carry over is left: the new file must still replace the old.
void CopyExtendedAttributes(int from, int to) {
  const ssize_t size = ::flistxattr(from, nullptr, 0);
  if (size <= 0) return;
  std::vector<char> names(static_cast<std::size_t>(size));
  const ssize_t used = ::flistxattr(from, names.data(), names.size());
  std::vector<char> value(65536);  // the system's own limit
  for (ssize_t at = 0; at < used;) {
    const char* name = names.data() + at;
    const ssize_t length = ::fgetxattr(from, name, value.data(), value.size());
    if (length >= 0) ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0);
    at += static_cast<ssize_t>(std::strlen(name)) + 1;
  }
}

Descriptor OpenForAttributes(std::u16string_view path) {
  Descriptor file(::open(SystemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.IsOpen()) throw ErrnoError(errno, u"atrybuty", path);
  return file;
}

}  // namespace

void CopyPosixAttributes(std::u16string_view from, std::u16string_view to) {
  const Descriptor source = OpenForAttributes(from);
  const Descriptor target = OpenForAttributes(to);
  struct stat wanted, present;
  if (::fstat(source.Number(), &wanted) != 0) throw ErrnoError(errno, u"atrybuty", from);
  if (::fstat(target.Number(), &present) != 0) throw ErrnoError(errno, u"atrybuty", to);
  mode_t mode = wanted.st_mode & 07777;
  const bool sameOwner = present.st_uid == wanted.st_uid && present.st_gid == wanted.st_gid;
  if (!sameOwner && ::fchown(target.Number(), wanted.st_uid, wanted.st_gid) != 0) {
    // Only root gives files away; the group alone may still be one of the user's own.
    if (present.st_gid != wanted.st_gid &&
        ::fchown(target.Number(), static_cast<uid_t>(-1), wanted.st_gid) != 0) {
      mode &= static_cast<mode_t>(~S_IRWXG | ((mode & S_IRWXO) << 3));  // a foreign group gets no more
    }
    mode &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
  }
  CopyExtendedAttributes(source.Number(), target.Number());
  if (::fchmod(target.Number(), mode) != 0) throw ErrnoError(errno, u"atrybuty", to);
}

}  // namespace zimbrat::platform

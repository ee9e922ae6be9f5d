#include "posix_move.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "descriptor.h"

namespace zimbrat::platform {
namespace {

bool IsUnknownWay(int error) {
  return error == EINVAL || error == ENOSYS || error == EPERM || error == EOPNOTSUPP || error == EMLINK;
}

}  // namespace

int MoveByRename(const std::string& from, const std::string& to) {
  return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
}

int MoveByLink(const std::string& from, const std::string& to) {
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  if (::unlink(from.c_str()) == 0) return 0;
  const int error = errno;
  ::unlink(to.c_str());
  return error;
}

int MoveOverClaim(const std::string& from, const std::string& to) {
  const Descriptor claim(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!claim.IsOpen()) return errno;
  if (::rename(from.c_str(), to.c_str()) == 0) return 0;
  const int error = errno;
  ::unlink(to.c_str());
  return error;
}

int MoveToFreeName(const std::string& from, const std::string& to) {
  int error = MoveByRename(from, to);
  if (IsUnknownWay(error)) error = MoveByLink(from, to);
  if (IsUnknownWay(error)) error = MoveOverClaim(from, to);
  return error;
}

}  // namespace zimbrat::platform

#include "posix_hold.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <utility>

#include "descriptor.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "posix_errors.h"

namespace zimbrat::platform {
namespace {

class PosixHold : public Hold {
 public:
  PosixHold(Descriptor descriptor, std::string name)
      : descriptor_(std::move(descriptor)), name_(std::move(name)) {}
  // Unlinked while still locked: whoever waits for the lock then sees that the name is another file's.
  ~PosixHold() override { ::unlink(name_.c_str()); }
  PosixHold(const PosixHold&) = delete;
  PosixHold& operator=(const PosixHold&) = delete;

 private:
  Descriptor descriptor_;
  std::string name_;
};

// Links are not followed: somebody could have planted one in a folder open to all.
Descriptor OpenLockFile(const std::string& name) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  Descriptor existing(::open(name.c_str(), kFlags));
  if (existing.IsOpen() || errno != ENOENT) return existing;
  Descriptor made(::open(name.c_str(), kFlags | O_CREAT | O_EXCL, 0644));
  // One that a strict umask closed to others would bar the name to them if it were left behind.
  if (made.IsOpen()) ::fchmod(made.Number(), 0644);
  return made;
}

}  // namespace

std::unique_ptr<Hold> TryPosixHold(std::u16string_view path) {
  const std::u16string lockPath = std::u16string(path) + u".lock";
  const std::string name = SystemPath(lockPath);
  // Each round that finds the name gone lost to a hold that ended between open and lock.
  for (int round = 0; round < 1000; ++round) {
    Descriptor descriptor = OpenLockFile(name);
    if (!descriptor.IsOpen()) {
      if (errno == EEXIST) continue;  // made by somebody else just now
      throw ErrnoError(errno, u"blokada", lockPath);
    }
    if (Uninterrupted([&] { return ::flock(descriptor.Number(), LOCK_EX | LOCK_NB); }) != 0) {
      if (errno == EWOULDBLOCK) return nullptr;
      throw ErrnoError(errno, u"blokada", lockPath);
    }
    if (IsNamed(descriptor, name, AT_SYMLINK_NOFOLLOW)) {
      return std::make_unique<PosixHold>(std::move(descriptor), name);
    }
  }
  return nullptr;
}

}  // namespace zimbrat::platform

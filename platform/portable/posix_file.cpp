#include "posix_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include "posix_errors.h"

namespace zimbrat::platform {
namespace {

// Offsets above what the system's type holds would wrap around to other places of the file.
off_t CheckedOffset(std::uint64_t offset, std::uint64_t length, std::u16string_view path) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
  if (offset > kMost || length > kMost - offset) throw ErrnoError(EFBIG, u"położenie w pliku", path);
  return static_cast<off_t>(offset);
}

}  // namespace

PosixFile::PosixFile(Descriptor descriptor, std::u16string path)
    : descriptor_(std::move(descriptor)), path_(std::move(path)) {}

std::size_t PosixFile::ReadAt(std::uint64_t offset, std::span<std::byte> bytes) {
  const off_t start = CheckedOffset(offset, bytes.size(), path_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = Uninterrupted([&] {
      return ::pread(descriptor_.Number(), bytes.data() + done, bytes.size() - done,
                     start + static_cast<off_t>(done));
    });
    if (count < 0) throw ErrnoError(errno, u"odczyt", path_);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void PosixFile::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) {
  const off_t start = CheckedOffset(offset, bytes.size(), path_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = Uninterrupted([&] {
      return ::pwrite(descriptor_.Number(), bytes.data() + done, bytes.size() - done,
                      start + static_cast<off_t>(done));
    });
    if (count <= 0) throw ErrnoError(count < 0 ? errno : EIO, u"zapis", path_);
    done += static_cast<std::size_t>(count);
  }
}

std::uint64_t PosixFile::Size() {
  struct stat found;
  if (::fstat(descriptor_.Number(), &found) != 0) throw ErrnoError(errno, u"rozmiar", path_);
  return static_cast<std::uint64_t>(found.st_size);
}

void PosixFile::Resize(std::uint64_t size) {
  const off_t length = CheckedOffset(size, 0, path_);
  if (Uninterrupted([&] { return ::ftruncate(descriptor_.Number(), length); }) != 0) {
    throw ErrnoError(errno, u"zmiana rozmiaru", path_);
  }
}

void PosixFile::Flush() {
  if (Uninterrupted([&] { return ::fsync(descriptor_.Number()); }) != 0) {
    throw ErrnoError(errno, u"zapis na dysk", path_);
  }
}

std::optional<std::uint64_t> PosixFile::FindLock(std::uint64_t offset, std::uint64_t size) {
  struct flock lock{};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = CheckedOffset(offset, size, path_);
  lock.l_len = static_cast<off_t>(size);
  // Of the open file, not of the process: closing another descriptor of it must not drop anybody's lock.
  if (::fcntl(descriptor_.Number(), F_OFD_GETLK, &lock) != 0) {
    throw ErrnoError(errno, u"blokady pliku", path_);
  }
  if (lock.l_type == F_UNLCK) return std::nullopt;
  return std::max(offset, static_cast<std::uint64_t>(lock.l_start));
}

}  // namespace zimbrat::platform

#include "posix_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "descriptor.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"
#include "posix_attributes.h"
#include "posix_errors.h"
#include "posix_file.h"
#include "posix_hold.h"
#include "posix_move.h"

namespace zimbrat::platform {
namespace {

// O_NONBLOCK keeps a pipe under the file's name from stopping the program; on files it means nothing.
constexpr int kCommonFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

int FlagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::Read:
      return O_RDONLY;
    case OpenMode::ReadWrite:
      return O_RDWR;
    case OpenMode::CreateNew:
    case OpenMode::CreatePrivate:
      return O_RDWR | O_CREAT | O_EXCL;
  }
  return O_RDONLY;
}

void RequireRegularFile(const Descriptor& descriptor, std::u16string_view path) {
  struct stat found;
  if (::fstat(descriptor.Number(), &found) != 0) throw ErrnoError(errno, u"otwarcie", path);
  if (!S_ISREG(found.st_mode)) throw FileError(kErrPathAccess, u"otwarcie", path);
}

void Lock(const Descriptor& descriptor, Sharing sharing, std::u16string_view path) {
  if (sharing == Sharing::All) return;
  const int operation = (sharing == Sharing::None ? LOCK_EX : LOCK_SH) | LOCK_NB;
  if (Uninterrupted([&] { return ::flock(descriptor.Number(), operation); }) != 0) {
    throw ErrnoError(errno, u"otwarcie (plik w użyciu)", path);
  }
}

// For file systems without unnamed files: the name lasts until the next line only.
Descriptor OpenAndUnlink(const std::string& folder) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    unsigned long long random = 0;
    if (::getrandom(&random, sizeof random, 0) < 0) break;
    char name[32];
    std::snprintf(name, sizeof name, "/.zimbrat-%016llx", random);
    const std::string path = folder + name;
    Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | kCommonFlags, 0600));
    if (file.IsOpen()) {
      ::unlink(path.c_str());
      return file;
    }
    if (errno != EEXIST) break;
  }
  return Descriptor();
}

// Returns 0 or the system's error. A folder that this user may not read, or whose file system cannot flush
// folders, is left to the system.
int FlushFolderOf(const std::string& folder) {
  const Descriptor entry(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!entry.IsOpen()) return errno == EACCES ? 0 : errno;
  if (Uninterrupted([&] { return ::fsync(entry.Number()); }) == 0 || errno == EINVAL) return 0;
  return errno;
}

void FlushContent(const std::string& name, std::u16string_view path) {
  const Descriptor file(::open(name.c_str(), O_RDONLY | kCommonFlags));
  if (!file.IsOpen()) throw ErrnoError(errno, u"zapis na dysk", path);
  if (Uninterrupted([&] { return ::fsync(file.Number()); }) != 0) {
    throw ErrnoError(errno, u"zapis na dysk", path);
  }
}

std::string SystemFolder(std::u16string_view folder) {
  return folder.empty() ? "." : SystemPath(folder);
}

// Whoever reads of this failure must not take the work for undone.
void ConfirmName(std::u16string_view path) {
  if (const int error = FlushFolderOf(SystemFolder(FolderOfPath(path)))) {
    throw ErrnoError(error, u"plik jest już na miejscu, ale zapisu folderu na dysk nie potwierdzono", path);
  }
}

std::optional<std::u16string> FindRealPath(const std::string& path) {
  char* const found = ::realpath(path.c_str(), nullptr);
  if (found == nullptr) return std::nullopt;
  std::u16string result = Utf16FromUtf8(found);
  std::free(found);
  return result;
}

}  // namespace

std::unique_ptr<File> PosixFiles::Open(std::u16string_view path, OpenMode mode, Sharing sharing) {
  const std::string name = SystemPath(path);
  const mode_t rights = mode == OpenMode::CreatePrivate ? 0600 : 0666;
  // Between open and lock the file may have been replaced: a lock on what nobody finds any more holds nothing.
  for (int round = 0; round < 1000; ++round) {
    Descriptor descriptor(
        Uninterrupted([&] { return ::open(name.c_str(), FlagsOf(mode) | kCommonFlags, rights); }));
    if (!descriptor.IsOpen()) throw ErrnoError(errno, u"otwarcie", path);
    RequireRegularFile(descriptor, path);
    Lock(descriptor, sharing, path);
    if (sharing == Sharing::All || IsNamed(descriptor, name)) {
      return std::make_unique<PosixFile>(std::move(descriptor), std::u16string(path));
    }
  }
  throw ErrnoError(EWOULDBLOCK, u"otwarcie", path);
}

std::unique_ptr<File> PosixFiles::OpenTemporary(std::u16string_view folder) {
  const std::string name = SystemFolder(folder);
  Descriptor file(::open(name.c_str(), O_TMPFILE | O_RDWR | O_EXCL | O_CLOEXEC, 0600));
  if (!file.IsOpen() && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) {
    file = OpenAndUnlink(name);
  }
  if (!file.IsOpen()) throw ErrnoError(errno, u"plik tymczasowy", JoinPath(folder, u"."));
  return std::make_unique<PosixFile>(std::move(file), std::u16string(folder));
}

std::optional<FileState> PosixFiles::State(std::u16string_view path) {
  const std::string name = SystemPath(path);
  struct stat found;
  if (::stat(name.c_str(), &found) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    throw ErrnoError(errno, u"stan", path);
  }
  FileState state;
  state.size = static_cast<std::uint64_t>(found.st_size);
  state.modified = found.st_mtim.tv_sec * 1'000'000'000LL + found.st_mtim.tv_nsec;
  state.isFolder = S_ISDIR(found.st_mode);
  state.volume = found.st_dev;
  state.number = found.st_ino;
  state.isPrivate = (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
  state.isReadOnly = ::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0;
  return state;
}

void PosixFiles::Delete(std::u16string_view path) {
  if (::unlink(SystemPath(path).c_str()) != 0) throw ErrnoError(errno, u"usunięcie", path);
}

void PosixFiles::ReplaceHeld(std::u16string_view from, std::u16string_view to,
                             std::unique_ptr<File> held) {
  const std::string source = SystemPath(from), target = SystemPath(to);
  FlushContent(source, from);
  if (::rename(source.c_str(), target.c_str()) != 0) throw ErrnoError(errno, u"zamiana pliku", to);
  held.reset();
  ConfirmName(to);
}

void PosixFiles::Move(std::u16string_view from, std::u16string_view to) {
  const std::string source = SystemPath(from), target = SystemPath(to);
  FlushContent(source, from);
  if (const int error = MoveToFreeName(source, target)) throw ErrnoError(error, u"zmiana nazwy", to);
  ConfirmName(to);
}

void PosixFiles::CopyAttributes(std::u16string_view from, std::u16string_view to) {
  CopyPosixAttributes(from, to);
}

void PosixFiles::CreateFolder(std::u16string_view path) {
  if (::mkdir(SystemPath(path).c_str(), 0777) != 0) throw ErrnoError(errno, u"nowy folder", path);
}

std::vector<std::u16string> PosixFiles::List(std::u16string_view folder,
                                             std::u16string_view pattern) {
  std::vector<std::u16string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(SystemFolder(folder).c_str()),
                                                    &::closedir);
  if (!entries) return names;
  while (const dirent* entry = ::readdir(entries.get())) {
    const std::string_view bytes = entry->d_name;
    std::u16string name = Utf16FromUtf8(bytes);
    if (name == u"." || name == u".." || !MatchesPattern(name, pattern)) continue;
    if (Utf8FromUtf16(name) != bytes) continue;  // no text of ours could open it
    names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end(), NameComesBefore);
  return names;
}

void PosixFiles::FlushFolder(std::u16string_view folder) {
  if (const int error = FlushFolderOf(SystemFolder(folder))) {
    throw ErrnoError(error, u"zapis folderu na dysk", folder);
  }
}

std::u16string PosixFiles::RealPath(std::u16string_view path) {
  const std::string name = SystemPath(path);
  if (const auto found = FindRealPath(name)) return *found;
  if (const auto folder = FindRealPath(SystemFolder(FolderOfPath(path)))) {
    return JoinPath(*folder, NameOfPath(path));
  }
  if (!path.empty() && path[0] == kPathSeparator) return std::u16string(path);
  return JoinPath(FindRealPath(".").value_or(u""), path);
}

std::uint64_t PosixFiles::FreeSpace(std::u16string_view folder) {
  struct statvfs volume;
  if (::statvfs(SystemFolder(folder).c_str(), &volume) != 0) {
    throw ErrnoError(errno, u"wolne miejsce", folder);
  }
  // Such a file system does not say, which is not the same as being full.
  if (volume.f_blocks == 0) return std::numeric_limits<std::uint64_t>::max();
  return static_cast<std::uint64_t>(volume.f_bavail) * volume.f_frsize;
}

std::unique_ptr<Hold> PosixFiles::TryHold(std::u16string_view path) { return TryPosixHold(path); }

}  // namespace zimbrat::platform

// Files and folders: the one narrow interface through which everything reaches the disk, so that a
// test can make the n-th call fail, fall short or end the process.
//
// Failures are RunTimeErrors with Visual Basic's numbers (52, 53, 57, 58, 61, 70, 71, 75, 76) whose
// description names the path. Paths are full or relative to the current folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::platform {

enum class OpenMode {
  Read,       // the file must exist
  ReadWrite,  // the file must exist
  CreateNew,  // the file must not exist (58)
  CreatePrivate,  // as CreateNew, and nobody but its owner may open it
};

enum class Sharing {
  None,     // nobody else may open the file: sharing mode 0 on Windows, an exclusive whole-file lock
            // of the system elsewhere; a conflict is error 70 at once
  Readers,  // others may read: a shared lock elsewhere
  All,      // no lock
};

class File {
 public:
  virtual ~File() = default;  // closes; never throws
  // Fills `bytes` from `offset`; returns how many there were before the file's end.
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) = 0;
  // Writes all of it or throws; extends the file when needed.
  virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
  virtual std::uint64_t Size() = 0;
  virtual void Resize(std::uint64_t size) = 0;
  // Returns when the device has the data.
  virtual void Flush() = 0;
  // The first byte of the range on which somebody else holds a lock of the system; nothing when all are
  // free. The range may lie beyond the file's end.
  virtual std::optional<std::uint64_t> FindLock(std::uint64_t offset, std::uint64_t size) = 0;
};

// A right to a name that the system ends with the process, for every program that sees the folder, on
// other machines too: a locked file "<path>.lock" beside the path. Released, and the file removed, on
// destruction; a lock file that was left behind is taken over by the next hold.
class Hold {
 public:
  virtual ~Hold() = default;
};

struct FileState {
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // nanoseconds, system's epoch
  bool isFolder = false;
  bool isReadOnly = false;
  // Whether nobody but its owner may open it; nothing where lists of rights say who may.
  std::optional<bool> isPrivate = std::nullopt;
  std::uint64_t volume = 0;  // device or serial number
  std::uint64_t number = 0;  // of the file on its volume: stays when it is renamed

  // Whether it is the same file on the disk, under whatever name.
  bool IsSameFile(const FileState& other) const {
    return volume == other.volume && number == other.number;
  }
};

class Files {
 public:
  virtual ~Files() = default;

  virtual std::unique_ptr<File> Open(std::u16string_view path, OpenMode mode, Sharing sharing) = 0;
  // A file without a lasting name in `folder`; gone when closed or when the process ends.
  virtual std::unique_ptr<File> OpenTemporary(std::u16string_view folder) = 0;
  // Nothing when there is no file or folder of that name.
  virtual std::optional<FileState> State(std::u16string_view path) = 0;
  virtual void Delete(std::u16string_view path) = 0;
  // Atomic: `to`, if it exists, is replaced in one step, durably. The content of `from` must have been
  // flushed. A target that others have open is error 70 on Windows; elsewhere it is replaced under them.
  // `held`, if given, is the target held by the caller: it is released directly before the rename where the
  // system wants that (Windows), and after it elsewhere.
  virtual void ReplaceHeld(std::u16string_view from, std::u16string_view to,
                           std::unique_ptr<File> held) = 0;
  // As Replace, but nothing is ever replaced: error 58 when `to` exists, also when it appeared just now.
  virtual void Move(std::u16string_view from, std::u16string_view to) = 0;
  // Permissions, attributes and creation time of `from` onto `to`.
  virtual void CopyAttributes(std::u16string_view from, std::u16string_view to) = 0;
  virtual void CreateFolder(std::u16string_view path) = 0;
  // Names (no paths) of the files and folders in `folder` that match `pattern`, which knows `*` and `?`
  // and ignores case; without "." and ".."; in the order of NTFS, without regard to case. An
  // unreadable or missing folder gives an empty list.
  virtual std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern) = 0;
  // Makes the folder's entries durable (nothing to do on Windows, nor in a folder that may not be read).
  virtual void FlushFolder(std::u16string_view folder) = 0;
  // The path behind links, absolute; the path itself made absolute when the file does not exist.
  virtual std::u16string RealPath(std::u16string_view path) = 0;
  // Bytes that this user may still write to the volume of `folder`; the greatest number where it does not say.
  virtual std::uint64_t FreeSpace(std::u16string_view folder) = 0;
  // Null when another process (or another hold of this one) has the name.
  virtual std::unique_ptr<Hold> TryHold(std::u16string_view path) = 0;

  void Replace(std::u16string_view from, std::u16string_view to) { ReplaceHeld(from, to, nullptr); }
  bool IsFile(std::u16string_view path);
  bool IsFolder(std::u16string_view path);
  // Whole contents; at most `limit` bytes, else error 57.
  std::string ReadAll(std::u16string_view path, std::uint64_t limit);
};

// Splits at the last separator of the platform; without one the folder is empty. A root keeps its
// separator ("/", "C:\").
std::u16string_view FolderOfPath(std::u16string_view path);
std::u16string_view NameOfPath(std::u16string_view path);
// Folder, separator, name; no separator when the folder is empty or ends in one.
std::u16string JoinPath(std::u16string_view folder, std::u16string_view name);

// `*` any units, `?` any one, letters without regard to case; "*.*" matches all, as on Windows. Time at
// most the product of the lengths.
bool MatchesPattern(std::u16string_view name, std::u16string_view pattern);
// The order of names in a folder of NTFS and in the registry: by upper-cased units.
bool NameComesBefore(std::u16string_view a, std::u16string_view b);

}  // namespace zimbrat::platform

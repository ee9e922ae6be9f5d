#include "win32_files.h"

#include <algorithm>
#include <random>

#include "handles.h"
#include "owners_rights.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"
#include "wide_text.h"
#include "win32_attributes.h"
#include "win32_errors.h"
#include "win32_file.h"
#include "win32_hold.h"

namespace zimbrat::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

DWORD ShareModeOf(Sharing sharing) {
  switch (sharing) {
    case Sharing::None:
      return 0;
    case Sharing::Readers:
      return FILE_SHARE_READ;
    case Sharing::All:
      return kShareAll;
  }
  return 0;
}

std::u16string HexDigits(std::uint32_t number) {
  std::u16string digits;
  for (int shift = 28; shift >= 0; shift -= 4) {
    digits.push_back(u"0123456789abcdef"[number >> shift & 0xF]);
  }
  return digits;
}

bool IsNothingThere(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
      return true;
    default:
      return false;
  }
}

// For questions about a file or folder, links followed; conflicts with nobody's sharing.
FileHandle OpenForQuestions(std::u16string_view path) {
  return FileHandle(::CreateFileW(Lend(SystemPath(path)), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

std::int64_t UnixNanoseconds(FILETIME time) {
  constexpr std::int64_t kFrom1601To1970 = 116444736000000000;
  const auto ticks = static_cast<std::int64_t>(
      static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
  return (ticks - kFrom1601To1970) * 100;
}

std::u16string FullPath(std::u16string_view path) {
  const std::u16string given(path);
  return GrownText([&](wchar_t* room, unsigned long size) {
    return ::GetFullPathNameW(Lend(given), size, room, nullptr);
  });
}

std::optional<std::u16string> FindFinalPath(std::u16string_view path) {
  const FileHandle file = OpenForQuestions(path);
  if (!file.IsOpen()) return std::nullopt;
  std::u16string final = GrownText([&](wchar_t* room, unsigned long size) {
    return ::GetFinalPathNameByHandleW(file.Get(), room, size,
                                       FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
  });
  if (final.empty()) return std::nullopt;
  if (final.starts_with(u"\\\\?\\UNC\\")) return u"\\\\" + final.substr(8);
  if (final.starts_with(u"\\\\?\\")) return final.substr(4);
  return final;
}

}  // namespace

std::unique_ptr<File> Win32Files::Open(std::u16string_view path, OpenMode mode, Sharing sharing) {
  const DWORD access = GENERIC_READ | (mode == OpenMode::Read ? 0 : GENERIC_WRITE);
  const bool creates = mode == OpenMode::CreateNew || mode == OpenMode::CreatePrivate;
  std::optional<OwnersRights> rights;
  if (mode == OpenMode::CreatePrivate) rights.emplace();
  const std::u16string name = SystemPath(path);
  FileHandle file(::CreateFileW(Lend(name), access, ShareModeOf(sharing),
                                rights ? rights->Attributes() : nullptr,
                                creates ? CREATE_NEW : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                nullptr));
  if (!file.IsOpen()) {
    const DWORD code = ::GetLastError();
    // Of a file that exists "access denied" is the truth.
    throw SystemError(creates ? CodeOfRefusal(code, name) : code, u"otwarcie", path);
  }
  // A name such as COM1 opens a device, on which a read might never return.
  if (::GetFileType(file.Get()) != FILE_TYPE_DISK) {
    throw FileError(kErrPathAccess, u"otwarcie", path);
  }
  return std::make_unique<Win32File>(std::move(file), std::u16string(path));
}

std::unique_ptr<File> Win32Files::OpenTemporary(std::u16string_view folder) {
  std::random_device random;
  for (int attempt = 0;; ++attempt) {
    std::u16string path = JoinPath(folder, u"~zim" + HexDigits(random()) + u".tmp");
    FileHandle file(::CreateFileW(Lend(SystemPath(path)), GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                                  nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (file.IsOpen()) return std::make_unique<Win32File>(std::move(file), std::move(path));
    if (::GetLastError() != ERROR_FILE_EXISTS || attempt == 100) {
      throw SystemError(::GetLastError(), u"plik tymczasowy", folder);
    }
  }
}

std::optional<FileState> Win32Files::State(std::u16string_view path) {
  const FileHandle file = OpenForQuestions(path);
  if (!file.IsOpen()) {
    if (IsNothingThere(::GetLastError())) return std::nullopt;
    throw SystemError(::GetLastError(), u"stan", path);
  }
  if (::GetFileType(file.Get()) != FILE_TYPE_DISK) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION found;
  if (!::GetFileInformationByHandle(file.Get(), &found)) {
    throw SystemError(::GetLastError(), u"stan", path);
  }
  FileState state;
  state.size = static_cast<std::uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
  state.modified = UnixNanoseconds(found.ftLastWriteTime);
  state.volume = found.dwVolumeSerialNumber;
  state.number = static_cast<std::uint64_t>(found.nFileIndexHigh) << 32 | found.nFileIndexLow;
  state.isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  state.isReadOnly = (found.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  return state;
}

void Win32Files::Delete(std::u16string_view path) {
  const std::u16string name = SystemPath(path);
  if (::DeleteFileW(Lend(name))) return;
  throw SystemError(CodeOfRefusal(::GetLastError(), name), u"usunięcie", path);
}

void Win32Files::ReplaceHeld(std::u16string_view from, std::u16string_view to,
                             std::unique_ptr<File> held) {
  held.reset();
  if (::MoveFileExW(Lend(SystemPath(from)), Lend(SystemPath(to)),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return;
  }
  const DWORD code = CodeOfRefusal(::GetLastError(), SystemPath(to));
  throw SystemError(code, u"zamiana pliku", code == ERROR_FILE_NOT_FOUND ? from : to);
}

void Win32Files::Move(std::u16string_view from, std::u16string_view to) {
  if (::MoveFileExW(Lend(SystemPath(from)), Lend(SystemPath(to)), MOVEFILE_WRITE_THROUGH)) return;
  const DWORD code = CodeOfRefusal(::GetLastError(), SystemPath(to));
  throw SystemError(code, u"zmiana nazwy", code == ERROR_FILE_NOT_FOUND ? from : to);
}

void Win32Files::CopyAttributes(std::u16string_view from, std::u16string_view to) {
  CopyWin32Attributes(from, to);
}

void Win32Files::CreateFolder(std::u16string_view path) {
  if (!::CreateDirectoryW(Lend(SystemPath(path)), nullptr)) {
    throw SystemError(::GetLastError(), u"nowy folder", path);
  }
}

std::vector<std::u16string> Win32Files::List(std::u16string_view folder,
                                             std::u16string_view pattern) {
  std::vector<std::u16string> names;
  WIN32_FIND_DATAW found;
  // The system's own matching would look at short names too, so it is asked for everything.
  const std::u16string everything = SystemPath(JoinPath(folder.empty() ? u"." : folder, u"*"));
  const FindHandle find(::FindFirstFileW(Lend(everything), &found));
  if (!find.IsOpen()) return names;
  do {
    const std::u16string name = FromWide(found.cFileName);
    if (name != u"." && name != u".." && MatchesPattern(name, pattern)) names.push_back(name);
  } while (::FindNextFileW(find.Get(), &found));
  std::sort(names.begin(), names.end(), NameComesBefore);
  return names;
}

void Win32Files::FlushFolder(std::u16string_view) {}

std::u16string Win32Files::RealPath(std::u16string_view path) {
  if (const auto found = FindFinalPath(path)) return *found;
  const std::u16string full = FullPath(path);
  if (const auto folder = FindFinalPath(FolderOfPath(full))) return JoinPath(*folder, NameOfPath(full));
  return full;
}

std::uint64_t Win32Files::FreeSpace(std::u16string_view folder) {
  ULARGE_INTEGER available;
  const std::u16string place = SystemPath(folder.empty() ? u"." : folder);
  if (!::GetDiskFreeSpaceExW(Lend(place), &available, nullptr, nullptr)) {
    throw SystemError(::GetLastError(), u"wolne miejsce", folder);
  }
  return available.QuadPart;
}

std::unique_ptr<Hold> Win32Files::TryHold(std::u16string_view path) {
  return TryWin32Hold(path);
}

}  // namespace zimbrat::platform

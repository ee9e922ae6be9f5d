#include "win32_file.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "win32_errors.h"

namespace zimbrat::platform {
namespace {

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFu);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

DWORD Portion(std::size_t left) {
  return static_cast<DWORD>(std::min<std::size_t>(left, 1u << 30));
}

// Offsets above what the system's type holds would wrap around to other places of the file.
void CheckOffset(std::uint64_t offset, std::uint64_t length, std::u16string_view path) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (offset > kMost || length > kMost - offset) {
    throw SystemError(ERROR_FILE_TOO_LARGE, u"położenie w pliku", path);
  }
}

}  // namespace

Win32File::Win32File(FileHandle handle, std::u16string path)
    : handle_(std::move(handle)), path_(std::move(path)) {}

std::size_t Win32File::ReadAt(std::uint64_t offset, std::span<std::byte> bytes) {
  CheckOffset(offset, bytes.size(), path_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = At(offset + done);
    DWORD count = 0;
    if (!::ReadFile(handle_.Get(), bytes.data() + done, Portion(bytes.size() - done), &count, &place)) {
      if (::GetLastError() == ERROR_HANDLE_EOF) break;
      throw SystemError(::GetLastError(), u"odczyt", path_);
    }
    if (count == 0) break;
    done += count;
  }
  return done;
}

void Win32File::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) {
  CheckOffset(offset, bytes.size(), path_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = At(offset + done);
    DWORD count = 0;
    const DWORD portion = Portion(bytes.size() - done);
    if (!::WriteFile(handle_.Get(), bytes.data() + done, portion, &count, &place) || count == 0) {
      throw SystemError(::GetLastError(), u"zapis", path_);
    }
    done += count;
  }
}

std::uint64_t Win32File::Size() {
  LARGE_INTEGER size;
  if (!::GetFileSizeEx(handle_.Get(), &size)) throw SystemError(::GetLastError(), u"rozmiar", path_);
  return static_cast<std::uint64_t>(size.QuadPart);
}

void Win32File::Resize(std::uint64_t size) {
  CheckOffset(size, 0, path_);
  FILE_END_OF_FILE_INFO end;
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
  if (!::SetFileInformationByHandle(handle_.Get(), FileEndOfFileInfo, &end, sizeof end)) {
    throw SystemError(::GetLastError(), u"zmiana rozmiaru", path_);
  }
}

void Win32File::Flush() {
  if (!::FlushFileBuffers(handle_.Get())) throw SystemError(::GetLastError(), u"zapis na dysk", path_);
}

// Whether the range could be locked, which a lock held by anybody else forbids.
bool Win32File::IsLockable(std::uint64_t offset, std::uint64_t size) {
  OVERLAPPED place = At(offset);
  const auto low = static_cast<DWORD>(size & 0xFFFFFFFFu), high = static_cast<DWORD>(size >> 32);
  if (::LockFileEx(handle_.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, low, high, &place)) {
    ::UnlockFileEx(handle_.Get(), 0, low, high, &place);
    return true;
  }
  const DWORD code = ::GetLastError();
  if (code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING) return false;
  throw SystemError(code, u"blokady pliku", path_);
}

std::optional<std::uint64_t> Win32File::FindLock(std::uint64_t offset, std::uint64_t size) {
  if (IsLockable(offset, size)) return std::nullopt;
  while (size > 1) {
    const std::uint64_t half = size / 2;
    if (!IsLockable(offset, half)) {
      size = half;
    } else {
      offset += half;
      size -= half;
    }
  }
  return offset;
}

}  // namespace zimbrat::platform

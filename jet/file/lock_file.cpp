#include "jet/file/lock_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr std::uint64_t kUserLocks = 0x10000000;
constexpr std::uint64_t kMaxUsers = 255;
constexpr std::size_t kSizeSlotPart = 32;

std::u16string LockFileOf(std::u16string_view database) {
  const std::size_t dot = database.rfind(u'.');
  const bool hasExtension = dot != database.npos && dot > platform::FolderOfPath(database).size();
  return std::u16string(database.substr(0, hasExtension ? dot : database.npos)) + u".ldb";
}

// Up to the NUL; what no name has is left out, the file may hold anything.
std::u16string NameIn(std::span<const char> bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), '\0');
  std::u16string name = platform::Utf16FromAnsi1250(std::string_view(bytes.begin(), end));
  std::erase_if(name, [](char16_t c) { return c < u' '; });
  return std::u16string(platform::TrimBlanks(name));
}

DatabaseUser ReadUser(platform::File& file) {
  const std::optional<std::uint64_t> lock = file.FindLock(kUserLocks + 1, kMaxUsers);
  std::array<char, 2 * kSizeSlotPart> slot{};
  const std::uint64_t number = lock ? *lock - kUserLocks - 1 : 0;
  file.ReadAt(number * slot.size(), std::as_writable_bytes(std::span(slot)));
  return {NameIn(std::span(slot).first(kSizeSlotPart)), NameIn(std::span(slot).last(kSizeSlotPart)),
          lock.has_value()};
}

}  // namespace

std::optional<DatabaseUser> FindDatabaseUser(platform::Files& files, std::u16string_view database) {
  const std::u16string path = LockFileOf(database);
  if (path == database) return std::nullopt;
  try {
    if (!files.IsFile(path)) return std::nullopt;
    return ReadUser(*files.Open(path, platform::OpenMode::Read, platform::Sharing::All));
  } catch (const platform::RunTimeError&) {
    return std::nullopt;  // a help, not a condition
  }
}

void RaiseInUse(std::u16string_view database, const std::optional<DatabaseUser>& user) {
  std::u16string text = dao::ErrorText(platform::kErrFileInUse, database);
  if (user && !user->computer.empty()) {
    text += user->isPresent ? u" Korzysta z niego" : u" Ostatnio korzystał z niego";
    text += u" użytkownik „" + user->name + u"” na komputerze „" + user->computer + u"”.";
  }
  throw platform::RunTimeError(platform::kErrFileInUse, {}, text);
}

}  // namespace zimbrat::jet

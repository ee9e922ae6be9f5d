#include "room.h"

#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"

#include <algorithm>

namespace zimbrat::generator {
namespace {

constexpr std::uint64_t kMebibyte = 1 << 20;

// What new tables and rows may add: an eighth, at least one mebibyte.
std::uint64_t Needed(std::uint64_t bytes) {
  return bytes + std::max(bytes / 8, kMebibyte);
}

std::u16string MebibyteText(std::uint64_t bytes) {
  return platform::DecimalText(static_cast<long long>((bytes + kMebibyte - 1) / kMebibyte)) +
         u" MB";
}

void RequireRoomIn(platform::Files& files, std::u16string_view folder, std::uint64_t needed) {
  const std::uint64_t there = files.FreeSpace(folder);
  if (there >= needed) return;
  throw platform::FileError(platform::kErrDiskFull,
                            u"praca wymaga " + MebibyteText(needed) + u" wolnego miejsca, jest " +
                                MebibyteText(there),
                            folder);
}

bool AreOfOneVolume(platform::Files& files, std::u16string_view a, std::u16string_view b) {
  const auto first = files.State(a), second = files.State(b);
  return first && second && first->volume == second->volume;
}

}  // namespace

void RemoveName(platform::Files& files, std::u16string_view path) {
  const auto error = suite::Attempt([&] { files.Delete(path); });
  if (error && error->Number() != platform::kErrFileNotFound &&
      error->Number() != platform::kErrPathNotFound) {
    throw *error;
  }
}

void RequireRoom(platform::Files& files, std::u16string_view firstFolder,
                 std::u16string_view secondFolder, std::uint64_t bytes) {
  const std::uint64_t needed = Needed(bytes);
  if (AreOfOneVolume(files, firstFolder, secondFolder)) {
    RequireRoomIn(files, firstFolder, 2 * needed);
  } else {
    RequireRoomIn(files, firstFolder, needed);
    RequireRoomIn(files, secondFolder, needed);
  }
}

}  // namespace zimbrat::generator

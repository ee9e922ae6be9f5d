#include "generator/held_file.h"

#include "platform/error_numbers.h"
#include "platform/file_errors.h"

#include <algorithm>
#include <optional>

namespace zimbrat::generator {
namespace {

using platform::FileState;
using platform::OpenMode;
using platform::Sharing;

bool IsSameVersion(const FileState& a, const FileState& b) {
  return a.IsSameFile(b) && a.size == b.size && a.modified == b.modified;
}

}  // namespace

HeldFile::HeldFile(platform::Files& files, std::u16string_view path) : files_(files), path_(path) {
  const std::optional<FileState> before = files_.State(path_);
  hold_ = files_.Open(path_, OpenMode::Read, Sharing::Readers);
  const std::optional<FileState> after = files_.State(path_);
  // Replaced between the two calls: what is held is not what the path leads to.
  if (!before || !after || !IsSameVersion(*before, *after)) {
    throw platform::FileError(platform::kErrPermissionDenied, u"plik właśnie się zmienia", path_);
  }
  state_ = *after;
  firstPage_ = FirstPage(*hold_);
}

bool HeldFile::IsUnchanged() const {
  const std::optional<FileState> now = files_.State(path_);
  if (!now || !IsSameVersion(*now, state_)) return false;
  return FirstPage(*files_.Open(path_, OpenMode::Read, Sharing::All)) == firstPage_;
}

void HeldFile::Renew() {
  if (!hold_) hold_ = files_.Open(path_, OpenMode::Read, Sharing::Readers);
}

std::vector<std::byte> HeldFile::FirstPage(platform::File& file) const {
  constexpr std::size_t kPage = 4096;  // of a Jet 4 file
  std::vector<std::byte> page;
  page.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kPage, state_.size)));
  if (file.ReadAt(0, page) < page.size()) {
    throw platform::FileError(platform::kErrDeviceIo, u"odczyt", path_);
  }
  return page;
}

}  // namespace zimbrat::generator

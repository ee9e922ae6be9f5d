#include "tests/support/small_volume.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/error_numbers.h"
#include "platform/file_errors.h"

namespace zimbrat::tests {

using namespace platform;

class VolumeFile : public File {
 public:
  VolumeFile(SmallVolume& volume, SmallVolume::NodePointer node, Sharing sharing,
             std::u16string_view path)
      : volume_(volume), node_(std::move(node)), sharing_(sharing), path_(path) {
    const bool isFree = !node_->isExclusive && (sharing != Sharing::None || node_->readers == 0);
    if (sharing != Sharing::All && !isFree) {
      sharing_ = Sharing::All;
      throw FileError(kErrPermissionDenied, u"otwarcie", path);
    }
    if (sharing == Sharing::None) node_->isExclusive = true;
    if (sharing == Sharing::Readers) ++node_->readers;
  }
  ~VolumeFile() override {
    if (sharing_ == Sharing::None) node_->isExclusive = false;
    if (sharing_ == Sharing::Readers) --node_->readers;
  }
  VolumeFile(const VolumeFile&) = delete;
  VolumeFile& operator=(const VolumeFile&) = delete;

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    if (offset >= node_->content.size()) return 0;
    const auto start = static_cast<std::size_t>(offset);
    const std::size_t count = std::min(bytes.size(), node_->content.size() - start);
    std::memcpy(bytes.data(), node_->content.data() + start, count);
    return count;
  }
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    const std::uint64_t end = offset + bytes.size();
    const std::uint64_t least = node_->content.size();
    const std::uint64_t left = volume_.room - std::min(volume_.room, volume_.Used());
    const std::uint64_t fits = std::min(end, std::max(least, least + left));
    if (fits > least) volume_.Grow(*node_, fits, path_);
    const std::uint64_t count = fits > offset ? fits - offset : 0;
    if (count > 0) {
      std::memcpy(node_->content.data() + static_cast<std::size_t>(offset), bytes.data(),
                  static_cast<std::size_t>(count));
    }
    node_->modified = ++node_->shared->time;
    if (count < bytes.size()) throw FileError(kErrDiskFull, u"zapis", path_);
  }
  std::uint64_t Size() override { return node_->content.size(); }
  void Resize(std::uint64_t size) override {
    if (size > node_->content.size()) return volume_.Grow(*node_, size, path_);
    node_->shared->used -= node_->content.size() - size;
    node_->content.resize(static_cast<std::size_t>(size));
    node_->modified = ++node_->shared->time;
  }
  void Flush() override {}
  std::optional<std::uint64_t> FindLock(std::uint64_t, std::uint64_t) override {
    return std::nullopt;
  }

 private:
  SmallVolume& volume_;
  SmallVolume::NodePointer node_;
  Sharing sharing_;
  std::u16string path_;
};

class VolumeHold : public Hold {
 public:
  VolumeHold(std::shared_ptr<SmallVolume::Shared> shared, std::u16string_view path)
      : shared_(std::move(shared)), path_(path) {
    shared_->holds.insert(path_);
  }
  ~VolumeHold() override { shared_->holds.erase(path_); }
  VolumeHold(const VolumeHold&) = delete;
  VolumeHold& operator=(const VolumeHold&) = delete;

 private:
  std::shared_ptr<SmallVolume::Shared> shared_;
  std::u16string path_;
};

void SmallVolume::Put(std::u16string_view path, std::string_view content) {
  NodePointer& node = names_[std::u16string(path)];
  node = Make(false);
  Grow(*node, content.size(), path);
  node->content = content;
}

std::string SmallVolume::Get(std::u16string_view path) const { return Existing(path)->content; }

std::vector<std::u16string> SmallVolume::Names(std::u16string_view folder) const {
  std::vector<std::u16string> names;
  for (const auto& [path, node] : names_) {
    if (FolderOfPath(path) == folder) names.emplace_back(NameOfPath(path));
  }
  for (const std::u16string& path : shared_->holds) {
    if (FolderOfPath(path) == folder) names.push_back(std::u16string(NameOfPath(path)) + u".lock");
  }
  std::sort(names.begin(), names.end());
  return names;
}

SmallVolume::NodePointer SmallVolume::Make(bool isPrivate) {
  auto node = std::make_shared<Node>(shared_);
  node->number = ++shared_->lastNumber;
  node->modified = ++shared_->time;
  node->isPrivate = isPrivate;
  return node;
}

const SmallVolume::NodePointer& SmallVolume::Existing(std::u16string_view path) const {
  const auto found = names_.find(path);
  if (found == names_.end()) throw FileError(kErrFileNotFound, u"otwarcie", path);
  return found->second;
}

void SmallVolume::Grow(Node& node, std::uint64_t size, std::u16string_view path) {
  const std::uint64_t more = size - node.content.size();
  if (shared_->used + more > room) throw FileError(kErrDiskFull, u"zapis", path);
  node.content.resize(static_cast<std::size_t>(size));
  shared_->used += more;
  shared_->most = std::max(shared_->most, shared_->used);
  node.modified = ++shared_->time;
}

std::unique_ptr<File> SmallVolume::Open(std::u16string_view path, OpenMode mode, Sharing sharing) {
  const bool isNew = mode == OpenMode::CreateNew || mode == OpenMode::CreatePrivate;
  if (!isNew) return std::make_unique<VolumeFile>(*this, Existing(path), sharing, path);
  if (folders_.find(FolderOfPath(path)) == folders_.end()) {
    throw FileError(kErrPathNotFound, u"otwarcie", path);
  }
  if (names_.find(path) != names_.end()) throw FileError(kErrFileExists, u"otwarcie", path);
  NodePointer node = Make(mode == OpenMode::CreatePrivate);
  names_.emplace(path, node);
  return std::make_unique<VolumeFile>(*this, std::move(node), sharing, path);
}

std::unique_ptr<File> SmallVolume::OpenTemporary(std::u16string_view folder) {
  return std::make_unique<VolumeFile>(*this, Make(true), Sharing::All, folder);
}

std::optional<FileState> SmallVolume::State(std::u16string_view path) {
  if (folders_.find(path) != folders_.end()) {
    FileState folder;
    folder.isFolder = true;
    folder.volume = 1;
    return folder;
  }
  const auto found = names_.find(path);
  if (found == names_.end()) return std::nullopt;
  const Node& node = *found->second;
  return FileState{.size = node.content.size(), .modified = node.modified,
                   .isPrivate = node.isPrivate, .volume = 1, .number = node.number};
}

void SmallVolume::Delete(std::u16string_view path) {
  Existing(path);
  names_.erase(names_.find(path));
}

void SmallVolume::ReplaceHeld(std::u16string_view from, std::u16string_view to,
                              std::unique_ptr<File> held) {
  names_[std::u16string(to)] = Existing(from);
  Delete(from);
  held.reset();
  if (failsAfterReplace) throw FileError(kErrDeviceIo, u"zapis folderu na dysk", to);
}

void SmallVolume::Move(std::u16string_view from, std::u16string_view to) {
  if (State(to)) throw FileError(kErrFileExists, u"zamiana pliku", to);
  Replace(from, to);
}

void SmallVolume::CopyAttributes(std::u16string_view from, std::u16string_view to) {
  Existing(to)->isPrivate = Existing(from)->isPrivate;
}

std::vector<std::u16string> SmallVolume::List(std::u16string_view folder,
                                              std::u16string_view pattern) {
  std::vector<std::u16string> names;
  for (const auto& [path, node] : names_) {
    if (FolderOfPath(path) == folder && MatchesPattern(NameOfPath(path), pattern)) {
      names.emplace_back(NameOfPath(path));
    }
  }
  std::sort(names.begin(), names.end(), NameComesBefore);
  return names;
}

std::uint64_t SmallVolume::FreeSpace(std::u16string_view) {
  if (liesAboutRoom) return std::uint64_t{1} << 40;
  return room - std::min(room, Used());
}

std::unique_ptr<Hold> SmallVolume::TryHold(std::u16string_view path) {
  if (shared_->holds.contains(std::u16string(path))) return nullptr;
  return std::make_unique<VolumeHold>(shared_, path);
}

}  // namespace zimbrat::tests

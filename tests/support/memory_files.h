// Files in memory: what a test plants in them is read at once, and nothing is left behind.
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/error_numbers.h"
#include "platform/files.h"
#include "platform/run_time_error.h"

namespace zimbrat::tests {

using FileBytes = std::vector<std::byte>;

class MemoryFile : public platform::File {
 public:
  MemoryFile(std::shared_ptr<FileBytes> bytes, const std::size_t& room)
      : bytes_(std::move(bytes)), room_(room) {}
  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    if (offset >= bytes_->size()) return 0;
    const auto start = static_cast<std::size_t>(offset);
    const std::size_t count = std::min(bytes.size(), bytes_->size() - start);
    std::memcpy(bytes.data(), bytes_->data() + start, count);
    return count;
  }
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    const auto start = static_cast<std::size_t>(offset);
    if (start + bytes.size() > std::max(bytes_->size(), room_)) {
      throw platform::RunTimeError(platform::kErrDiskFull, u"", u"Dysk jest pełny");
    }
    bytes_->resize(std::max(bytes_->size(), start + bytes.size()));
    std::memcpy(bytes_->data() + start, bytes.data(), bytes.size());
  }
  std::uint64_t Size() override { return bytes_->size(); }
  void Resize(std::uint64_t size) override { bytes_->resize(static_cast<std::size_t>(size)); }
  void Flush() override {}
  std::optional<std::uint64_t> FindLock(std::uint64_t, std::uint64_t) override { return std::nullopt; }

 private:
  std::shared_ptr<FileBytes> bytes_;
  const std::size_t& room_;
};

// Knows one folder, no locks and no attributes.
class MemoryFiles : public platform::Files {
 public:
  // What no file grows beyond: writes fail with error 61.
  std::size_t room = std::numeric_limits<std::size_t>::max();

  // The contents of a file, which is made when it is not there.
  FileBytes& BytesOf(std::u16string_view path) { return *Contents(path); }

  std::unique_ptr<platform::File> Open(std::u16string_view path, platform::OpenMode,
                                       platform::Sharing) override {
    return std::make_unique<MemoryFile>(Contents(path), room);
  }
  std::unique_ptr<platform::File> OpenTemporary(std::u16string_view) override {
    return std::make_unique<MemoryFile>(std::make_shared<FileBytes>(), room);
  }
  std::optional<platform::FileState> State(std::u16string_view path) override {
    const auto found = files_.find(std::u16string(path));
    if (found == files_.end()) return std::nullopt;
    return platform::FileState{.size = found->second->size()};
  }
  void Delete(std::u16string_view path) override { files_.erase(std::u16string(path)); }
  void ReplaceHeld(std::u16string_view from, std::u16string_view to,
                   std::unique_ptr<platform::File>) override {
    files_[std::u16string(to)] = Contents(from);
    Delete(from);
  }
  void Move(std::u16string_view from, std::u16string_view to) override {
    if (State(to)) throw platform::RunTimeError(platform::kErrFileExists, u"", u"Plik już istnieje");
    Replace(from, to);
  }
  void CopyAttributes(std::u16string_view, std::u16string_view) override {}
  void CreateFolder(std::u16string_view) override {}
  std::vector<std::u16string> List(std::u16string_view, std::u16string_view) override {
    throw std::logic_error("files in memory are not listed");
  }
  void FlushFolder(std::u16string_view) override {}
  std::u16string RealPath(std::u16string_view path) override { return std::u16string(path); }
  std::uint64_t FreeSpace(std::u16string_view) override { return std::uint64_t{1} << 40; }
  std::unique_ptr<platform::Hold> TryHold(std::u16string_view) override {
    return std::make_unique<platform::Hold>();
  }

 private:
  std::shared_ptr<FileBytes>& Contents(std::u16string_view path) {
    std::shared_ptr<FileBytes>& bytes = files_[std::u16string(path)];
    if (!bytes) bytes = std::make_shared<FileBytes>();
    return bytes;
  }

  std::map<std::u16string, std::shared_ptr<FileBytes>> files_;
};

}  // namespace zimbrat::tests

// A database file in memory that holds nothing but the maps and the pages of one index.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "jet/file/data_page.h"
#include "jet/file/global_map.h"
#include "jet/index/tree.h"

namespace zimbrat::jet {

class MemoryFile : public platform::File {
 public:
  explicit MemoryFile(std::vector<std::byte>& bytes) : bytes_(bytes) {}
  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    if (offset >= bytes_.size()) return 0;
    const std::size_t count = std::min<std::size_t>(bytes.size(), bytes_.size() - offset);
    std::memcpy(bytes.data(), bytes_.data() + offset, count);
    return count;
  }
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    if (offset + bytes.size() > bytes_.size()) bytes_.resize(offset + bytes.size());
    std::memcpy(bytes_.data() + offset, bytes.data(), bytes.size());
  }
  std::uint64_t Size() override { return bytes_.size(); }
  void Resize(std::uint64_t size) override { bytes_.resize(size); }
  void Flush() override {}

 private:
  std::vector<std::byte>& bytes_;
};

// Of the files only temporary ones are asked for.
class MemoryFiles : public platform::Files {
 public:
  std::unique_ptr<platform::File> Open(std::u16string_view, platform::OpenMode,
                                       platform::Sharing) override {
    throw std::logic_error("Open");
  }
  std::unique_ptr<platform::File> OpenTemporary(std::u16string_view) override {
    return std::make_unique<MemoryFile>(temporary_);
  }
  std::optional<platform::FileState> State(std::u16string_view) override { return {}; }
  void Delete(std::u16string_view) override {}
  void Replace(std::u16string_view, std::u16string_view) override {}
  void CopyAttributes(std::u16string_view, std::u16string_view) override {}
  void CreateFolder(std::u16string_view) override {}
  std::vector<std::u16string> List(std::u16string_view, std::u16string_view) override { return {}; }
  void FlushFolder(std::u16string_view) override {}
  std::u16string RealPath(std::u16string_view path) override { return std::u16string(path); }
  std::uint64_t FreeSpace(std::u16string_view) override { return 0; }
  std::unique_ptr<platform::Hold> TryHold(std::u16string_view) override { return {}; }

 private:
  std::vector<std::byte> temporary_;
};

class MemoryDatabase {
 public:
  static constexpr PageNumber kMapPage = 2;
  static constexpr PageNumber kOwner = 6;  // no definition is there, and none is read
  static constexpr PageNumber kRoot = 7;

  MemoryDatabase()
      : bytes_((kRoot + 1) * kPageSize),
        pager(files_, std::make_unique<MemoryFile>(bytes_), u"memory", 0),
        allocator(pager) {
    AddMapRow(kGlobalMapPage, kGlobalMapPage, std::byte{0xFF});
    AddMapRow(kMapPage, 0, std::byte{0});
    UsageMap global(pager, allocator, {kGlobalMapPage, 0});
    for (PageNumber page = 0; page <= kRoot; ++page) global.Remove(page);
    Map().Add(kRoot);
    IndexTree::WriteEmptyLeaf(pager, kRoot, kOwner);
  }

  UsageMap Map() { return UsageMap(pager, allocator, {kMapPage, 0}); }
  UsageMap FreeMap() { return UsageMap(pager, allocator, {kGlobalMapPage, 0}); }
  IndexTree Tree() { return IndexTree(pager, allocator, Map(), kOwner, kRoot); }

 private:
  void AddMapRow(PageNumber number, std::uint32_t owner, std::byte bits) {
    PageRef page = pager.Get(number);
    InitDataPage(page.Change(), owner);
    const std::uint8_t slot = AppendRow(page.Change(), kSizeMapRow);
    const Bytes row = RowBytes(page.Change(), slot);
    std::fill(row.begin(), row.begin() + kOffsetMapBits, std::byte{0});
    std::fill(row.begin() + kOffsetMapBits, row.end(), bits);
  }

  std::vector<std::byte> bytes_;
  MemoryFiles files_;

 public:
  Pager pager;
  GlobalMap allocator;
};

}  // namespace zimbrat::jet

// A database file in memory that holds nothing but the maps and the pages of one index.
#pragma once

#include <cstdint>
#include <memory>

#include "jet/file/data_page.h"
#include "jet/file/global_map.h"
#include "jet/index/tree.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {

class MemoryDatabase {
 public:
  static constexpr PageNumber kMapPage = 2;
  static constexpr PageNumber kOwner = 6;  // no definition is there, and none is read
  static constexpr PageNumber kRoot = 7;

  MemoryDatabase() : pager(files_, OpenZeroed(), u"memory", 0), allocator(pager) {
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
  std::unique_ptr<platform::File> OpenZeroed() {
    files_.BytesOf(u"memory").resize((kRoot + 1) * kPageSize);
    return files_.Open(u"memory", platform::OpenMode::ReadWrite, platform::Sharing::None);
  }
  void AddMapRow(PageNumber number, std::uint32_t owner, std::byte bits) {
    PageRef page = pager.Get(number);
    InitDataPage(page.Change(), owner);
    const std::uint8_t slot = AppendRow(page.Change(), kSizeMapRow);
    const Bytes row = RowBytes(page.Change(), slot);
    std::fill(row.begin(), row.begin() + kOffsetMapBits, std::byte{0});
    std::fill(row.begin() + kOffsetMapBits, row.end(), bits);
  }

  tests::MemoryFiles files_;

 public:
  Pager pager;
  GlobalMap allocator;
};

}  // namespace zimbrat::jet

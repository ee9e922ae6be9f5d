// Pages, maps and rows on pages under random work, against models.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "jet/file/data_page.h"
#include "jet/file/global_map.h"
#include "jet/file/pager.h"
#include "jet/file/usage_map.h"
#include "platform/error_numbers.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/failing_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_volume.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

using tests::ErrorOf;

namespace {

std::uint32_t Seed() {
  const char* given = std::getenv("ZIMBRAT_SEED");
  const std::uint32_t seed = given ? static_cast<std::uint32_t>(std::atoi(given)) : std::random_device{}();
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
  return seed;
}

// 32 bits of any library's generator.
std::uint32_t Draw(std::mt19937& random) { return static_cast<std::uint32_t>(random()); }

class Pages : public ::testing::Test {
 protected:
  tests::TempFolder folder_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::unique_ptr<Pager> pager_;

  void Open(std::uint32_t key = 0x1234) {
    const std::u16string path = folder_.PathOf(u"strony");
    const auto mode = folder_.Exists(u"strony") ? platform::OpenMode::ReadWrite : platform::OpenMode::CreateNew;
    pager_ = std::make_unique<Pager>(
        *system_.files, system_.files->Open(path, mode, platform::Sharing::None), path, key);
  }
  // Page 0, and a global map on page 1 that covers 512 pages.
  void MakeGlobalMap() {
    pager_->GetZeroed(0);
    PageRef page = pager_->GetZeroed(kGlobalMapPage);
    InitDataPage(page.Change(), kGlobalMapPage);
    AppendRow(page.Change(), kSizeMapRow);
    const Bytes bits = RowBytes(page.Change(), 0).subspan(kOffsetMapBits);
    std::fill(bits.begin(), bits.end(), std::byte{0xFF});
    bits[0] = std::byte{0xFC};
    for (PageNumber n = 2; n < 6; ++n) GlobalMap(*pager_).Take();
  }
};

// Shows what was set aside.
class WatchedFiles : public tests::MemoryFiles {
 public:
  std::shared_ptr<tests::FileBytes> aside = std::make_shared<tests::FileBytes>();
  std::unique_ptr<platform::File> OpenTemporary(std::u16string_view) override {
    return std::make_unique<tests::MemoryFile>(aside, room);
  }
};

}  // namespace

TEST_F(Pages, NestedSavepointsPutBackWhatTheyFound) {
  std::mt19937 random(Seed());
  Open();
  std::map<PageNumber, std::uint32_t> model;
  std::vector<std::pair<std::map<PageNumber, std::uint32_t>, PageNumber>> saved;
  for (PageNumber n = 0; n < 5000; ++n) {  // more than the cache holds
    Put32(pager_->GetZeroed(n).Change(), 8, n);
    model[n] = n;
  }
  const auto check = [&] {
    ASSERT_EQ(pager_->PageCount(), model.size());
    for (int i = 0; i < 300; ++i) {
      const auto n = static_cast<PageNumber>(Draw(random) % model.size());
      if (n == 0) continue;
      ASSERT_EQ(Get32(pager_->Get(n).Read(), 8), model[n]) << n;
    }
  };
  for (int step = 0; step < 20'000; ++step) {
    const std::uint32_t dice = Draw(random) % 1000;
    if (dice < 3 && saved.size() < 5) {
      pager_->Begin();
      saved.emplace_back(model, pager_->PageCount());
    } else if (dice < 5 && !saved.empty()) {
      pager_->Rollback();
      model = saved.back().first;
      saved.pop_back();
      check();
    } else if (dice < 7 && !saved.empty()) {
      pager_->Commit();
      saved.pop_back();
    } else if (dice < 60) {
      const PageNumber n = pager_->PageCount();
      Put32(pager_->GetZeroed(n).Change(), 8, model[n] = Draw(random));
    } else {
      const auto n = static_cast<PageNumber>(Draw(random) % model.size());
      if (n != 0) Put32(pager_->Get(n).Change(), 8, model[n] = Draw(random));
    }
  }
  while (!saved.empty()) {
    pager_->Commit();
    saved.pop_back();
  }
  pager_->Flush();
  pager_.reset();
  Open();
  check();
  EXPECT_EQ(ErrorOf([&] { pager_->Get(pager_->PageCount()); }), platform::kErrCannotOpenDatabase);
}

namespace {

std::u16string PagesFile() { return std::u16string(u"baza") + platform::kPathSeparator + u"strony"; }

// A file of `count` pages in a folder of its own.
std::unique_ptr<Pager> PagerOf(platform::Files& files, PageNumber count) {
  files.CreateFolder(u"baza");
  auto file = files.Open(PagesFile(), platform::OpenMode::CreateNew, platform::Sharing::None);
  file->Resize(std::uint64_t{count} * kPageSize);
  return std::make_unique<Pager>(files, std::move(file), PagesFile(), 0x1234);
}

class FileWithoutHoles : public tests::MemoryFile {
 public:
  using MemoryFile::MemoryFile;
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    ASSERT_LE(offset, Size());
    MemoryFile::WriteAt(offset, bytes);
  }
};

}  // namespace

TEST(PagesOnDisk, NewPagesThatLeaveTheCacheTakeTheRoomOfThoseBeforeThem) {
  tests::MemoryFiles files;
  const auto bytes = std::make_shared<tests::FileBytes>(kPageSize);
  Pager pager(files, std::make_unique<FileWithoutHoles>(bytes, files.room), u"strony", 0);
  const Atomic change(pager);
  std::vector<PageRef> pinned;
  for (PageNumber n = 1; n < 6000; ++n) {
    PageRef page = pager.GetZeroed(n);
    if (n % 50 < 20) pinned.push_back(std::move(page));
  }
  EXPECT_GT(bytes->size(), 1000 * kPageSize);
}

TEST(PagesOnDisk, OfPagesThatFoundNoRoomNothingStays) {
  tests::SmallVolume volume;
  const auto pager = PagerOf(volume, 4);
  volume.room = 9 * kPageSize + kPageSize / 2;
  {
    Atomic change(*pager);
    for (PageNumber n = 4; n < 30; ++n) pager->GetZeroed(n);
    EXPECT_EQ(ErrorOf([&] { change.Commit(); }), platform::kErrDiskFull);
  }
  pager->Flush();
  EXPECT_EQ(volume.State(PagesFile())->size, 4 * kPageSize);
}

TEST(PagesOnDisk, AnUndoThatReadsTooLittleIsNone) {
  tests::SmallVolume volume;
  tests::FailingFiles files(volume);
  const auto pager = PagerOf(files, 2500);
  {
    const Atomic change(*pager);
    for (PageNumber n = 1; n < 2500; ++n) pager->Get(n).Change();
    files.plan = {.call = files.Calls() + 1, .how = tests::Fault::Half, .forGood = true};
  }
  EXPECT_TRUE(files.HasFailed());
  EXPECT_EQ(ErrorOf([&] { pager->Get(1); }), platform::kErrDiskIo);
}

TEST_F(Pages, WhatIsHeldStaysWhileOthersPass) {
  Open();
  constexpr PageNumber count = 10'000;  // more than twice what the cache holds
  pager_->GetZeroed(0);
  PageRef held = pager_->GetZeroed(1);
  for (PageNumber n = 2; n < count; ++n) Put32(pager_->GetZeroed(n).Change(), 8, n);
  Put32(held.Change(), 8, 1);
  for (PageNumber n = 1; n < count; ++n) ASSERT_EQ(Get32(pager_->Get(n).Read(), 8), n);
}

TEST(UndoFile, IsEncodedAndGivesEachPageBack) {
  WatchedFiles files;
  const std::u16string path = u"a.mdb";
  const std::string wage = "Kowalski Jan, 5000";
  constexpr PageNumber count = 3000;  // more than memory keeps images of
  Pager pager(files, files.Open(path, platform::OpenMode::CreateNew, platform::Sharing::None), path, 0x1234);
  for (PageNumber n = 0; n < count; ++n) {
    PageRef page = pager.GetZeroed(n);
    std::ranges::copy(std::as_bytes(std::span(wage)), page.Change().begin() + 100);
  }
  pager.Begin();
  pager.Begin();
  for (PageNumber n = 1; n < count; ++n) Put32(pager.Get(n).Change(), 8, n);
  pager.Commit();
  ASSERT_FALSE(files.aside->empty());
  EXPECT_TRUE(std::ranges::search(*files.aside, std::as_bytes(std::span(wage))).empty());
  pager.Rollback();
  for (PageNumber n = 1; n < count; ++n) ASSERT_EQ(Get32(pager.Get(n).Read(), 8), 0u) << n;
}

TEST_F(Pages, TheGlobalMapGivesEachPageOnceAtAnySize) {
  Open();
  MakeGlobalMap();
  GlobalMap allocator(*pager_);
  std::set<PageNumber> taken;
  for (int i = 0; i < 70'000; ++i) ASSERT_TRUE(taken.insert(allocator.Take()).second);
  // The maps' own pages were not given away, and what is freed comes back first.
  for (const PageNumber bits : {512u, 32736u, 65472u}) EXPECT_FALSE(taken.contains(bits)) << bits;
  const PageNumber count = pager_->PageCount();
  for (const PageNumber page : {600u, 40'000u, 10u}) allocator.Free(page);
  EXPECT_EQ(allocator.Take(), 10u);
  EXPECT_EQ(allocator.Take(), 600u);
  EXPECT_EQ(allocator.Take(), 40'000u);
  EXPECT_EQ(pager_->PageCount(), count);
  EXPECT_EQ(ErrorOf([&] { allocator.Free(1); }), platform::kErrCannotOpenDatabase);
}

TEST_F(Pages, MapsHoldAnySetOfPages) {
  std::mt19937 random(Seed());
  Open();
  MakeGlobalMap();
  GlobalMap allocator(*pager_);
  const PageNumber home = allocator.Take();
  InitDataPage(pager_->GetZeroed(home).Change(), 0);
  // Windows that must shift, maps that must become references, and sparse ones.
  for (const PageNumber span : {100u, 511u, 4'000u, 100'000u}) {
    const std::uint8_t slot = AppendRow(pager_->Get(home).Change(), kSizeMapRow);
    const Bytes row = RowBytes(pager_->Get(home).Change(), slot);
    std::fill(row.begin(), row.end(), std::byte{0});
    UsageMap map(*pager_, allocator, {home, slot});
    std::set<PageNumber> model;
    const PageNumber base = span == 511 ? 70'001 : 0;
    for (int i = 0; i < 2'000; ++i) {
      const PageNumber page = base + Draw(random) % span;
      if (Draw(random) % 3 == 0) {
        map.Remove(page);
        model.erase(page);
      } else {
        map.Add(page);
        model.insert(page);
      }
    }
    std::vector<PageNumber> pages;
    map.ForEach([&](PageNumber page) { pages.push_back(page); });
    EXPECT_TRUE(std::equal(model.begin(), model.end(), pages.begin(), pages.end())) << span;
  }
}

TEST(DataPage, RowsGrowAndShrinkInAnyOrder) {
  std::mt19937 random(Seed());
  for (int round = 0; round < 50; ++round) {
    std::array<std::byte, kPageSize> page;
    InitDataPage(page, 77);
    std::vector<std::vector<std::byte>> model;
    std::vector<bool> deleted;
    for (int step = 0; step < 300; ++step) {
      const std::vector<std::byte> content(Draw(random) % 200, static_cast<std::byte>(Draw(random)));
      const std::size_t slot = model.empty() ? 0 : Draw(random) % model.size();
      if (model.empty() || Draw(random) % 4 == 0) {
        if (!HasRoomForRow(page, content.size())) continue;
        ASSERT_EQ(AppendRow(page, content.size()), model.size());
        std::ranges::copy(content, RowBytes(Bytes(page), model.size()).begin());
        model.push_back(content);
        deleted.push_back(false);
      } else if (deleted[slot]) {
        continue;
      } else if (Draw(random) % 5 == 0) {
        DeleteRow(page, slot);
        deleted[slot] = true;
        model[slot].clear();
      } else if (content.size() <= model[slot].size() + FreeBytesOnPage(page)) {
        ResizeRow(page, slot, content.size());
        const std::size_t kept = std::min(content.size(), model[slot].size());
        const Bytes row = RowBytes(Bytes(page), slot);
        ASSERT_TRUE(std::equal(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(kept), model[slot].begin()));
        std::ranges::copy(content, row.begin());
        model[slot] = content;
      }
      std::size_t used = kOffsetRowTable + 2 * model.size();
      for (std::size_t i = 0; i < model.size(); ++i) {
        ASSERT_TRUE(std::ranges::equal(RowBytes(ConstBytes(page), i), model[i]));
        ASSERT_EQ(RowFlags(page, i), deleted[i] ? kRowDeleted : 0);
        used += model[i].size();
      }
      ASSERT_EQ(FreeBytesOnPage(page), kPageSize - used);
      ASSERT_EQ(Get16(page, kOffsetFreeBytes), kPageSize - used);
    }
  }
}

TEST(DataPage, LyingSlotsAreDamage) {
  std::array<std::byte, kPageSize> page;
  InitDataPage(page, 77);
  AppendRow(page, 100);
  AppendRow(page, 100);
  for (const std::uint16_t lie : std::initializer_list<std::uint16_t>{0x0000, 0x000F, 0x1FFF, 0x0FFF}) {
    std::array<std::byte, kPageSize> copy = page;
    Put16(copy, kOffsetRowTable + 2, lie);
    ErrorOf([&] { RowBytes(ConstBytes(copy), 1); });
    ErrorOf([&] { ResizeRow(copy, 0, 150); });
    ErrorOf([&] { ResizeRow(copy, 1, 150); });
  }
  Put16(page, kOffsetRowCount, 5000);
  EXPECT_EQ(ErrorOf([&] { RowSlots(page); }), platform::kErrCannotOpenDatabase);
}

}  // namespace zimbrat::jet

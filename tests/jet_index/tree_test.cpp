// Trees against a std::set of the same entries; after each batch every page is checked.
#include "jet/index/tree.h"

#include <cstdlib>
#include <iostream>
#include <random>
#include <set>

#include "gtest/gtest.h"
#include "hex.h"
#include "memory_database.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "tests/support/error_of.h"
#include "tree_verifier.h"

namespace zimbrat::jet {
namespace {

unsigned Seed() {
  const char* given = std::getenv("ZIMBRAT_SEED");
  static const unsigned seed =
      given ? static_cast<unsigned>(std::stoul(given)) : std::random_device{}();
  static const bool printed = (std::cout << "ZIMBRAT_SEED=" << seed << '\n', true);
  return printed ? seed : 0;
}

std::string EntryOf(const std::string& key, RowPointer row) {
  std::string entry = key;
  for (int shift = 24; shift >= 0; shift -= 8) entry += static_cast<char>(row.Packed() >> shift);
  return entry;
}
std::string KeyOf(const std::string& entry) {
  return entry.substr(0, entry.size() - 4);
}
RowPointer RowOf(const std::string& entry) {
  return RowOfEntry(std::as_bytes(std::span(entry)));
}
ConstBytes AsBytes(const std::string& text) {
  return std::as_bytes(std::span(text));
}

class TreeTest : public testing::Test {
 protected:
  void Insert(const std::string& entry) {
    if (model.insert(entry).second) database.Tree().Insert(AsBytes(KeyOf(entry)), RowOf(entry));
  }
  void Erase(const std::string& entry) {
    ASSERT_TRUE(database.Tree().Erase(AsBytes(KeyOf(entry)), RowOf(entry)));
    model.erase(entry);
  }
  void Build(const std::set<std::string>& entries) {
    auto next = entries.begin();
    std::string key;
    database.Tree().Build([&]() -> std::optional<IndexEntry> {
      if (next == entries.end()) return {};
      key = KeyOf(*next);
      return IndexEntry{AsBytes(key), RowOf(*next++)};
    });
    model = entries;
  }
  // Structure, entries, and the maps: the tree's pages are in its own map and no others, none is
  // free.
  void Verify() {
    const std::vector<std::string> found = verifier.Verify(MemoryDatabase::kRoot);
    ASSERT_TRUE(std::equal(found.begin(), found.end(), model.begin(), model.end()));
    std::set<PageNumber> mapped;
    database.Map().ForEach([&](PageNumber page) { mapped.insert(page); });
    ASSERT_EQ(mapped, verifier.Pages());
    const UsageMap free = database.FreeMap();
    for (const PageNumber page : mapped) ASSERT_FALSE(free.Contains(page)) << page;
  }
  std::string RandomEntry() const {
    return model.size() == 0
               ? ""
               : *std::next(model.begin(), static_cast<long>(random() % model.size()));
  }
  void VerifyFails(std::u16string_view text);

  MemoryDatabase database;
  TreeVerifier verifier{database.pager, MemoryDatabase::kOwner};
  std::set<std::string> model;
  mutable std::mt19937 random{Seed()};
};

// How keys are made in a run.
struct KeyKind {
  const char* name;
  std::size_t least, most;  // length
  unsigned alphabet;        // few letters make long common beginnings and equal keys
  std::size_t common;       // bytes that all keys begin with
};
const KeyKind kKinds[] = {
    {"numbers", 5, 5, 256, 1},     {"equal", 1, 2, 2, 0},    {"texts", 3, 60, 26, 1},
    {"long", 1000, 1190, 2, 900},  {"mixed", 1, 1190, 3, 0}, {"very long", 1180, 1190, 200, 0},
    {"few long", 2, 1190, 256, 0},
};

std::string RandomKey(const KeyKind& kind, std::mt19937& random) {
  std::string key(kind.common, 'p');
  const std::size_t size = kind.least + random() % (kind.most - kind.least + 1);
  while (key.size() < size) key += static_cast<char>(random() % kind.alphabet);
  return key;
}

RowPointer RandomRow(std::mt19937& random) {
  return {static_cast<PageNumber>(1 + random() % 0x7FFFF), static_cast<std::uint8_t>(random())};
}

class RandomTree : public TreeTest, public testing::WithParamInterface<KeyKind> {};

INSTANTIATE_TEST_SUITE_P(Keys, RandomTree, testing::ValuesIn(kKinds), [](const auto& kind) {
  std::string name = kind.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
});

// Grows, shrinks to nothing and grows again; part of the batches runs at one end of the keys.
TEST_P(RandomTree, EqualsTheModel) {
  for (int batch = 0; batch < 24; ++batch) {
    const unsigned insertsOfTen = batch < 12 ? 8 : batch < 20 ? 1 : 6;
    const int end = static_cast<int>(random() % 4);
    for (int i = 0; i < 250; ++i) {
      if (model.empty() || random() % 10 < insertsOfTen) {
        Insert(EntryOf(RandomKey(GetParam(), random), RandomRow(random)));
      } else {
        Erase(end == 0 ? *model.begin() : end == 1 ? *model.rbegin() : RandomEntry());
      }
    }
    ASSERT_NO_FATAL_FAILURE(Verify()) << "batch " << batch;
  }
  while (!model.empty()) Erase(RandomEntry());
  Verify();
}

TEST_P(RandomTree, BuiltTreesTakeChanges) {
  std::set<std::string> entries;
  for (unsigned count : {1u, 3u, 60u, 4000u}) {
    while (entries.size() < count)
      entries.insert(EntryOf(RandomKey(GetParam(), random), RandomRow(random)));
    database.Tree().FreePages();
    database.allocator.Take();  // the first free page is the root's
    database.Map().Add(MemoryDatabase::kRoot);
    IndexTree::WriteEmptyLeaf(database.pager, MemoryDatabase::kRoot, MemoryDatabase::kOwner);
    Build(entries);
    ASSERT_NO_FATAL_FAILURE(Verify()) << count;
  }
  for (int i = 0; i < 400; ++i) {
    Insert(EntryOf(RandomKey(GetParam(), random), RandomRow(random)));
    Erase(RandomEntry());
  }
  Verify();
}

TEST_P(RandomTree, CursorsFindWhatIsThere) {
  for (int i = 0; i < 1500; ++i) Insert(EntryOf(RandomKey(GetParam(), random), RandomRow(random)));
  const IndexTree tree = database.Tree();
  for (int i = 0; i < 300; ++i) {
    const std::string stored = RandomEntry();
    std::string start = i % 2 == 0 ? RandomKey(GetParam(), random) : stored;
    start.resize(1 + random() % start.size());
    auto expected = model.lower_bound(start);
    IndexTree::Cursor cursor = tree.Seek(AsBytes(start));
    for (int step = 0; step < 20 && expected != model.end(); ++step, ++expected, cursor.Next()) {
      ASSERT_TRUE(cursor.Valid());
      ASSERT_EQ(*expected, EntryOf(std::string(reinterpret_cast<const char*>(cursor.Key().data()),
                                               cursor.Key().size()),
                                   cursor.Row()));
    }
    EXPECT_EQ(expected != model.end(), cursor.Valid());
    EXPECT_TRUE(tree.ContainsKey(AsBytes(KeyOf(stored))));
  }
}

// Key 00 with the pointer of its row begins like the key 00 00, and stands before it.
TEST_F(TreeTest, AShorterKeyAndItsRowDoNotHideALongerKey) {
  const std::string zero(1, '\0'), two(2, '\0');
  Insert(EntryOf(zero, {1, 0}));
  EXPECT_FALSE(database.Tree().ContainsKey(AsBytes(two)));
  Insert(EntryOf(two, {0x7FFFF, 0}));
  EXPECT_TRUE(database.Tree().ContainsKey(AsBytes(two)));
  EXPECT_TRUE(database.Tree().ContainsKey(AsBytes(zero)));
}

std::string BigEndian(std::uint32_t number) {
  std::string key("\x7F\x80", 2);
  for (int shift = 24; shift >= 0; shift -= 8) key += static_cast<char>(number >> shift);
  return key;
}

TEST_F(TreeTest, RisingKeysFillThePages) {
  for (std::uint32_t i = 0; i < 60000; ++i)
    Insert(EntryOf(BigEndian(i), {i / 100 + 1, static_cast<std::uint8_t>(i % 100)}));
  Verify();
  EXPECT_GT(verifier.UsedBytes(), verifier.Pages().size() * kSizeEntries * 95 / 100);
}

TEST_F(TreeTest, FallingKeysAreAsSound) {
  for (std::uint32_t i = 20000; i > 0; --i)
    Insert(EntryOf(BigEndian(i), {i / 100 + 1, static_cast<std::uint8_t>(i % 100)}));
  Verify();
}

TEST_F(TreeTest, LongRisingKeysMakeManyLevels) {
  for (std::uint32_t i = 0; i < 3000; ++i)
    Insert(EntryOf(BigEndian(i * 7919) + std::string(1180, 'x'), {i + 1, 0}));
  Verify();
  EXPECT_GE(verifier.Height(), 5u);
  while (!model.empty()) Erase(*model.rbegin());
  Verify();
  EXPECT_EQ(0u, verifier.Height());
}

TEST_F(TreeTest, AnEmptiedLeafHasNoPrefix) {
  const auto prefix = [&] { return Get16(database.pager.Get(MemoryDatabase::kRoot).Read(), kOffsetPrefixLength); };
  for (std::uint32_t i = 0; i < 20; ++i) Insert(EntryOf(std::string(300, 'x') + BigEndian(i), {i + 1, 0}));
  ASSERT_NE(0u, prefix());
  while (!model.empty()) Erase(*model.begin());
  EXPECT_EQ(0u, prefix());
}

TEST_F(TreeTest, AnEmptyLeafIsWhatAccessWrites) {
  const PageRef page = database.pager.Get(MemoryDatabase::kRoot);
  EXPECT_EQ("04 01 20 0E 06 00 00 00 00", HexFromBytes(page.Read().first(9)));
}

// A page of a real file: 510 Longs, descending, share three bytes once they do not fit otherwise.
TEST_F(TreeTest, PrefixIsTakenOnlyWhenNeeded) {
  const auto descending = [](std::uint32_t i) {
    return BytesFromHex("80 7F FF 00 00").at(0) == std::byte{0x80}
               ? std::string("\x80\x7F\xFF", 3) + static_cast<char>(~i >> 8) + static_cast<char>(~i)
               : "";
  };
  std::set<std::string> entries;
  for (std::uint32_t i = 0; i < 401; ++i)
    entries.insert(EntryOf(descending(i), {20, static_cast<std::uint8_t>(i % 256)}));
  Build(entries);
  EXPECT_EQ(0u, Get16(database.pager.Get(MemoryDatabase::kRoot).Read(), kOffsetPrefixLength));
  Insert(EntryOf(descending(500), {20, 1}));
  EXPECT_EQ(3u, Get16(database.pager.Get(MemoryDatabase::kRoot).Read(), kOffsetPrefixLength));
  EXPECT_EQ(3616u - (9 + 401 * 6),
            Get16(database.pager.Get(MemoryDatabase::kRoot).Read(), kOffsetFreeBytes));
}

TEST_F(TreeTest, MissingAndPresentEntriesAreTold) {
  Insert(EntryOf("\x7Fkey", {9, 1}));
  EXPECT_FALSE(database.Tree().Erase(AsBytes("\x7Fkey"), {9, 2}));
  EXPECT_FALSE(database.Tree().ContainsKey(AsBytes("\x7Fke")));
  EXPECT_THROW(database.Tree().Insert(AsBytes("\x7Fkey"), {9, 1}), platform::RunTimeError);
  EXPECT_THROW(database.Tree().Insert(AsBytes(std::string(1191, 'x')), {9, 1}),
               platform::RunTimeError);
}

// Damage, as page, offset and bytes; a tree of two levels lies on pages 7 (root), 8, 9, ...
struct Damage {
  const char* name;
  PageNumber page;
  std::size_t offset;
  const char* bytes;
};

TEST_F(TreeTest, DamageIsAnErrorAndNoLoop) {
  const Damage cases[] = {
      {"leaf leads to itself", 8, kOffsetNextLeaf, "08"},
      {"chain leads back", 10, kOffsetNextLeaf, "08"},
      {"chain leads outside", 9, kOffsetNextLeaf, "00 FF"},
      {"chain leads to a node", 9, kOffsetNextLeaf, "07"},
      {"mask beyond the entries", 8, kOffsetEntryMask + 452, "80"},
      {"entry shorter than its pointer", 8, kOffsetEntryMask, "0E"},
      {"prefix longer than the first entry", 8, kOffsetPrefixLength, "FF 0F"},
      {"no index page", 8, 0, "01"},
      {"another table's page", 9, kOffsetOwner, "05"},
      {"child outside the file", 7, kOffsetEntries + 10, "00 7F FF FF"},
      {"child is the root", 7, kOffsetEntries + 10, "00 00 00 07"},
      {"tail is the root", 7, kOffsetTail, "07"},
      {"node without children", 7, kOffsetTail, "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
  };
  std::set<std::string> entries;
  for (std::uint32_t i = 0; i < 1500; ++i)
    entries.insert(EntryOf(BigEndian(i), {20, static_cast<std::uint8_t>(i)}));
  Build(entries);
  for (const Damage& damage : cases) {
    database.pager.Begin();
    {
      const Bytes page = database.pager.Get(damage.page).Change();
      const std::vector<std::byte> bytes = BytesFromHex(damage.bytes);
      std::copy(bytes.begin(), bytes.end(),
                page.begin() + static_cast<std::ptrdiff_t>(damage.offset));
      if (damage.page == 7 && damage.offset == kOffsetTail && bytes.size() > 4) {
        std::fill(page.begin() + kOffsetEntryMask, page.begin() + kOffsetEntries, std::byte{0});
      }
    }
    const auto readAll = [&] {
      std::size_t count = 0;
      for (auto cursor = database.Tree().Seek({}); cursor.Valid(); cursor.Next()) ++count;
      database.Tree().ContainsKey(AsBytes(BigEndian(100000)));
      return count;
    };
    try {
      readAll();
      ADD_FAILURE() << damage.name;
    } catch (const platform::RunTimeError& error) {
      EXPECT_EQ(platform::kErrCannotOpenDatabase, error.Number()) << damage.name;
    }
    database.pager.Rollback();
  }
  Verify();
}

// What the outer entries of a page share, the one between lacks: written anew it would lose what is not there.
TEST_F(TreeTest, EntriesThatDoNotAscendAreNotStoredWithAPrefix) {
  const std::string beginning(300, 'A');
  std::set<std::string> entries{EntryOf("B", {20, 0}), EntryOf("C" + beginning.substr(1), {20, 1})};
  for (char last = 'a'; last < 'k'; ++last) entries.insert(EntryOf(beginning + last, {20, 2}));
  Build(entries);
  const std::size_t offset = kOffsetEntries + 10 * 305 + 5;
  database.pager.Get(MemoryDatabase::kRoot).Change()[offset] = std::byte{'A'};
  const std::string key = beginning + "z";
  EXPECT_EQ(tests::ErrorOf([&] { database.Tree().Insert(AsBytes(key), {20, 3}); }), platform::kErrCannotOpenDatabase);
}

TEST_F(TreeTest, EntriesThatDoNotFitAreDamage) {
  EntryList list(true);
  for (const char letter : {'a', 'b'}) list.Append(AsBytes(std::string(2000, letter)));
  PageRef page = database.pager.Get(MemoryDatabase::kRoot);
  EXPECT_EQ(tests::ErrorOf([&] { WriteEntryPage(page, {}, list, {0, 2}); }), platform::kErrCannotOpenDatabase);
}

// Random bytes on random pages: whatever is read or changed, only errors come of it.
TEST_F(TreeTest, SurvivesRandomDamage) {
  std::set<std::string> entries;
  while (entries.size() < 2500)
    entries.insert(EntryOf(RandomKey(kKinds[2], random), RandomRow(random)));
  Build(entries);
  for (int round = 0; round < 3000; ++round) {
    database.pager.Begin();
    for (auto flips = 1 + random() % 3; flips > 0; --flips) {
      const auto number = static_cast<PageNumber>(
          MemoryDatabase::kRoot + random() % (database.pager.PageCount() - MemoryDatabase::kRoot));
      const Bytes page = database.pager.Get(number).Change();
      page[random() % (random() % 2 == 0 ? 600 : kPageSize)] = static_cast<std::byte>(random());
    }
    try {
      const std::string entry = RandomEntry();
      database.Tree().Insert(AsBytes(RandomKey(kKinds[4], random)), RandomRow(random));
      database.Tree().Erase(AsBytes(KeyOf(entry)), RowOf(entry));
      for (auto cursor = database.Tree().Seek({}); cursor.Valid(); cursor.Next()) cursor.Row();
    } catch (const platform::RunTimeError&) {
    }
    database.pager.Rollback();
  }
  Verify();
}

}  // namespace
}  // namespace zimbrat::jet

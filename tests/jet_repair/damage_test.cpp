// Damaged databases: every page zeroed in turn, and planted faults. What can be read is there
// afterwards, and the report tells of the rest.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "bench.h"
#include "jet/file/bytes.h"
#include "platform/text.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

const RepairedTable* FindReport(const RepairReport& report, const std::string& name) {
  const auto found = std::ranges::find_if(report.tables, [&](const RepairedTable& table) {
    return platform::Utf8FromUtf16(table.name) == name;
  });
  return found == report.tables.end() ? nullptr : &*found;
}

// Of one list without those of the other, each as often as it is there.
std::size_t CountMissing(const std::vector<std::string>& rows, const std::vector<std::string>& in) {
  std::vector<std::string> missing;
  std::ranges::set_difference(rows, in, std::back_inserter(missing));
  return missing.size();
}

bool IsSystemTable(PageNumber page) {
  return page <= kRelationshipsPage;
}

// A database whose pages are zeroed one after another.
class ZeroedPages : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!HasAccessFiles()) GTEST_SKIP();
    RepairBench sound(AccessFile(GetParam()));
    file_ = sound.bytes();
    const auto database = OpenDatabaseFile(sound.files, sound.clock, kPath, false, {}, {});
    before_ = ReadContents(*database);
    for (const CatalogObject& object : database->GetCatalog().Objects()) {
      if (object.Is(ObjectType::Table)) {
        names_[static_cast<PageNumber>(object.id)] = platform::Utf8FromUtf16(object.name);
      }
    }
  }
  ConstBytes Page(PageNumber page) const {
    return ConstBytes(file_).subspan(page * kPageSize, kPageSize);
  }
  std::uint32_t OwnerOf(PageNumber page) const { return Get32(Page(page), kOffsetOwner); }
  bool IsFree(PageNumber page) const {
    const std::size_t map = Get16(Page(kGlobalMapPage), kOffsetRowTable) & kRowOffsetMask;
    return (Get8(Page(kGlobalMapPage), map + kOffsetMapBits + page / 8) >> (page % 8) & 1) != 0;
  }

  void ZeroAndRepair(PageNumber page);
  void ExpectAllKept(const RepairReport& report, const Contents& after);
  void ExpectTableLost(PageNumber page, const RepairReport& report, Contents after);
  void ExpectRowsLost(PageNumber page, const RepairReport& report, Contents after);
  void ExpectRowsKept(const std::string& but, Contents& after);
  void ExpectNamesLost(const RepairReport& report, const Contents& after);

  FileBytes file_;
  Contents before_;
  std::map<PageNumber, std::string> names_;  // of tables, by their definitions
};

void ZeroedPages::ExpectAllKept(const RepairReport& report, const Contents& after) {
  EXPECT_EQ(LossesOf(report), "");
  EXPECT_EQ(DifferenceOf(before_, after), "");
}

void ZeroedPages::ExpectTableLost(PageNumber page, const RepairReport& report, Contents after) {
  const std::string& name = names_[page];
  const RepairedTable* lost = FindReport(report, name);
  ASSERT_TRUE(lost);
  EXPECT_EQ(lost->lost, before_[name].rows.size());
  EXPECT_FALSE(lost->notes.empty());
  EXPECT_FALSE(after.contains(name));
  ExpectRowsKept(name, after);
}

// Of all tables but one, and those of the engine.
void ZeroedPages::ExpectRowsKept(const std::string& but, Contents& after) {
  for (const auto& [page, name] : names_) {
    if (name == but || IsSystemTable(page)) continue;
    EXPECT_EQ(after[name].rows, before_[name].rows) << name;
  }
}

// Of one table those on the page, no others. Of the engine's own tables some can be made anew.
void ZeroedPages::ExpectRowsLost(PageNumber page, const RepairReport& report, Contents after) {
  const std::string& name = names_[OwnerOf(page)];
  const RepairedTable* harmed = FindReport(report, name);
  ASSERT_TRUE(harmed);
  const std::vector<std::string>& rows = after[name].rows;
  const std::size_t missing = CountMissing(before_[name].rows, rows);
  EXPECT_LE(missing, Get16(Page(page), kOffsetRowCount));
  if (!IsSystemTable(OwnerOf(page))) {
    EXPECT_EQ(CountMissing(rows, before_[name].rows), 0u);
    EXPECT_EQ(harmed->lost, missing);
    EXPECT_EQ(harmed->saved, rows.size());
  }
  ExpectRowsKept(name, after);
}

// The tables are there under made-up names, with their rows.
void ZeroedPages::ExpectNamesLost(const RepairReport& report, const Contents& after) {
  EXPECT_TRUE(report.IsAnythingLost());
  for (const auto& [page, name] : names_) {
    const auto found =
        after.find(after.contains(name) ? name : "Odzyskana_" + std::to_string(page));
    if (IsSystemTable(page) || (found == after.end() && before_[name].rows.empty())) continue;
    ASSERT_NE(found, after.end()) << name;
    EXPECT_EQ(found->second.rows, before_[name].rows) << name;
  }
}

void ZeroedPages::ZeroAndRepair(PageNumber page) {
  RepairBench bench(file_);
  std::ranges::fill(bench.Page(page), std::byte{0});
  const RepairReport report = bench.Repair();
  Contents after = bench.Read();
  const std::uint8_t type = Get8(Page(page), 0);
  const bool isRows = type == kPageData && names_.contains(OwnerOf(page));
  if (IsFree(page)) {
    ExpectAllKept(report, after);
  } else if (isRows && OwnerOf(page) == kObjectsPage) {
    ExpectNamesLost(report, after);
  } else if (isRows) {
    ExpectRowsLost(page, report, after);
  } else if (type == kPageDefinition && names_.contains(page) && !IsSystemTable(page)) {
    ExpectTableLost(page, report, after);
  } else if (type == kPageDefinition && !IsSystemTable(page)) {
    // The end of a definition.
    EXPECT_TRUE(report.IsAnythingLost());
    for (const auto& [table, name] : names_)
      EXPECT_EQ(after[name].rows.size(), before_[name].rows.size()) << name;
  } else if (type == kPageData && OwnerOf(page) == kOwnerLongValues) {
    EXPECT_TRUE(report.IsAnythingLost());
    for (const RepairedTable& table : report.tables) EXPECT_EQ(table.lost, 0u);
  } else {
    ExpectAllKept(report, after);  // maps, indexes, system definitions
  }
}

// Bytes of one page, and what the report says of it: a line for each harmed table.
struct Planted {
  const char* name;
  const char* file;
  PageNumber page;
  std::size_t offset;
  const char* bytes;  // as hexadecimal numbers
  const char* losses;
};

// index.mdb: Table1 (rows on page 62) refers to Table2 (60) and Table3 (61). overflow.mdb: moved
// rows between pages 27, 28 and 31. comp-index.mdb: definition on page 15, rows on 17 to 20, long
// values on 30.
const Planted kPlanted[] = {
    {"key twice", "index.mdb", 60, 0xFDC, "00",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: klucz tabeli "
     "„Table2” "
     "dopuszcza powtórzenia\n"
     "Table2: partial 0, lost 0; indeks „PrimaryKey” dopuszcza teraz powtórzenia, bo są w "
     "wierszach\n"},
    {"no key", "index.mdb", 60, 0xFFF, "02",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table2”\n"
     "Table2: partial 0, lost 0; indeks „PrimaryKey” dopuszcza teraz wartości Null, bo są w "
     "wierszach\n"},
    {"orphan", "index.mdb", 62, 0xFC3, "09",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table2”\n"},
    {"other end of a relationship", "index.mdb", 24, 583, "09",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: brak jej drugiego "
     "końca\n"},
    {"place of a row", "index.mdb", 61, 16, "FF 0F", ""},
    {"places of two rows", "index.mdb", 61, 16, "FF 0F FF 0F",
     "Table1: partial 0, lost 0; relacja „Table3Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table3”\n"
     "Table3: partial 0, lost 3\n"},
    {"number of rows on a page", "index.mdb", 61, 12, "FF FF", ""},
    {"owner of a page", "index.mdb", 61, 4, "FF 0F", ""},
    {"kind of a page", "index.mdb", 61, 0, "07", ""},
    {"number of rows in a definition", "index.mdb", 24, 16, "FF", ""},
    {"pointer of a moved row", "overflow.mdb", 27, 0xF6F, "05", ""},
    {"home slot of a moved row deleted", "overflow.mdb", 27, 19, "CF", ""},
    {"long value deleted", "comp-index.mdb", 30, 15, "CE", "MSysObjects: partial 1, lost 0\n"},
    {"length of a long value", "comp-index.mdb", 30, 15, "0F", "MSysObjects: partial 1, lost 0\n"},
    {"type of a column", "comp-index.mdb", 15, 75, "0E",
     "Table1: partial 0, lost 0; poprawiono opis kolumny „CD_AGENTE”\n"},
    {"type of a text", "index.mdb", 27, 112, "02",
     "Table2: partial 0, lost 0; poprawiono opis kolumny „data”\n"},
    {"variable part of a row", "comp-index.mdb", 17, 0xFE7 + 18, "FF",
     "Table1: partial 1, lost 0\n"},
    {"columns of a row", "comp-index.mdb", 17, 0xFE7, "09", "Table1: partial 0, lost 1\n"},
};

}  // namespace

TEST(PlantedDamage, CostsNoMoreThanItMust) {
  if (!HasAccessFiles()) GTEST_SKIP();
  for (const Planted& planted : kPlanted) {
    RepairBench bench(AccessFile(planted.file));
    std::istringstream in(planted.bytes);
    std::size_t at = planted.offset;
    for (unsigned byte = 0; in >> std::hex >> byte;)
      bench.Page(planted.page)[at++] = static_cast<std::byte>(byte);
    EXPECT_EQ(LossesOf(bench.Repair()), planted.losses) << planted.name;
    EXPECT_TRUE(CheckFile(bench.files, kPath).empty()) << planted.name;
  }
}

// Data pages that changed places say themselves whose they are; a page beyond the end of a cut file
// is lost.
TEST(PlantedDamage, OfPagesOutOfPlace) {
  if (!HasAccessFiles()) GTEST_SKIP();
  RepairBench swapped(AccessFile("index.mdb"));
  const Contents before = swapped.Read();
  std::ranges::swap_ranges(swapped.Page(60), swapped.Page(62));
  EXPECT_EQ(LossesOf(swapped.Repair()), "");
  EXPECT_EQ(DifferenceOf(before, swapped.Read()), "");
  RepairBench cut(AccessFile("index.mdb"));
  cut.bytes().resize(62 * kPageSize + 100);
  const RepairReport report = cut.Repair();
  EXPECT_EQ(FindReport(report, "Table1")->lost, before.at("Table1").rows.size());
  Contents after = cut.Read();
  EXPECT_EQ(after["Table2"].rows, before.at("Table2").rows);
  EXPECT_EQ(after["Table3"].rows, before.at("Table3").rows);
}

TEST_P(ZeroedPages, CostWhatLayOnThem) {
  for (PageNumber page = 1; page < file_.size() / kPageSize; ++page) {
    SCOPED_TRACE("page " + std::to_string(page) + ", type " + std::to_string(Get8(Page(page), 0)) +
                 ", owner " + std::to_string(OwnerOf(page)));
    ZeroAndRepair(page);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, ZeroedPages,
                         testing::Values("common2.mdb", "comp-index.mdb", "index.mdb", "overflow.mdb"));

}  // namespace zimbrat::tests

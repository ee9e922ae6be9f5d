// A changed copy is measured by what it was made of: old damage does not stop a run, new damage does.
#include <gtest/gtest.h>

#include "engines/engine_choice.h"
#include "jet/check/check.h"
#include "jet/check/new_faults.h"
#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::engines {
namespace {

using jet::Fault;

constexpr const char16_t* kOriginal = u"Firma.mdb";
constexpr const char16_t* kCopy = u"kopia.mdb";

class Verification : public testing::Test {
 protected:
  tests::FileBytes& Original() { return files.BytesOf(kOriginal); }
  tests::FileBytes& Copy() { return files.BytesOf(kCopy); }
  static void Plant(tests::FileBytes& file, jet::PageNumber page, std::size_t offset, std::uint8_t byte) {
    file[page * jet::kPageSize + offset] = std::byte{byte};
  }
  // The copy, after work that has nothing to do with damage.
  void ChangeCopy(const std::function<void(dao::Database&)>& work) {
    Copy() = Original();
    const auto workspace = choice.Engine()->CreateWorkspace(u"", u"Admin", u"");
    const auto database = workspace->OpenDatabase(kCopy, true, false);
    work(*database);
    database->Close();
  }
  // What the verification says against the copy.
  std::string Verdict(std::u16string_view original = kOriginal) {
    try {
      choice.Verify(kCopy, original);
      return {};
    } catch (const platform::RunTimeError& error) {
      return platform::Utf8FromUtf16(error.Description());
    }
  }
  testing::AssertionResult IsRefused(const std::string& reason) {
    const std::string verdict = Verdict();
    const bool isNamed = verdict.starts_with("Baza danych nie przeszła sprawdzenia: ") &&
                         verdict.find(reason) != std::string::npos;
    return (isNamed ? testing::AssertionSuccess() : testing::AssertionFailure()) << verdict;
  }

  tests::MemoryFiles files;
  tests::FakeClock clock;
  EngineChoice choice{{.files = files, .clock = clock, .wish = Wish::Embedded}};
};

void Rename(dao::Database& database) {
  database.TableDefs()->Item(u"Table1")->SetName(u"Nowa, strona 7");
}
void Insert(dao::Database& database) {
  database.Execute(u"INSERT INTO Table1 (CD_AGENTE) VALUES (123456)", dao::dbFailOnError);
}
void AddTable(dao::Database& database) {
  database.Execute(u"CREATE TABLE Druga (Id LONG CONSTRAINT PK PRIMARY KEY)", dao::dbFailOnError);
}

// Damage of comp-index.mdb: its table's definition on page 15, rows on 17 to 20, index leaves 32 and 33.
struct OldDamage {
  const char* name;
  jet::PageNumber page;
  std::size_t offset;
  std::uint8_t byte;
  void (*work)(dao::Database&);
};
const OldDamage kOldDamages[] = {
    {"count of rows, another table", 15, 16, 1, AddTable},
    {"count of rows, which then changes", 15, 16, 1, Insert},
    {"count of rows, of a table with a new name", 15, 16, 1, Rename},
    {"free bytes of a leaf, the table's new name", 32, 2, 0x2A, Rename},
    {"value and key, the table's new name", 17, 0xFE7 + 2, 0x14, Rename},
    {"free bytes of a data page, another table", 17, 2, 6, AddTable},
};

TEST_F(Verification, LetsOldDamagePassAndNamesNew) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  for (const OldDamage& old : kOldDamages) {
    SCOPED_TRACE(old.name);
    Original() = tests::BytesOfFile(tests::AccessFile("comp-index.mdb"));
    Plant(Original(), old.page, old.offset, old.byte);
    ChangeCopy(old.work);
    EXPECT_EQ("", Verdict());
    EXPECT_NE("", Verdict({})) << "a new database may have no fault at all";
    Plant(Copy(), 33, 12, 0x1D);
    EXPECT_TRUE(IsRefused("poprzednią stroną jest 29"));
  }
}

TEST_F(Verification, RefusesDamageOfASoundDatabase) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  Original() = tests::BytesOfFile(tests::AccessFile("comp-index.mdb"));
  ChangeCopy(Rename);
  EXPECT_EQ("", Verdict());
  Plant(Copy(), 15, 16, 1);
  EXPECT_TRUE(IsRefused("definicja podaje 513 wierszy"));
}

// Full pages of short rows, all of them marked as deleted while the index still names them.
void LoseShortRows(tests::FileBytes& file) {
  for (std::size_t at = jet::kPageSize; at < file.size(); at += jet::kPageSize) {
    const auto page = std::span(file).subspan(at, jet::kPageSize);
    if (jet::Get8(page, 0) != jet::kPageData || jet::Get16(page, jet::kOffsetRowCount) < 200) continue;
    for (std::size_t slot = 0; slot < jet::Get16(page, jet::kOffsetRowCount); ++slot) {
      page[jet::kOffsetRowTable + jet::kSizeRowSlot * slot + 1] |= std::byte{0xC0};
    }
  }
}

// The check of a table tells of thousands of old faults before it comes to the new one.
TEST_F(Verification, FindsANewFaultBehindThousandsOfOldOnes) {
  {
    const auto workspace = choice.Engine()->CreateWorkspace(u"", u"Admin", u"");
    const auto database = workspace->CreateDatabase(kOriginal, dao::dbLangGeneral, dao::dbVersion40);
    database->Execute(u"CREATE TABLE Pierwsza (Id LONG CONSTRAINT PK PRIMARY KEY)");
    for (int i = 0; i < 3000; ++i) {
      database->Execute(u"INSERT INTO Pierwsza VALUES (" + platform::DecimalText(i) + u")");
    }
    database->Close();
  }
  LoseShortRows(Original());
  ASSERT_GT(jet::CheckFile(files, kOriginal).size(), jet::CheckOptions().maxFaults);
  ChangeCopy([&](dao::Database& database) {
    AddTable(database);
    database.Execute(u"INSERT INTO Druga VALUES (1)", dao::dbFailOnError);
  });
  EXPECT_EQ("", Verdict());
  jet::PageNumber added = 0;  // the page of that row
  for (std::size_t at = Original().size(); at < Copy().size(); at += jet::kPageSize) {
    if (jet::Get8(Copy(), at) == jet::kPageData) added = static_cast<jet::PageNumber>(at / jet::kPageSize);
  }
  ASSERT_NE(0u, added);
  Plant(Copy(), added, jet::kOffsetFreeBytes, 0x77);
  EXPECT_TRUE(IsRefused("tabela „Druga”"));
}

// One to one: what is left over of a kind is new, whatever it is called by now.
TEST(NewFaults, ArePairedWithFormerOnes) {
  const Fault inA{u"tabela „A”, strona 7", u"brak wpisu (8, 1)"};
  const Fault movedInA{u"tabela „A”, strona 12", u"brak wpisu (9, 14)"};
  const Fault inB{u"tabela „B2”, strona 12", u"brak wpisu (9, 14)"};
  const Fault other{u"tabela „A”, strona 7", u"nie ma wpisu"};
  const Fault warning{u"tabela „A”, strona 7", u"odwrotna kolejność", false};
  const auto placeOf = [](const std::vector<Fault>& faults, const std::vector<Fault>& former) {
    const std::vector<Fault> found = jet::NewFaults(faults, former);
    return found.empty() ? "" : platform::Utf8FromUtf16(found.front().place + u": " + found.front().text);
  };
  EXPECT_EQ("", placeOf({inA}, {inA}));
  EXPECT_EQ("", placeOf({movedInA}, {inA}));
  EXPECT_EQ("", placeOf({inB}, {inA}));
  EXPECT_EQ("", placeOf({warning}, {}));
  EXPECT_EQ("tabela „B2”, strona 12: brak wpisu (9, 14)", placeOf({inB, movedInA}, {inA}))
      << "the one that is more alike is the old one";
  EXPECT_EQ("tabela „A”, strona 12: brak wpisu (9, 14)", placeOf({movedInA, inA}, {inA}));
  EXPECT_EQ("tabela „A”, strona 7: nie ma wpisu", placeOf({inA, other}, {inA, inB}));
  EXPECT_NE("", placeOf({inA}, {warning}));
}

}  // namespace
}  // namespace zimbrat::engines

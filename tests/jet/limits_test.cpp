// The limits of a database: what just fits, what does not, with which number and text, and that a refusal leaves the
// file as it was byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <span>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "jet/file/data_page.h"
#include "jet/file/format.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

class Limits : public ::testing::Test {
 protected:
  void Open() { database_ = workspace_->OpenDatabase(path_, true, false, u";pwd=" + password_ + u";"); }
  void Close() {
    if (database_) database_->Close();
    database_.reset();
  }
  void Run(std::u16string_view statement) { database_->Execute(statement, dao::dbFailOnError); }

  // "3190 Zdefiniowano zbyt wiele pól."; "" when nothing was raised.
  std::string RefusalOf(const std::function<void()>& work) {
    try {
      work();
      return {};
    } catch (const RunTimeError& error) {
      return std::to_string(error.Number()) + " " + Utf8FromUtf16(error.Description());
    }
  }

  void CheckFile() {
    for (const Fault& fault : jet::CheckFile(*system_.files, path_)) {
      ADD_FAILURE() << Utf8FromUtf16(fault.place) << ": " << Utf8FromUtf16(fault.text);
    }
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  System system_ = MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_ = MakeEngine(*system_.files, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path_ = folder_.PathOf(u"a.mdb");
  std::u16string password_;
  std::shared_ptr<dao::Database> database_;
};

// "P1 LONG, P2 LONG": so many, each with what `tail` says.
std::u16string List(int count, std::u16string_view tail, std::u16string_view head = u"P") {
  std::u16string list;
  for (int i = 1; i <= count; ++i) list += (i > 1 ? u", " : u"") + std::u16string(head) + DecimalText(i) + std::u16string(tail);
  return list;
}

std::u16string Times(int count, std::u16string_view word) {
  std::u16string text;
  for (int i = 0; i < count; ++i) text += (i > 0 ? u", " : u"") + std::u16string(word);
  return text;
}

const std::u16string kText255 = u"'" + std::u16string(255, u'ż') + u"'";
const std::u16string k64 = std::u16string(63, u'ż') + u"T", k65 = k64 + u"ą";

struct Case {
  const char* name;
  std::vector<std::u16string> fits;
  std::u16string beyond;
  const char* refusal;
};

std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }

const Case kCases[] = {
    {"FieldsOfATable", {u"CREATE TABLE T (" + List(255, u" LONG") + u")"},
     u"CREATE TABLE U (" + List(256, u" LONG") + u")", "3190 Zdefiniowano zbyt wiele pól."},
    {"FieldAddedToATable", {u"CREATE TABLE T (" + List(254, u" LONG") + u")", u"ALTER TABLE T ADD COLUMN A TEXT(10)"},
     u"ALTER TABLE T ADD COLUMN B LONG", "3190 Zdefiniowano zbyt wiele pól."},
    {"FieldsOfAnIndex", {u"CREATE TABLE T (" + List(11, u" LONG") + u")", u"CREATE INDEX I ON T (" + List(10, u"") + u")"},
     u"CREATE INDEX J ON T (" + List(11, u"") + u")", "3277 Indeks „J” nie może mieć więcej niż 10 pól."},
    {"FieldsOfAConstraint", {u"CREATE TABLE T (" + List(10, u" LONG") + u", CONSTRAINT I UNIQUE (" + List(10, u"") + u"))"},
     u"CREATE TABLE U (" + List(11, u" LONG") + u", CONSTRAINT J UNIQUE (" + List(11, u"") + u"))",
     "3277 Indeks „J” nie może mieć więcej niż 10 pól."},
    {"NameOfATable", {u"CREATE TABLE [" + k64 + u"] (A LONG)"}, u"CREATE TABLE [" + k65 + u"] (A LONG)", "3125"},
    {"NameOfAField", {u"CREATE TABLE T ([" + k64 + u"] LONG)"}, u"ALTER TABLE T ADD COLUMN [" + k65 + u"] LONG", "3125"},
    {"NameOfAnIndex", {u"CREATE TABLE T (A LONG)", u"CREATE INDEX [" + k64 + u"] ON T (A)"},
     u"CREATE INDEX [" + k65 + u"] ON T (A)", "3125"},
    {"NameOfARelation",
     {u"CREATE TABLE T (A LONG PRIMARY KEY)", u"CREATE TABLE U (B LONG)",
      u"ALTER TABLE U ADD CONSTRAINT [" + k64 + u"] FOREIGN KEY (B) REFERENCES T (A)"},
     u"ALTER TABLE U ADD CONSTRAINT [" + k65 + u"] FOREIGN KEY (B) REFERENCES T (A)", "3125"},
    {"SizeOfAText", {u"CREATE TABLE T (A TEXT(255))"}, u"CREATE TABLE U (A TEXT(256))", "3382"},
    {"SizeOfBytes", {u"CREATE TABLE T (A BINARY(510))"}, u"CREATE TABLE U (A BINARY(511))", "3382"},
    {"LettersOfAText", {u"CREATE TABLE T (A TEXT(255))", u"INSERT INTO T VALUES (" + kText255 + u")"},
     u"INSERT INTO T VALUES ('x' & " + kText255 + u")", "3163"},
    {"LettersOfAChangedText", {u"CREATE TABLE T (A TEXT(255))", u"INSERT INTO T VALUES (" + kText255 + u")"},
     u"UPDATE T SET A = A & 'x'", "3163"},
    {"StoredRow", {u"CREATE TABLE T (" + List(8, u" TEXT(255)") + u")", u"INSERT INTO T VALUES (" + Times(7, kText255) + u", 'x')"},
     u"INSERT INTO T VALUES (" + Times(8, kText255) + u")", "3047 Rekord jest zbyt duży."},
    {"ChangedRow", {u"CREATE TABLE T (" + List(8, u" TEXT(255)") + u")", u"INSERT INTO T VALUES (" + Times(7, kText255) + u", 'x')"},
     u"UPDATE T SET P8 = P1", "3047 Rekord jest zbyt duży."},
    {"KeyOfARow", {u"CREATE TABLE T (" + List(4, u" TEXT(255)") + u")", u"CREATE INDEX I ON T (P1, P2, P3, P4)",
                   u"INSERT INTO T (P1) VALUES (" + kText255 + u")"},
     u"INSERT INTO T VALUES (" + Times(4, kText255) + u")", "3047 Rekord jest zbyt duży."},
    {"KeyOfAnIndexOverRows", {u"CREATE TABLE T (" + List(4, u" TEXT(255)") + u")",
                              u"INSERT INTO T VALUES (" + Times(4, kText255) + u")"},
     u"CREATE INDEX I ON T (P1, P2, P3, P4)", "3047 Rekord jest zbyt duży."},
    {"LastCounter", {u"CREATE TABLE T (Id COUNTER, A LONG)", u"INSERT INTO T (Id) VALUES (2147483646)",
                     u"INSERT INTO T (A) VALUES (1)"},
     u"INSERT INTO T (A) VALUES (2)", "6"},
    {"CounterInAQuery", {u"CREATE TABLE T (Id COUNTER, A LONG)", u"INSERT INTO T (Id) VALUES (2147483645)"},
     u"INSERT INTO T (A) SELECT TOP 3 Id FROM MSysObjects ORDER BY Id", "6"},
};

class LimitsOfSql : public Limits, public ::testing::WithParamInterface<Case> {};

TEST_P(LimitsOfSql, AreRefusedWithANumberAndLeaveTheFile) {
  const Case& c = GetParam();
  database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, dao::dbEncrypt);
  for (const std::u16string& statement : c.fits) Run(statement);
  Close();
  CheckFile();
  const std::string before = folder_.Read(u"a.mdb");
  Open();
  const std::string refusal = RefusalOf([&] { Run(c.beyond); });
  Close();
  EXPECT_TRUE(refusal.starts_with(c.refusal)) << refusal;
  EXPECT_TRUE(folder_.Read(u"a.mdb") == before) << "the file has changed";
}

INSTANTIATE_TEST_SUITE_P(Statements, LimitsOfSql, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace

TEST_F(Limits, OfIndexesCountThoseOfRelationsToo) {
  database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0);
  Run(u"CREATE TABLE T (A LONG PRIMARY KEY, B LONG)");
  Run(u"CREATE TABLE U (B LONG)");
  for (int i = 2; i <= 31; ++i) Run(u"CREATE INDEX I" + DecimalText(i) + u" ON T (B)");
  Run(u"ALTER TABLE U ADD CONSTRAINT R FOREIGN KEY (B) REFERENCES T (A)");
  Close();
  CheckFile();
  const std::string before = folder_.Read(u"a.mdb");
  for (const std::u16string_view statement :
       {u"CREATE INDEX I33 ON T (A, B)", u"ALTER TABLE T ADD CONSTRAINT S FOREIGN KEY (B) REFERENCES T (A)",
        u"ALTER TABLE U ADD CONSTRAINT S FOREIGN KEY (B) REFERENCES T (A)",
        u"ALTER TABLE T ADD CONSTRAINT S UNIQUE (B)"}) {
    Open();
    EXPECT_EQ(RefusalOf([&] { Run(statement); }), "3626 Zbyt wiele indeksów w tabeli „T”.") << Utf8FromUtf16(statement);
    Close();
    EXPECT_TRUE(folder_.Read(u"a.mdb") == before) << Utf8FromUtf16(statement);
  }
}

TEST_F(Limits, OfAPasswordAreTwentyCharacters) {
  database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0);
  password_ = std::u16string(20, u'ż');
  database_->NewPassword(u"", password_);
  Close();
  const std::string before = folder_.Read(u"a.mdb");
  Open();
  EXPECT_TRUE(RefusalOf([&] { database_->NewPassword(password_, password_ + u"x"); }).starts_with("3001 "));
  Close();
  EXPECT_TRUE(folder_.Read(u"a.mdb") == before);
}

TEST_F(Limits, OfACounterHoldForARecordsetToo) {
  database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0);
  Run(u"CREATE TABLE T (Id COUNTER, A TEXT(255))");
  Run(u"INSERT INTO T (Id) VALUES (2147483647)");
  const auto rows = database_->OpenRecordset(u"T");
  EXPECT_TRUE(RefusalOf([&] { rows->AddNew(); }).starts_with("6 "));
  rows->MoveFirst();
  rows->Edit();
  EXPECT_TRUE(RefusalOf([&] { rows->Fields()->Item(u"A")->SetValue(std::u16string(256, u'x')); }).starts_with("3163 "));
  rows->Close();
  Close();
  CheckFile();
}

// A file that lacks a few pages to 2 GB; most of them were never written.
class LargestFile : public Limits {
 protected:
  static constexpr std::uint64_t kMost = std::uint64_t{kMaxPages} * kPageSize;

  void Make(std::uint64_t size) {
    database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0);
    Run(u"CREATE TABLE T (A LONG, M MEMO)");
    Run(u"INSERT INTO T VALUES (1, 'ala')");
    Close();
    const auto file = system_.files->Open(path_, OpenMode::ReadWrite, Sharing::None);
    // Nothing is free in what the map says of the first pages.
    std::vector<std::byte> page(kPageSize);
    file->ReadAt(kGlobalMapPage * kPageSize, page);
    const Bytes bits = RowBytes(Bytes(page), 0).subspan(kOffsetMapBits);
    std::fill(bits.begin(), bits.end(), std::byte{0});
    file->WriteAt(kGlobalMapPage * kPageSize, page);
    begin_.resize(static_cast<std::size_t>(file->Size()));
    file->ReadAt(0, std::as_writable_bytes(std::span(begin_)));
    file->Resize(size);
  }
  // The size and the pages that are written.
  bool IsAsMade(std::uint64_t size) {
    const auto file = system_.files->Open(path_, OpenMode::Read, Sharing::Readers);
    std::string found(begin_.size(), ' ');
    file->ReadAt(0, std::as_writable_bytes(std::span(found)));
    return file->Size() == size && found == begin_;
  }

  std::string begin_;
};

TEST_F(LargestFile, IsFilledUpAndNotExceeded) {
  const std::uint64_t size = kMost - 6 * kPageSize;
  Make(size);
  Open();
  for (const std::u16string_view statement :
       {u"UPDATE T SET M = String(20000, 'ż')", u"INSERT INTO T VALUES (2, String(20000, 'ż'))",
        u"CREATE TABLE U (A LONG UNIQUE, B LONG UNIQUE, C LONG UNIQUE, D LONG UNIQUE, E LONG UNIQUE)"}) {
    EXPECT_EQ(RefusalOf([&] { Run(statement); }), "3036 Baza danych osiągnęła maksymalny rozmiar 2 GB.");
  }
  Close();
  EXPECT_TRUE(IsAsMade(size));
  Open();
  Run(u"INSERT INTO T VALUES (3, String(5000, 'ż'))");
  Run(u"DELETE FROM T WHERE A = 3");
  Run(u"INSERT INTO T VALUES (4, String(5000, 'z'))");
  Close();
  Open();
  const auto rows = database_->OpenRecordset(u"SELECT M FROM T WHERE A = 4");
  EXPECT_TRUE(rows->Fields()->Item(0)->Value() == dao::Value(std::u16string(5000, u'z')));
  rows->Close();
  Close();
}

TEST_F(LargestFile, ThatIsFullOpensAndOneThatIsTooLargeDoesNot) {
  Make(kMost);
  Open();
  Run(u"UPDATE T SET A = 2");
  EXPECT_TRUE(RefusalOf([&] { Run(u"CREATE TABLE U (A LONG)"); }).starts_with("3036 "));
  Run(u"DELETE FROM T");
  Close();
  system_.files->Open(path_, OpenMode::ReadWrite, Sharing::None)->Resize(kMost + 1);
  EXPECT_TRUE(RefusalOf([&] { Open(); }).starts_with("3036 "));
}

}  // namespace zimbrat::jet

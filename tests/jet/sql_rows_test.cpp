// What statements do with many rows, with rows that fail, and with recordsets: what tables of cases cannot say.
#include <gtest/gtest.h>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

namespace {

using tests::ErrorOf;
using tests::FileBytes;

class SqlRows : public testing::Test {
 protected:
  void Run(std::u16string_view statement) { database_->Execute(statement, dao::dbFailOnError); }
  std::shared_ptr<dao::Recordset> Open(std::u16string_view query) {
    return database_->OpenRecordset(query, dao::dbOpenDynaset);
  }
  std::int32_t Number(std::u16string_view query) {
    auto rows = Open(query);
    return std::get<std::int32_t>(rows->Fields()->Item(0)->Value());
  }
  void TearDown() override {
    database_->Close();
    EXPECT_TRUE(CheckFile(*system_.files, folder_.PathOf(u"wiersze.mdb")).empty());
  }

  // Rows 1 to `count`: their numbers, and the numbers backwards.
  void Fill(int count) {
    Run(u"CREATE TABLE N (i LONG, j LONG, t TEXT(50))");
    Run(u"INSERT INTO N VALUES (1, 0, 'wiersz')");
    for (int have = 1; have < count; have *= 2) {
      const std::u16string limit = platform::DecimalText(count), step = platform::DecimalText(have);
      Run(u"INSERT INTO N SELECT i + " + step + u" AS i, 0 AS j, 'wiersz ' & (i * 7919 Mod 1000) AS t FROM N "
          u"WHERE i + " + step + u" <= " + limit);
    }
    Run(u"UPDATE N SET j = " + platform::DecimalText(count) + u" - i");
  }

  int pulses_ = 0;
  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_ = MakeEngine(*system_.files, clock_, [this] { ++pulses_; });
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::shared_ptr<dao::Database> database_ =
      workspace_->CreateDatabase(folder_.PathOf(u"wiersze.mdb"), dao::dbLangGeneral, 0);
};

class SqlRowsInMemory : public SqlRows {
 protected:
  static constexpr const char16_t* kPath = u"pamiec.mdb";

  void SetUp() override { database_ = inMemory_->CreateDatabase(kPath, dao::dbLangGeneral, 0); }
  void TearDown() override {
    database_->Close();
    KeyCounts keys;
    CheckOptions options;
    options.keyCounts = &keys;  // compare all, though their sum be right
    EXPECT_TRUE(CheckFile(files_, kPath, options).empty());
    for (const auto& [column, count] : keys) EXPECT_EQ(count.equal, count.keys);
  }

  tests::MemoryFiles files_;
  std::shared_ptr<dao::Workspace> inMemory_ =
      MakeEngine(files_, clock_, {})->CreateWorkspace(u"", u"Admin", u"");
};

}  // namespace

TEST_F(SqlRows, AStatementThatFailsAtARowChangesNothing) {
  Fill(1000);
  Run(u"CREATE UNIQUE INDEX u ON N (i)");
  EXPECT_EQ(ErrorOf([&] { Run(u"UPDATE N SET j = 10 / (i - 500)"); }), platform::kErrDivisionByZero);
  EXPECT_EQ(ErrorOf([&] { Run(u"UPDATE N SET i = IIf(i = 500, 501, i)"); }), platform::kErrDuplicateKey);
  EXPECT_EQ(ErrorOf([&] { Run(u"INSERT INTO N (i, t) SELECT IIf(i = 500, 1, i + 2000), t FROM N"); }),
            platform::kErrDuplicateKey);
  EXPECT_EQ(ErrorOf([&] { Run(u"SELECT 10 / (i - 500) AS x INTO Kopia FROM N"); }), platform::kErrDivisionByZero);
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N WHERE i + j = 1000 AND i BETWEEN 1 AND 1000"), 1000);
  EXPECT_EQ(ErrorOf([&] { Open(u"Kopia"); }), platform::kErrTableNotFound);

  database_->Execute(u"UPDATE N SET i = IIf(i = 500, 501, -i)", 0);
  EXPECT_EQ(database_->RecordsAffected(), 999);  // 501 is still there then
  database_->Execute(u"INSERT INTO N (i) SELECT IIf(j < 10, -1, 5000 + j) FROM N", 0);
  EXPECT_EQ(database_->RecordsAffected(), 990);
}

// The cache takes more than the disk: what does not fit must be known before the statement is done.
TEST_F(SqlRowsInMemory, AFullDiskUndoesTheStatementAndLeavesASoundFile) {
  Fill(64);
  files_.room = files_.BytesOf(kPath).size() + 20 * 4096;
  const auto grow = [&] { Run(u"INSERT INTO N SELECT a.i, a.j, a.t FROM N AS a, N AS b"); };
  EXPECT_EQ(ErrorOf(grow), platform::kErrNoDiskSpace);
  inMemory_->BeginTrans();
  Run(u"UPDATE N SET j = 0");
  inMemory_->BeginTrans();
  grow();
  inMemory_->CommitTrans();
  EXPECT_EQ(ErrorOf([&] { inMemory_->CommitTrans(); }), platform::kErrNoDiskSpace);
  inMemory_->Rollback();
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N WHERE j = 64 - i"), 64);
}

// Fifteen points under a letter add up to an accent whose byte is the end of a key.
TEST_F(SqlRowsInMemory, KeysMayHaveTheirEndWithin) {
  Run(u"CREATE TABLE T (a TEXT(50), b TEXT(50))");
  Run(u"CREATE UNIQUE INDEX u ON T (a, b DESC)");
  const std::u16string text = u"a" + std::u16string(15, u'\u05B0') + u"á";
  for (const char16_t* last : {u"b", u"c", u""}) {
    Run(u"INSERT INTO T VALUES ('" + text + u"', '" + last + text + u"')");
  }
  EXPECT_EQ(ErrorOf([&] { Run(u"INSERT INTO T VALUES ('" + text + u"', 'b" + text + u"')"); }),
            platform::kErrDuplicateKey);
  EXPECT_EQ(Number(u"SELECT Count(*) FROM T WHERE a = '" + text + u"' AND b = 'c" + text + u"'"), 1);
}

// Values that fill no page exactly still share pages.
TEST_F(SqlRowsInMemory, LongValuesOfEverySizeShareTheirPages) {
  const FileBytes& bytes = files_.BytesOf(kPath);
  Fill(256);
  for (const int length : {120, 300, 640}) {
    Run(u"CREATE TABLE M (m MEMO)");
    const std::size_t before = bytes.size();
    Run(u"INSERT INTO M SELECT String(" + platform::DecimalText(length) + u", 'ł') AS m FROM N");
    EXPECT_LT(bytes.size() - before, 256u * 2u * static_cast<std::size_t>(length) * 3 / 2) << length;
    Run(u"DROP TABLE M");
  }
}

TEST_F(SqlRows, MoreRowsThanFitIntoMemoryAreSortedGroupedAndJoined) {
  Fill(200'000);
  auto rows = Open(u"SELECT i FROM N ORDER BY j");
  for (int i = 200'000; i > 0; --i, rows->MoveNext()) {
    if (i % 50'000 != 0) continue;
    EXPECT_EQ(std::get<std::int32_t>(rows->Fields()->Item(0)->Value()), i);
  }
  EXPECT_TRUE(rows->EndOfFile());
  rows->Close();
  EXPECT_EQ(Number(u"SELECT Count(*) FROM (SELECT DISTINCT t FROM N) AS q"), 1001);
  EXPECT_EQ(Number(u"SELECT CLng(Sum(c)) FROM (SELECT t, Count(*) AS c FROM N GROUP BY t) AS q"), 200'000);
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N a INNER JOIN N b ON a.i = b.j WHERE b.i <= 100"), 100);
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N WHERE i NOT IN (SELECT j FROM N)"), 1);
  Run(u"CREATE INDEX x ON N (i)");
  Run(u"UPDATE N AS a INNER JOIN N AS b ON a.j = b.i SET a.t = b.i & '' WHERE a.i > 100000");
  EXPECT_EQ(database_->RecordsAffected(), 99'999);
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N AS a WHERE a.i <= 2000 AND EXISTS (SELECT * FROM N AS b WHERE b.i = a.j)"),
            2000);
}

TEST_F(SqlRows, PairsOfCachedRowsGiveThePulse) {
  Fill(200);
  pulses_ = 0;
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N a, N b"), 40'000);
  EXPECT_GT(pulses_, 5);
  pulses_ = 0;
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N a WHERE EXISTS (SELECT * FROM N b WHERE b.j + b.i < a.i)"), 0);
  EXPECT_GT(pulses_, 5);
}

TEST_F(SqlRows, ChangesOfCachedRowsGiveThePulse) {
  Fill(20'000);
  for (const auto statement : {u"UPDATE N SET j = j + 1", u"DELETE FROM N WHERE i > 10"}) {
    pulses_ = 0;
    Run(statement);
    EXPECT_GT(pulses_, 10) << platform::Utf8FromUtf16(statement);
  }
}

TEST_F(SqlRows, RowsOfOneTableCanBeEditedThroughAQuery) {
  Fill(5);
  auto rows = Open(u"SELECT i * 2 AS dwa, t AS Opis FROM N WHERE i > 2 ORDER BY i DESC");
  rows->Edit();
  rows->Fields()->Item(u"Opis")->SetValue(u"ż");
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"dwa")->SetValue(1); }), platform::kErrFieldNotUpdatable);
  rows->Update();
  EXPECT_EQ(rows->Fields()->Item(u"Opis")->Value(), dao::Value(u"ż"));
  rows->MoveNext();
  rows->Delete();
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"dwa")->Value(); }), platform::kErrNoCurrentRecord);
  rows->AddNew();
  rows->Fields()->Item(u"Opis")->SetValue(u"nowy");
  rows->Update();
  EXPECT_EQ(ErrorOf([&] { Run(u"DROP TABLE N"); }), platform::kErrTableInUse);
  rows->Close();
  EXPECT_EQ(Number(u"SELECT Count(*) FROM N WHERE t IN ('ż', 'nowy')"), 2);

  for (const std::u16string_view source : {u" \r\nN ; ", u"[N]", u"\tSELECT*FROM N;\r\n"}) {
    EXPECT_FALSE(Open(source)->EndOfFile()) << platform::Utf8FromUtf16(source);
  }
  const auto openTable = [&](std::u16string_view source) {
    return ErrorOf([&] { database_->OpenRecordset(source, dao::dbOpenTable); });
  };
  EXPECT_EQ(openTable(u"N"), 0);
  EXPECT_EQ(openTable(u"Nie"), platform::kErrObjectNotFound);
  EXPECT_EQ(openTable(u"SELECT * FROM N"), platform::kErrInvalidOperation);

  for (const std::u16string_view query :
       {u"SELECT a.t FROM N a, N b", u"SELECT t FROM N GROUP BY t", u"SELECT DISTINCT t FROM N",
        u"SELECT t FROM N UNION SELECT t FROM N", u"SELECT t FROM (SELECT t FROM N) AS q"}) {
    auto readOnly = Open(query);
    EXPECT_EQ(ErrorOf([&] { readOnly->Edit(); }), platform::kErrReadOnly) << platform::Utf8FromUtf16(query);
    EXPECT_EQ(ErrorOf([&] { readOnly->AddNew(); }), platform::kErrReadOnly);
    EXPECT_EQ(ErrorOf([&] { readOnly->Delete(); }), platform::kErrReadOnly);
  }
}

TEST_F(SqlRows, HostileStatementsEndInTimeWithAnError) {
  Fill(3);
  const auto repeated = [](std::u16string_view start, std::u16string_view piece, std::u16string_view end) {
    std::u16string text(start);
    while (text.size() < 200'000) text += piece;
    return text + std::u16string(end);
  };
  for (const std::u16string& text :
       {repeated(u"SELECT * FROM ", u"(", u"N"), repeated(u"SELECT i FROM N", u", N", u""),
        repeated(u"SELECT i FROM N WHERE i IN ", u"(SELECT i FROM N WHERE i IN ", u"(1)"),
        repeated(u"SELECT i FROM N", u" UNION SELECT i FROM N", u""), repeated(u"SELECT i", u",i", u" FROM N"),
        repeated(u"SELECT * FROM ", u"(SELECT * FROM ", u"N"), repeated(u"SELECT ", u"nieznana+", u"1"),
        repeated(u"SELECT i FROM N GROUP BY i", u",j,t", u""), repeated(u"SELECT i FROM N WHERE ", u"i=1 AND ", u"1"),
        repeated(u"SELECT ", u"((1+1+1+1+1+1+1+1)+", u"1"), repeated(u"CREATE TABLE x (a LONG", u",a LONG", u")"),
        repeated(u"SELECT Sum(", u"Sum(", u"i) FROM N"), repeated(u"SELECT 1 FROM N a ", u"INNER JOIN N b ON 1 ", u"")}) {
    EXPECT_NE(ErrorOf([&] { Open(text); }), 0) << platform::Utf8FromUtf16(text.substr(0, 60));
  }
  auto longList = Open(repeated(u"SELECT Count(*) FROM N WHERE i IN (1", u",2,3", u")"));
  EXPECT_EQ(longList->Fields()->Item(0)->Value(), dao::Value(std::int32_t{3}));
}

}  // namespace zimbrat::jet

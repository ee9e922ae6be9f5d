// Repair by an installed engine: aside, and in place only when it is good.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <utility>

#include "engine_bench.h"
#include "jet/check/check.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "platform/working_file.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;
using namespace std::string_view_literals;

class RepairByEngine : public EngineBench {
 protected:
  DaoServer server{jetEngine};
  std::shared_ptr<dao::Engine> engine = Find();

  std::int32_t Repair() {
    return ErrorOf([&] { engine->RepairDatabase(path); });
  }
  bool IsSound() { return !jet::HasErrors(jet::CheckFile(*system.files, path, {})); }
  // Whatever happened: one file, that anybody may open, and the engine alone.
  void ExpectNothingLeft() {
    EXPECT_EQ(folder.Names(), std::vector<std::u16string>{u"Baza.mdb"});
    EXPECT_FALSE(IsHeld());
    EXPECT_EQ(server.Objects(), 1);
  }
  void AtPulse(int number, std::function<void()> work) {
    onPulse = [number, work = std::move(work), pulses = 0]() mutable {
      if (++pulses == number) work();
    };
  }
  // By the embedded engine.
  void ChangeFile(const std::u16string& file, const std::function<void(dao::Database&)>& work,
                  std::u16string_view connect = u";pwd=tajne;") {
    const auto workspace = jetEngine->CreateWorkspace(u"", u"Admin", u"");
    const auto database = workspace->OpenDatabase(file, true, false, connect);
    work(*database);
    database->Close();
    workspace->Close();
  }
  void ChangeCopy(const std::function<void(dao::Database&)>& work) {
    ChangeFile(path + std::u16string(kRepairSuffix), work);
  }
  // The page of the row is lost.
  void Damage() {
    std::string bytes = Contents();
    const std::size_t row = bytes.find("Z\0g\0u\0b\0"sv);
    ASSERT_NE(row, bytes.npos);
    bytes.replace(row / 4096 * 4096, 4096, 4096, '\0');
    folder.Write(u"Baza.mdb", bytes);
  }
};

TEST_F(RepairByEngine, CompactsWhereTheEngineDoesNotRepair) {
  MakeFile();
  for (const bool repairsInPlace : {false, true}) {
    server.repairsInPlace = repairsInPlace;
    server.log.clear();
    server.keepsLog = true;
    EXPECT_EQ(Repair(), 0);
    const auto compacted = std::ranges::count(server.log, "DBEngine.CompactDatabase");
    EXPECT_EQ(compacted, repairsInPlace ? 0 : 1);
    EXPECT_TRUE(IsSound());
    EXPECT_NE(Contents().find("Z\0g\0u\0b\0"sv), std::string::npos);
    ExpectNothingLeft();
  }
}

TEST_F(RepairByEngine, AsksForAPasswordOnce) {
  MakeFile(u"Tajne;ź");
  const std::string before = Contents();
  EXPECT_EQ(Repair(), kErrInvalidPassword) << "nobody to ask";
  EXPECT_EQ(asked, 1);
  password = u"inne";
  EXPECT_EQ(Repair(), kErrInvalidPassword);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(Contents(), before);
  ExpectNothingLeft();
  system.files->Delete(path);
  MakeFile(u"Tajne ź");
  password = u"Tajne ź";
  EXPECT_EQ(Repair(), 0);
  EXPECT_EQ(asked, 3);
  EXPECT_TRUE(IsSound());
  const auto workspace = jetEngine->CreateWorkspace(u"", u"Admin", u"");
  EXPECT_EQ(ErrorOf([&] { workspace->OpenDatabase(path, true, false); }), kErrInvalidPassword);
  EXPECT_EQ(workspace->OpenDatabase(path, true, false, u";pwd=Tajne ź;")->Version(), u"4.0");
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, LeavesTheFileWhenSomethingWouldBeLost) {
  MakeFile();
  Damage();
  const std::string before = Contents();
  try {
    engine->RepairDatabase(path);
    ADD_FAILURE() << "a row is lost";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), kErrCannotRepair);
    EXPECT_EQ(error.Source(), u"DAO.DbEngine");
    EXPECT_NE(error.Description().find(u"straciłby część danych ("), std::u16string::npos);
  }
  EXPECT_EQ(Contents(), before);
  ExpectNothingLeft();
}

// The work at the pulse of that number: 1 before the copy is made, 2 before it is looked at, 3
// before it takes its place.
TEST_F(RepairByEngine, LetsNobodyWriteFromTheCopyToTheRename) {
  MakeFile();
  for (const int pulse : {2, 3}) {
    bool wasHeld = false;
    AtPulse(pulse, [&] { wasHeld = IsHeld(); });
    EXPECT_EQ(Repair(), 0) << pulse;
    EXPECT_TRUE(wasHeld) << pulse;
    ExpectNothingLeft();
  }
}

// Each call may meet a database that is just being closed.
TEST_F(RepairByEngine, WaitsForWhatPasses) {
  MakeFile();
  for (int n = 1;; ++n) {
    const int start = server.Calls();
    server.FailAt(n, kErrOpenedByUser);
    EXPECT_EQ(Repair(), 0) << n;
    const bool isReached = server.Calls() - start >= n;
    server.FailAt(0, 0);
    ExpectNothingLeft();
    if (!isReached) break;
  }
}

TEST_F(RepairByEngine, KeepsTheDamagedFileWhenSomethingMayBeLost) {
  MakeFile();
  const std::string before = Contents();
  const struct {
    const char16_t* statement;  // what becomes of the copy
    bool opensBefore;
    const char* told;  // null: refused
  } rows[] = {
      {u"DELETE FROM T", true, "tabela T: wierszy było 1, jest 0"},
      {u"SELECT A INTO U FROM T", false, "tego, czego aparat bazy danych nie odczytał"},
      {u"DROP TABLE T", true, nullptr},
      {u"DROP TABLE T", false, nullptr},
  };
  for (const auto& row : rows) {
    if (!row.opensBefore) server.FailAt(2, kErrCannotOpenDatabase);
    AtPulse(2, [&] {
      ChangeCopy([&](dao::Database& copy) { copy.Execute(row.statement, dao::dbFailOnError); });
    });
    if (row.told == nullptr) {
      EXPECT_EQ(Repair(), kErrCannotRepair);
      EXPECT_EQ(Contents(), before);
    } else {
      const dao::RepairOutcome outcome = engine->RepairDatabase(path);
      EXPECT_TRUE(outcome.wasDamaged);
      ASSERT_EQ(outcome.losses.size(), 1u);
      EXPECT_EQ(Utf8FromUtf16(outcome.losses[0]), row.told);
      EXPECT_EQ(outcome.keptFile, path + u".uszkodzona");
      EXPECT_EQ(folder.Read(u"Baza.mdb.uszkodzona"), before);
      system.files->Delete(outcome.keptFile);
    }
    ExpectNothingLeft();
    folder.Write(u"Baza.mdb", before);
  }
}

TEST_F(RepairByEngine, GivesThePasswordBackThatAnEngineForgets) {
  MakeFile(u"tajne");
  held = u"innej bazy";
  password = u"tajne";
  AtPulse(2, [&] { ChangeCopy([&](dao::Database& copy) { copy.NewPassword(u"tajne", u""); }); });
  EXPECT_EQ(Repair(), 0);
  EXPECT_EQ(asked, 1) << "after the one that is held";
  const auto workspace = jetEngine->CreateWorkspace(u"", u"Admin", u"");
  EXPECT_EQ(ErrorOf([&] { workspace->OpenDatabase(path, true, false); }), kErrInvalidPassword);
  EXPECT_EQ(workspace->OpenDatabase(path, true, false, u";pwd=tajne;")->Version(), u"4.0");
  ExpectNothingLeft();
}

// A list of losses of long ago, an empty one, is in many a file.
TEST_F(RepairByEngine, TakesOnlyNewLossesForSuch) {
  MakeFile();
  const auto losses = [](dao::Database& copy) {
    copy.Execute(u"CREATE TABLE MSysCompactErrors (ErrorDescription MEMO)");
    copy.Execute(u"INSERT INTO MSysCompactErrors VALUES ('Dawna strata')");
  };
  ChangeFile(path, losses);
  EXPECT_EQ(Repair(), 0);
  AtPulse(2, [&] {
    ChangeCopy(
        [](dao::Database& copy) { copy.Execute(u"INSERT INTO MSysCompactErrors VALUES ('x')"); });
  });
  EXPECT_EQ(Repair(), kErrCannotRepair);
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, RefusesAFileThatIsReadOnly) {
  MakeFile();
  using std::filesystem::perms;
  std::filesystem::permissions(path, perms::owner_read);
  EXPECT_EQ(Repair(), kErrCannotOpenFile);
  std::filesystem::permissions(path, perms::owner_read | perms::owner_write);
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, RaisesTheErrorsOfOpening) {
  EXPECT_EQ(Repair(), kErrCouldNotFindFile);
  MakeFile();
  const std::string before = Contents();
  {
    const auto open = system.files->Open(path, OpenMode::ReadWrite, Sharing::None);
    EXPECT_EQ(Repair(), kErrFileInUse);
  }
  folder.Write(u"Baza.mdb", "To nie jest baza.");
  EXPECT_EQ(Repair(), kErrUnrecognizedFormat);
  folder.Write(u"Baza.mdb", before);
  onPulse = [] { throw OwnError(kErrUserInterrupt); };
  EXPECT_EQ(Repair(), kErrUserInterrupt);
  EXPECT_EQ(Contents(), before);
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, LeavesTheOldFileOrTheNewOneWhateverFails) {
  MakeFile();
  const std::string before = Contents();
  int failures = 0;
  for (int n = 1;; ++n) {
    const int start = server.Calls();
    server.isTerse = n % 2 == 0;
    server.FailAt(n, kErrDiskIo);
    const std::int32_t number = Repair();
    const bool isReached = server.Calls() - start >= n;
    server.FailAt(0, 0);
    ExpectNothingLeft();
    EXPECT_TRUE(IsSound());
    if (number != 0) {
      ++failures;
      EXPECT_EQ(number, kErrDiskIo) << n;
      EXPECT_EQ(Contents(), before) << n;
    }
    folder.Write(u"Baza.mdb", before);
    if (!isReached) break;
  }
  EXPECT_GT(failures, 10);
}

}  // namespace
}  // namespace zimbrat::tests

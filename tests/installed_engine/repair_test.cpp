// Repair by an installed engine: aside, and in place only when it is good.
#include <algorithm>

#include "engine_bench.h"
#include "jet/check/check.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

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
    EXPECT_NE(error.Description().find(u"straciłby część danych; "), std::u16string::npos);
  }
  EXPECT_EQ(Contents(), before);
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, LeavesAFileThatChangedMeanwhile) {
  MakeFile();
  std::string other;
  int pulses = 0;
  onPulse = [&] {
    if (++pulses != 4) return;  // the copy is verified
    other = Contents() + std::string(4096, '\0');
    folder.Write(u"Baza.mdb", other);
  };
  EXPECT_EQ(Repair(), kErrCannotRepair);
  EXPECT_EQ(Contents(), other);
  ExpectNothingLeft();
}

TEST_F(RepairByEngine, RaisesTheErrorsOfOpening) {
  EXPECT_EQ(Repair(), kErrCouldNotFindFile);
  MakeFile();
  const std::string before = Contents();
  {
    const auto held = system.files->Open(path, OpenMode::ReadWrite, Sharing::None);
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

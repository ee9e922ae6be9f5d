// The catalogue in memory beside the one in the file.
#include <gtest/gtest.h>

#include "jet/catalog/database_file.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {

using tests::ErrorOf;

namespace {

constexpr std::u16string_view kPath = u"baza.mdb";

class CatalogInMemory : public ::testing::Test {
 protected:
  void SetUp() override {
    CreateDatabaseFile(files_, clock_, kPath, false, {}, {})->Pages().Flush();
  }
  std::unique_ptr<DatabaseFile> OpenFile() { return OpenDatabaseFile(files_, clock_, kPath, false, {}, {}); }
  std::shared_ptr<dao::Database> Open() { return workspace_->OpenDatabase(kPath, true, false, u""); }

  tests::MemoryFiles files_;
  tests::FakeClock clock_;
  std::shared_ptr<dao::Workspace> workspace_ = MakeEngine(files_, clock_, {})->CreateWorkspace(u"", u"Admin", u"");
};

}  // namespace

TEST_F(CatalogInMemory, AReadingThatWasBrokenOffIsMadeAgain) {
  const auto file = OpenFile();
  Pager& pager = file->Pages();
  const std::size_t objects = file->GetCatalog().Objects().size();
  bool isPulsed = false;
  pager.pulse = [&] { isPulsed = true; };
  const auto useUntilPulsed = [&](int accesses) {
    for (isPulsed = false; !isPulsed && accesses > 0; --accesses) pager.Get(1);
    return accesses;
  };
  useUntilPulsed(100'000);
  const int betweenPulses = 100'000 - useUntilPulsed(100'000);
  useUntilPulsed(betweenPulses - 3);
  { const Atomic undone(pager); }
  pager.pulse = [] { throw platform::RunTimeError(platform::kErrDiskIo, u"", u"Dysk nie odpowiada"); };
  EXPECT_EQ(ErrorOf([&] { file->GetCatalog().Objects(); }), platform::kErrDiskIo);
  pager.pulse = nullptr;
  EXPECT_EQ(file->GetCatalog().Objects().size(), objects);
}

TEST_F(CatalogInMemory, ADefinitionOnPageZeroIsDamage) {
  const auto file = OpenFile();
  EXPECT_EQ(ErrorOf([&] { file->GetCatalog().Open(0); }), platform::kErrCannotOpenDatabase);
}

TEST_F(CatalogInMemory, ARelationWithoutAnObjectIsGoneWhenDeleted) {
  {
    const auto database = Open();
    database->Execute(u"CREATE TABLE Działy (Nr LONG CONSTRAINT Klucz PRIMARY KEY)", dao::dbFailOnError);
    database->Execute(u"CREATE TABLE Osoby (Dział LONG CONSTRAINT Praca REFERENCES Działy (Nr))", dao::dbFailOnError);
    database->Close();
  }
  {
    const auto file = OpenFile();
    Atomic change(file->Pages());
    file->GetCatalog().Remove(file->GetCatalog().FindRelationship(u"Praca")->id);
    change.Commit();
    file->Pages().Flush();
  }
  const auto database = Open();
  const auto relation = database->Relations()->Item(u"Praca");
  EXPECT_EQ(relation->Table(), u"Działy");
  database->Relations()->Delete(u"Praca");
  EXPECT_EQ(ErrorOf([&] { relation->Table(); }), platform::kErrObjectInvalid);
}

}  // namespace zimbrat::jet

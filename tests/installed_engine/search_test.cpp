// Which engine is taken, and what is told of those that cannot work.
#include "engine_bench.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "tests/wizard/registry_change.h"

namespace zimbrat::tests {
namespace {

using InstalledEngine = EngineBench;

TEST_F(InstalledEngine, IsNoneWhereNothingIsRegistered) {
  EXPECT_EQ(Find(), nullptr);
}

TEST_F(InstalledEngine, IsTheFirstByPreference) {
  const DaoServer newest(jetEngine, L"DAO.DBEngine.160");
  EXPECT_EQ(Find()->Name(), u"DAO.DBEngine.160");
  const DaoServer ace(jetEngine);
  EXPECT_EQ(Find()->Name(), u"DAO.DBEngine.120");
  EXPECT_EQ(Find()->Version(), u"16.0");
  // DAO 3.5 cannot hold the format, DAO 3.6 does not exist for 64 bits.
  const DaoServer jet35(jetEngine, L"DAO.DBEngine.35");
  const DaoServer jet36(jetEngine, L"DAO.DBEngine.36");
  EXPECT_EQ(Find()->Name(), u"DAO.DBEngine.120");
  EXPECT_EQ(newest.Objects() + ace.Objects(), 0);
}

TEST_F(InstalledEngine, LeavesOutThoseThatCannotWork) {
  // Its version does not read, no session can be made, it does not end.
  DaoServer half(jetEngine, L"DAO.DBEngine.140");
  const DaoServer whole(jetEngine, L"DAO.DBEngine.150");
  // Its library is not there.
  const RegistryChange broken(L"SOFTWARE\\Classes\\DAO.DBEngine.120\\CLSID", L"",
                              L"{CD7791B9-43FD-42C5-AE42-8DD2811F0419}");
  for (const int call : {1, 2, 3}) {
    unusable.clear();
    half.FailAt(call, 3633);
    EXPECT_EQ(Find()->Name(), u"DAO.DBEngine.150") << call;
    ASSERT_EQ(unusable.size(), 2u);
    EXPECT_TRUE(unusable[0].starts_with(u"DAO.DBEngine.120: 429 0x8004"))
        << platform::Utf8FromUtf16(unusable[0]);
    EXPECT_TRUE(unusable[1].starts_with(u"DAO.DBEngine.140: 3633 "));
    EXPECT_EQ(half.Objects(), 0) << call;
  }
  EXPECT_EQ(Find()->Name(), u"DAO.DBEngine.140");
}

TEST_F(InstalledEngine, TellsErrorsInEachWay) {
  DaoServer server(jetEngine);
  const auto engine = Find();
  for (const bool isTerse : {false, true}) {
    server.isTerse = isTerse;
    try {
      engine->CreateWorkspace(u"", u"Admin", u"")->OpenDatabase(path, true, false);
      ADD_FAILURE() << "there is no file";
    } catch (const platform::RunTimeError& error) {
      EXPECT_EQ(error.Number(), platform::kErrCouldNotFindFile);
      EXPECT_EQ(error.Source(), u"DAO.Workspace");
      EXPECT_NE(error.Description().find(u"Baza.mdb"), std::u16string::npos) << "its own text";
    }
  }
  EXPECT_EQ(server.Objects(), 1) << "the engine itself";
}

TEST_F(InstalledEngine, MakesFilesOfJet4WithEachEngine) {
  const DaoServer server(jetEngine);
  const auto workspace = Find()->CreateWorkspace(u"", u"Admin", u"");
  for (const std::int32_t options : {0, dao::dbEncrypt, dao::dbVersion40 | dao::dbEncrypt}) {
    const auto database = workspace->CreateDatabase(path, dao::dbLangGeneral, options);
    EXPECT_EQ(database->Version(), u"4.0") << options;
    database->Close();
    EXPECT_FALSE(IsHeld());
    system.files->Delete(path);
  }
}

TEST_F(InstalledEngine, ShowsAtOnceWhatAStatementDefines) {
  const DaoServer server(jetEngine);
  const auto workspace = Find()->CreateWorkspace(u"", u"Admin", u"");
  const auto database = workspace->CreateDatabase(path, dao::dbLangGeneral, 0);
  const auto tables = database->TableDefs();
  const int before = tables->Count();
  int made = 0;
  for (const char16_t* statement : {u"CREATE TABLE T1 (A LONG)", u" create\r\ntable T2 (A LONG)",
                                    u"SELECT A INTO T3 FROM T1"}) {
    database->Execute(statement, made == 1 ? dao::dbFailOnError : 0);
    EXPECT_EQ(tables->Count(), before + ++made);
    EXPECT_EQ(tables->Item(u"T" + platform::DecimalText(made))->Fields()->Count(), 1);
  }
}

TEST_F(InstalledEngine, TriesAgainWhileADatabaseIsBeingClosed) {
  MakeFile();
  DaoServer server(jetEngine);
  const auto workspace = Find()->CreateWorkspace(u"", u"Admin", u"");
  server.FailAt(1, platform::kErrBeingClosedByUser);
  EXPECT_EQ(workspace->OpenDatabase(path, true, false)->Version(), u"4.0");
  server.FailAt(1, platform::kErrFileInUse);
  EXPECT_EQ(ErrorOf([&] { workspace->OpenDatabase(path, true, false); }), platform::kErrFileInUse);
}

}  // namespace
}  // namespace zimbrat::tests

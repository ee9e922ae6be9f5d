// Which engine is taken, and what a verification makes of faults in a file of an installed one.
#include <gtest/gtest.h>

#include "engines/engine_choice.h"
#include "jet/file/format.h"
#include "platform/dao_errors.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::engines {
namespace {

constexpr const char16_t* kFile = u"Firma.mdb";
constexpr const char16_t* kLog = u"Sprawdzenia.log";

// Of an engine of the system only its being there counts.
class OtherEngine : public dao::Engine {
 public:
  std::u16string Name() override { return u"DAO.DBEngine.120"; }
  std::u16string Version() override { return u"16.0"; }
  std::shared_ptr<dao::Workspace> CreateWorkspace(std::u16string_view, std::u16string_view,
                                                  std::u16string_view) override {
    return nullptr;
  }
  dao::RepairOutcome RepairDatabase(std::u16string_view) override { return {}; }
};

class Choice : public testing::Test {
 protected:
  EngineChoice Make(Wish wish) {
    return EngineChoice({.files = files, .clock = clock, .wish = wish, .log = kLog},
                        [this](const platform::InstalledEngineNeeds& needs,
                               const platform::UnusableEngine& tell) {
                          ++searches;
                          needs.pulse();
                          EXPECT_FALSE(needs.password) << "nobody knows it";
                          for (const char16_t* why : unusable) tell(why);
                          return isThere ? std::make_shared<OtherEngine>() : nullptr;
                        });
  }
  // A database of Access with one byte changed.
  void Plant(jet::PageNumber page, std::size_t offset, std::uint8_t byte) {
    files.BytesOf(kFile) = tests::BytesOfFile(tests::AccessFile("comp-index.mdb"));
    files.BytesOf(kFile)[page * jet::kPageSize + offset] = std::byte{byte};
  }
  std::string Log() {
    const tests::FileBytes& bytes = files.BytesOf(kLog);
    return platform::Utf8FromUtf16(platform::Utf16FromAnsi1250(
        {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  }

  tests::MemoryFiles files;
  tests::FakeClock clock;
  bool isThere = false;
  std::vector<const char16_t*> unusable;
  int searches = 0;
};

TEST_F(Choice, TellsWhichEnginesCannotWork) {
  unusable = {u"DAO.DBEngine.120: 429 0x8007007E", u"DAO.DBEngine.160: 3633 Brak biblioteki"};
  EXPECT_EQ(Make(Wish::Found).Engine()->Name(), u"wbudowany");
  EXPECT_TRUE(Log().ends_with("nie działają: DAO.DBEngine.120: 429 0x8007007E; DAO.DBEngine.160: 3633 Brak "
                              "biblioteki\r\n"))
      << Log();
  try {
    Make(Wish::Installed).Engine();
    ADD_FAILURE() << "an engine that cannot work";
  } catch (const platform::RunTimeError& error) {
    EXPECT_EQ(error.Source(), dao::kSourceEngine) << "its text about 429 speaks of the engine alone";
    EXPECT_NE(error.Description().find(u"0x8007007E; DAO.DBEngine.160: 3633"), std::u16string::npos);
  }
}

TEST_F(Choice, FollowsTheWish) {
  const struct {
    Wish wish;
    bool isThere;
    const char16_t* name;  // null: error 429
    int searches;
  } rows[] = {
      {Wish::Found, true, u"DAO.DBEngine.120", 1},     {Wish::Found, false, u"wbudowany", 1},
      {Wish::Installed, true, u"DAO.DBEngine.120", 1}, {Wish::Installed, false, nullptr, 1},
      {Wish::Embedded, true, u"wbudowany", 0},
  };
  for (const auto& row : rows) {
    isThere = row.isThere;
    searches = 0;
    EngineChoice choice = Make(row.wish);
    EXPECT_EQ(searches, 0) << "at the first use";
    if (row.name == nullptr) {
      EXPECT_EQ(tests::ErrorOf([&] { choice.Engine(); }), 429);
      continue;
    }
    EXPECT_EQ(choice.Engine()->Name(), row.name);
    EXPECT_EQ(choice.Engine(), choice.Engine());
    EXPECT_EQ(searches, row.searches);
  }
}

TEST_F(Choice, KnowsItsWords) {
  EXPECT_EQ(FindWish(u""), Wish::Found);
  EXPECT_EQ(FindWish(u"wbudowany"), Wish::Embedded);
  EXPECT_EQ(FindWish(u"zainstalowany"), Wish::Installed);
  EXPECT_EQ(FindWish(u"Wbudowany"), std::nullopt);
}

// Pages of comp-index.mdb: definition 15, rows 17, index leaf 32.
TEST_F(Choice, LetsPassWhatAnInstalledEngineMayWriteOtherwise) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  const struct {
    const char* name;
    jet::PageNumber page;
    std::size_t offset;
    std::uint8_t byte;
    bool isLoss;
    const char* text;
  } rows[] = {
      {"count of rows", 15, 16, 1, false, "definicja podaje 513 wierszy"},
      {"free bytes of a leaf", 32, 2, 0x2A, false, "liczba wolnych bajtów"},
      {"order of keys", 32, 489, 0xEC, false, "nie jest większy od poprzedniego"},
      {"owner of a page", 17, 4, 0x15, true, "innego właściciela"},
      {"columns of a row", 17, 0xFE7, 9, true, "podaje 9 kolumn"},
      {"type of a column", 15, 75, 0x0E, true, "nieznanego typu 14"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Plant(row.page, row.offset, row.byte);
    EngineChoice embedded = Make(Wish::Embedded), installed = Make(Wish::Installed);
    isThere = true;
    embedded.Engine();
    installed.Engine();
    files.Delete(kLog);
    EXPECT_EQ(tests::ErrorOf([&] { embedded.Verify(kFile, {}); }), 3049);
    EXPECT_FALSE(files.State(kLog));
    EXPECT_EQ(tests::ErrorOf([&] { installed.Verify(kFile, {}); }), row.isLoss ? 3049 : 0);
    EXPECT_EQ(files.State(kLog).has_value(), !row.isLoss);
    if (row.isLoss) continue;
    EXPECT_TRUE(Log().starts_with("05.02.2003 06:00 Firma.mdb: usterki, ")) << Log();
    EXPECT_NE(Log().find(row.text), std::string::npos) << Log();
  }
}

TEST_F(Choice, KeepsTheLogSmall) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  isThere = true;
  EngineChoice choice = Make(Wish::Found);
  choice.Engine();
  Plant(15, 16, 1);
  choice.Verify(kFile, {});
  const std::string once = Log();
  choice.Verify(kFile, {});
  EXPECT_EQ(Log(), once + once);
  choice.Verify(kFile, kFile);
  EXPECT_EQ(Log(), once + once) << "the original had it";
  files.BytesOf(kLog).resize(100'000);
  choice.Verify(kFile, {});
  EXPECT_EQ(Log(), once);
  files.room = 0;
  files.BytesOf(kLog).clear();
  EXPECT_NO_THROW(choice.Verify(kFile, {})) << "a full disk stops no run";
}

}  // namespace
}  // namespace zimbrat::engines

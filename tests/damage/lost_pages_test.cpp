// One page of a sound database is lost, zeroed or overwritten with noise: what lay on the others is saved, and each
// table that lacks something is named.
//
//   ZIMBRAT_LOST_PAGES  how many of each database, chosen by chance; all when it has fewer
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <numeric>

#include "jet/check/check.h"
#include "jet/repair.h"
#include "judge.h"
#include "platform/error_numbers.h"
#include "platform/text.h"
#include "round.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

class LostPages : public testing::Test {
 protected:
  enum class As { Zeros, Noise };

  void LoseEach(const Subject& subject, std::size_t most);
  void Lose(const Subject& subject, PageNumber page, As as);
  static bool HasNothingBut(const Subject& subject, PageNumber page);
  void Fill(std::span<std::byte> page, As as);

  Round round_;
};

void LostPages::Fill(std::span<std::byte> page, As as) {
  for (std::byte& byte : page) byte = as == As::Noise ? static_cast<std::byte>(round_.Below(256)) : std::byte{0};
}

// A database without tables of its own whose catalogue is lost.
bool LostPages::HasNothingBut(const Subject& subject, PageNumber page) {
  const auto isOwn = [](const auto& entry) { return !entry.second.IsOfTheEngine(); };
  return std::ranges::none_of(subject.anatomy.tables, isOwn) && subject.anatomy.pages[page].kind == PageKind::Data &&
         subject.anatomy.pages[page].table == kObjectsPage;
}

void LostPages::Lose(const Subject& subject, PageNumber page, As as) {
  MemoryFiles files;
  FakeClock clock;
  FileBytes damaged = subject.bytes;
  Fill(PageOf(damaged, page), as);
  if (damaged == subject.bytes) return;
  files.BytesOf(kPath) = damaged;
  ToggleEncoding(damaged, subject.key);
  RepairReport report;
  const std::int32_t error = ErrorOf([&] { report = RepairDatabaseFile(files, clock, kPath); });
  Count("lost-pages", 1);
  if (error == platform::kErrCannotRepair && HasNothingBut(subject, page)) return;
  ASSERT_EQ(error, 0);
  for (const Fault& fault : CheckFile(files, kPath))
    ADD_FAILURE() << platform::Utf8FromUtf16(fault.place + u": " + fault.text);
  const Anatomy after = DissectDatabase(*OpenDatabaseFile(files, clock, kPath, true, u"password", {}));
  EXPECT_EQ(JudgeRepair(subject, {{page}, true}, damaged, report, after), "");
}

void LostPages::LoseEach(const Subject& subject, std::size_t most) {
  std::vector<PageNumber> pages(subject.PageCount() - 1);
  std::iota(pages.begin(), pages.end(), PageNumber{1});
  std::shuffle(pages.begin(), pages.end(), round_.random);
  pages.resize(std::min(pages.size(), most));
  for (const PageNumber page : pages) {
    for (const As as : {As::Zeros, As::Noise}) {
      const PageAnatomy& what = subject.anatomy.pages[page];
      SCOPED_TRACE(subject.name + ", page " + std::to_string(page) + " of table " + std::to_string(what.table) +
                   (as == As::Noise ? ", noise" : ", zeros"));
      EXPECT_NO_THROW(Lose(subject, page, as));
    }
  }
}

}  // namespace

TEST_F(LostPages, OfTheHeaderLeaveNoDatabase) {
  MemoryFiles files;
  FakeClock clock;
  FileBytes damaged = BytesOfNewDatabase(SmallRecipes(round_.seed)[1]);
  Fill(PageOf(damaged, 0), As::Zeros);
  files.BytesOf(kPath) = damaged;
  EXPECT_EQ(ErrorOf([&] { RepairDatabaseFile(files, clock, kPath); }), platform::kErrUnrecognizedFormat);
  EXPECT_TRUE(files.BytesOf(kPath) == damaged);
}

TEST_F(LostPages, CostWhatLayOnThem) {
  const auto most = static_cast<std::size_t>(NumberFrom("ZIMBRAT_LOST_PAGES", 6));
  for (const std::string& name : FixtureNames()) LoseEach(MakeFixture(name), most);
  for (const Recipe& recipe : SmallRecipes(round_.seed)) LoseEach(MakeDatabase(recipe), most);
  LoseEach(MakeDatabase(LargeRecipe(round_.seed)), most / 10 + 1);
}

}  // namespace zimbrat::tests

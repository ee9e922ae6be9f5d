// Databases damaged at random: used, checked and repaired, each ends well or with an error that says why. What a repair
// returns is sound, holds every row that lay on untouched pages, and none that was not there.
//
//   ZIMBRAT_DAMAGES  how many files
#include <gtest/gtest.h>

#include <ctime>
#include <map>

#include "damages.h"
#include "jet/check/check.h"
#include "jet/repair.h"
#include "judge.h"
#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "usage.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

// Of the processor, for one file; nothing here takes a tenth of it.
constexpr double kMostSeconds = 2;
// A repair writes no more than the rows that it found, in pages of their own for each table.
constexpr std::size_t kMostGrowth = 16;

class DamagedFiles : public testing::Test {
 protected:
  void SetUp() override {
    for (const std::string& name : FixtureNames()) Add(MakeFixture(name));
    for (const Recipe& recipe : SmallRecipes(round_.seed)) Add(MakeDatabase(recipe));
  }
  void Add(Subject subject);
  const Subject& AnySubject();
  void DamageOne();
  Touched PagesThatDiffer(const Subject& subject, const FileBytes& plain);
  void Put(const Subject& subject, FileBytes plain);
  void JudgeRefusal(const Subject& subject, const Touched& touched, const RaisedError& error);
  void Repair(const Subject& subject, const FileBytes& plain);

  Round round_;
  std::vector<Subject> subjects_;
  std::map<std::string, FileBytes> sound_;  // decoded
  MemoryFiles files_;
  FakeClock clock_;
};

void DamagedFiles::Add(Subject subject) {
  ToggleEncoding(sound_[subject.name] = subject.bytes, subject.key);
  subjects_.push_back(std::move(subject));
}

// Mostly a small one, for the sake of many.
const Subject& DamagedFiles::AnySubject() {
  constexpr std::size_t kFewPages = 64;
  while (true) {
    const Subject& subject = subjects_[round_.Below(subjects_.size())];
    if (subject.PageCount() <= kFewPages || round_.Below(8) == 0) return subject;
  }
}

Touched DamagedFiles::PagesThatDiffer(const Subject& subject, const FileBytes& plain) {
  const FileBytes& sound = sound_[subject.name];
  Touched touched;
  for (PageNumber page = 0; page < subject.PageCount(); ++page) {
    const bool isThere = (page + 1) * kPageSize <= plain.size();
    if (!isThere || !std::ranges::equal(PageOf(plain, page), PageOf(sound, page))) touched.pages.insert(page);
  }
  return touched;
}

void DamagedFiles::Put(const Subject& subject, FileBytes plain) {
  ToggleEncoding(plain, subject.key);
  files_ = MemoryFiles();
  files_.room = kMostGrowth * subject.bytes.size();
  files_.BytesOf(kPath) = std::move(plain);
}

// Without its first page, or without its catalogue and all its tables, a file is no database any more.
void DamagedFiles::JudgeRefusal(const Subject& subject, const Touched& touched, const RaisedError& error) {
  const std::string text = platform::Utf8FromUtf16(error.description);
  EXPECT_FALSE(BlamesNewFile(error.description)) << text;
  Count("refused-files", 1);
  if (touched.pages.contains(0)) return;
  EXPECT_EQ(error.number, platform::kErrCannotRepair) << text;
  EXPECT_TRUE(platform::Contains(error.description, u"nie ma w niej nic czytelnego")) << text;
  EXPECT_TRUE(std::ranges::any_of(touched.pages, [&](PageNumber page) {
    const PageAnatomy& what = subject.anatomy.pages[page];
    return what.kind == PageKind::Data && what.table == kObjectsPage;
  })) << text;
}

// The repair checks first.
void DamagedFiles::Repair(const Subject& subject, const FileBytes& plain) {
  const Touched touched = PagesThatDiffer(subject, plain);
  const FileBytes damaged = files_.BytesOf(kPath);
  RepairReport report;
  const RaisedError error = RaisedBy([&] { report = RepairDatabaseFile(files_, clock_, kPath); });
  if (error.number != 0) {
    EXPECT_TRUE(files_.BytesOf(kPath) == damaged) << "the file was changed";
    return JudgeRefusal(subject, touched, error);
  }
  for (const Fault& fault : CheckFile(files_, kPath))
    ADD_FAILURE() << platform::Utf8FromUtf16(fault.place + u": " + fault.text);
  if (touched.pages.contains(0)) return;  // the password may be another one
  const Anatomy after = DissectDatabase(*OpenDatabaseFile(files_, clock_, kPath, true, u"password", {}));
  EXPECT_EQ(JudgeRepair(subject, touched, plain, report, after), "");
}

void DamagedFiles::DamageOne() {
  const Subject& subject = AnySubject();
  const FileBytes& sound = sound_[subject.name];
  FileBytes plain = sound;
  std::string what = subject.name + ":" + PlantDamage(subject, plain, round_);
  if (round_.Below(4) == 0 && plain.size() == sound.size()) what += "," + PlantDamage(subject, plain, round_);
  if (plain == sound) return;
  SCOPED_TRACE(what);
  const std::clock_t start = std::clock();
  Put(subject, plain);
  UseDatabase(files_, clock_);
  Put(subject, plain);
  EXPECT_NO_THROW(Repair(subject, plain));
  EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, kMostSeconds);
  Count("damaged-files", 1);
}

}  // namespace

TEST_F(DamagedFiles, EndWellOrWithAClearError) {
  const auto files = static_cast<std::size_t>(NumberFrom("ZIMBRAT_DAMAGES", 200));
  for (std::size_t i = 0; i < files; ++i) DamageOne();
}

}  // namespace zimbrat::tests

#include "tests/adversity/stage.h"

#include <filesystem>

#include "tests/support/error_of.h"

namespace zimbrat::tests {

namespace fs = std::filesystem;

Stage::Stage(const Task& task, Ground ground, engines::Wish wish)
    : task_(task),
      ground_(ground),
      system_(platform::MakeSystem(0, nullptr)),
      real_(ground == Ground::Memory ? static_cast<platform::Files&>(volume) : *system_.files),
      files(real_),
      bench(&files, wish) {
  for (const std::u16string_view folder : kFolders) real_.CreateFolder(PathOf(folder));
  for (const auto& [name, content] : SeedFiles()) Write(name, content);
  Write(kTarget, task.OldContent());
  bench.environment.temporaryFolder = PathOf(u"temp");
  bench.environment.programFolder = PathOf(u"struktury");
}

bool Stage::Run() {
  bench.host.messages.clear();
  bench.host.answer = platform::kAnswerYes;
  bench.clock.seed = 1;
  bench.state.context = {};
  app::RunResult result;
  isThrough_ = false;
  onRun(true);
  try {
    result = task_.run(bench);
    isThrough_ = true;
  } catch (const std::exception&) {
    // Nothing is made of it while memory may be missing.
  }
  onRun(false);
  text = isThrough_ ? Utf8(result.text) : "an exception";
  return isThrough_ && result.done;
}

std::string Stage::Read(std::u16string_view name) {
  return ground_ == Ground::Memory ? volume.Get(PathOf(name)) : bench.folder.Read(name);
}

void Stage::Write(std::u16string_view name, std::string_view content) {
  if (ground_ == Ground::Memory) {
    volume.Put(PathOf(name), content);
  } else {
    bench.folder.Write(name, content);
  }
}

std::vector<std::u16string> Stage::Names(std::u16string_view folder) {
  if (ground_ == Ground::Memory) return volume.Names(PathOf(folder));
  std::vector<std::u16string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(PathOf(folder)))) {
    names.push_back(entry.path().filename().u16string());
  }
  return names;
}

std::string Stage::Leftovers() {
  std::string left;
  for (const std::u16string_view folder : {u"temp", u"baza"}) {
    for (const std::u16string& name : Names(folder)) {
      if (name == u"Firma.mdb") continue;
      left += Utf8(folder) + "/" + Utf8(name) + " ";
    }
  }
  return left;
}

bool Stage::IsOld() { return Read(kTarget) == task_.OldContent(); }

bool Stage::Says(const std::vector<Answer>& answers, std::string& told) {
  bool says = true;
  const std::int32_t error = ErrorOf([&] {
    dao::Database& database = bench.Open(kTarget);
    for (const Answer& answer : answers) {
      const std::string rows = Rows(database, answer.query);
      told += rows + "; ";
      says = says && rows == answer.rows;
    }
  });
  bench.Close();
  if (error != 0) told += "error " + std::to_string(error);
  return says && error == 0;
}

bool Stage::SaysEffect(std::string& told) {
  return Says(task_.effect, told) || (!task_.partOfEffect.empty() && Says(task_.partOfEffect, told));
}

void Stage::CheckTarget(const std::string& where) {
  EXPECT_EQ(Read(kTemplate), SeedFile(kTemplate)) << where;
  if (IsOld()) return;
  tests::FakeClock clock;
  engines::EngineChoice judge({.files = Real(), .clock = clock, .wish = engines::Wish::Embedded});
  EXPECT_NO_THROW(judge.Verify(PathOf(kTarget), {})) << where;
  std::string told;
  if (SaysEffect(told)) return;
  EXPECT_TRUE(task_.mayLeaveAnother) << where << ": neither old nor new: " << told;
  if (!task_.kept.empty()) {
    told.clear();
    EXPECT_TRUE(Says(task_.kept, told)) << where << ": " << told;
  }
}

void Stage::CheckOutcome(bool done, const std::string& where) {
  EXPECT_LT(bench.host.messages.size(), 5u) << where;
  EXPECT_EQ(bench.host.busyDepth, 0) << where;
  EXPECT_FALSE(text.empty()) << where;
  CheckTarget(where);
  std::string told;
  if (done) {
    EXPECT_TRUE(SaysEffect(told)) << where << ": success told of: " << told;
  } else if (!isThrough_ || text.find("[cmdDalej_Click]") != std::string::npos) {
    return;  // the entry program or the wizard's page tells the error, whatever was done before it
  } else if (!task_.mayLeaveAnother) {
    EXPECT_TRUE(IsOld()) << where << ": failure told of a new file: " << text;
  } else if (!IsOld() && !task_.kept.empty()) {
    EXPECT_FALSE(Says(task_.effect, told)) << where << ": failure told of a new file: " << text;
  }
}

void Stage::CheckCleanRun(const std::string& where) {
  if (task_.isOnce) Write(kTarget, task_.OldContent());
  EXPECT_TRUE(Run()) << where << ": again: " << text;
  CheckOutcome(true, where + " again");
  std::string told;
  EXPECT_TRUE(Says(task_.effect, told)) << where << " again: " << told;
  EXPECT_EQ(Leftovers(), "") << where;
}

std::uint64_t CountCalls(const Task& task, Ground ground, bool changesOnly) {
  Stage stage(task, ground);
  stage.files.plan.changesOnly = changesOnly;
  EXPECT_TRUE(stage.Run()) << stage.text;
  const std::uint64_t calls = stage.files.Calls();
  stage.CheckOutcome(true, "undisturbed");
  EXPECT_EQ(stage.Leftovers(), "");
  return calls;
}

}  // namespace zimbrat::tests

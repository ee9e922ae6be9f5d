// The working copy, in which payroll lies: who may read it, and links planted under its name.
#include <filesystem>

#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

namespace fs = std::filesystem;

std::vector<Task> TasksWithCopy() {
  std::vector<Task> tasks;
  for (const Task& task : AllTasks()) {
    if (task.usesCopy) tasks.push_back(task);
  }
  return tasks;
}

std::u16string NameOfCopy(const Task& task) {
  return NameOfTask(task) == "wzorzec" ? u"temp/Robocza Wzor.mdb" : std::u16string(kCopy);
}

class Copy : public testing::TestWithParam<Task> {};

TEST_P(Copy, IsItsOwnersAlone) {
  Stage stage(GetParam(), Ground::Disk);
  const fs::path copy(stage.PathOf(NameOfCopy(GetParam())));
  std::uint64_t seen = 0;
  stage.files.onCall = [&](const char* call) {
    if (!fs::exists(fs::symlink_status(copy))) return;
    ++seen;
    ASSERT_EQ(fs::status(copy).permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << call;
  };
  EXPECT_TRUE(stage.Run()) << stage.text;
  EXPECT_GT(seen, 50u);
  EXPECT_EQ(stage.Leftovers(), "");
}

TEST_P(Copy, IsNotMadeThroughALink) {
  for (const bool isDangling : {false, true}) {
    for (const char16_t* const suffix : {u"", u".lock"}) {
      Stage stage(GetParam(), Ground::Disk);
      stage.bench.folder.Write(u"obcy/plik", "obca treść");
      const fs::path victim(stage.PathOf(isDangling ? u"obcy/nie ma" : u"obcy/plik"));
      const fs::path copy(stage.PathOf(NameOfCopy(GetParam()) + suffix));
      fs::create_symlink(victim, copy);
      const bool done = stage.Run();
      EXPECT_EQ(stage.bench.folder.Read(u"obcy/plik"), "obca treść");
      EXPECT_EQ(fs::exists(victim), !isDangling);
      stage.CheckOutcome(done, stage.text);
      if (!done) {
        // A lock that is a link is refused, and named.
        EXPECT_NE(stage.text.find(copy.string()), std::string::npos) << stage.text;
        fs::remove(copy);
      }
      stage.CheckCleanRun(NameOfTask(GetParam()));
    }
  }
}

// What a killed run left is its owner's alone; anything else is somebody's.
TEST_P(Copy, ReplacesWhatIsLeftAndRefusesWhatIsNot) {
  Stage stage(GetParam(), Ground::Disk);
  const std::u16string copy = NameOfCopy(GetParam());
  stage.Write(copy, "czyjś plik");
  fs::permissions(fs::path(stage.PathOf(copy)), fs::perms::group_read, fs::perm_options::add);
  EXPECT_FALSE(stage.Run());
  EXPECT_EQ(stage.Read(copy), "czyjś plik");
  fs::permissions(fs::path(stage.PathOf(copy)), fs::perms::owner_read | fs::perms::owner_write);
  stage.Write(kTarget, GetParam().OldContent());
  stage.CheckCleanRun("an old copy");
  stage.Write(copy + u"/plik", "w folderze");
  stage.Write(kTarget, GetParam().OldContent());
  EXPECT_FALSE(stage.Run());
  EXPECT_NE(stage.text.find(Utf8(stage.PathOf(copy))), std::string::npos) << stage.text;
  EXPECT_EQ(stage.bench.folder.Read(copy + u"/plik"), "w folderze");
}

INSTANTIATE_TEST_SUITE_P(Tasks, Copy, testing::ValuesIn(TasksWithCopy()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests

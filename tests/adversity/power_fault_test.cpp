// The power goes at each change of the disk: what was not flushed is forgotten, kept or mixed.
#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

using Case = std::tuple<Task, PowerLoss>;

class PowerLosses : public testing::TestWithParam<Case> {};

TEST_P(PowerLosses, LeaveTheOldFileOrASoundNewOne) {
  const auto& [task, loss] = GetParam();
  const std::uint64_t last = CountCalls(task, Ground::Memory, true);
  std::uint64_t rounds = 0;
  std::vector<std::uint64_t> numbers = LoopNumbers(last, 4, static_cast<std::uint64_t>(loss));
  numbers.push_back(last + 1);  // when all is done
  for (const std::uint64_t n : numbers) {
    Stage stage(task, Ground::Memory);
    stage.files.tracksUnsynced = true;
    stage.files.plan = {.call = n, .forGood = true, .changesOnly = true};
    stage.Run();
    const std::string where =
        std::string(task.name) + " change " + std::to_string(n) + " " + stage.files.FailedCall();
    EXPECT_EQ(stage.files.HasFailed(), n <= last) << where;
    stage.files.plan = {};
    stage.files.tracksUnsynced = false;
    stage.files.LosePower(loss, static_cast<std::uint32_t>(n));
    stage.CheckTarget(where);
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    if (n <= last) ++rounds;
  }
  TellLoop("changes", rounds, last);
}

class FolderEntry : public testing::TestWithParam<Task> {};

// The power might take the new file back, so that success would be a promise too much.
TEST_P(FolderEntry, ThatIsNotDurableIsAFailureThoughTheNewFileStandsThere) {
  Stage stage(GetParam(), Ground::Memory);
  stage.volume.failsAfterReplace = true;
  EXPECT_FALSE(stage.Run());
  EXPECT_NE(stage.text.find("zapis folderu na dysk"), std::string::npos) << stage.text;
  stage.CheckTarget(GetParam().name);
  EXPECT_NE(stage.Read(kTarget), GetParam().OldContent());
  EXPECT_EQ(stage.Leftovers(), "");
  stage.volume.failsAfterReplace = false;
  stage.CheckCleanRun(GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Tasks, FolderEntry, testing::ValuesIn(AllTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

std::string NameOf(const testing::TestParamInfo<Case>& row) {
  constexpr const char* kNames[] = {"Drop", "Keep", "Shuffle"};
  const auto& [task, loss] = row.param;
  return NameOfTask(task) + kNames[static_cast<int>(loss)];
}

INSTANTIATE_TEST_SUITE_P(Tasks, PowerLosses,
                         testing::Combine(testing::ValuesIn(AllTasks()),
                                          testing::Values(PowerLoss::Drop, PowerLoss::Keep,
                                                          PowerLoss::Shuffle)),
                         NameOf);

}  // namespace
}  // namespace zimbrat::tests

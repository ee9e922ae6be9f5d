// Memory runs out at each allocation, once or from then on.
#include "allocations.h"
#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

using Case = std::tuple<Task, bool>;

class MemoryFaults : public testing::TestWithParam<Case> {};

// Runs the task while that allocation fails.
bool RunWithout(Stage& stage, std::uint64_t call, bool forGood) {
  stage.onRun = [&](bool begins) {
    if (begins) {
      Allocations::Begin(call, forGood);
    } else {
      Allocations::End();
    }
  };
  const bool done = stage.Run();
  stage.onRun = [](bool) {};
  return done;
}

std::uint64_t CountAllocations(const Task& task) {
  Stage stage(task, Ground::Memory);
  std::uint64_t count = 0;
  stage.onRun = [&](bool begins) {
    if (begins) Allocations::Begin(0, false);
    count = Allocations::made;
  };
  EXPECT_TRUE(stage.Run()) << stage.text;
  return count;
}

TEST_P(MemoryFaults, LeaveTheOldFileOrASoundNewOne) {
  const auto& [task, forGood] = GetParam();
  CountAllocations(task);  // the first time fills what the standard library keeps
  const std::uint64_t last = CountAllocations(task);
  std::uint64_t rounds = 0;
  for (const std::uint64_t n : LoopNumbers(last, 8, forGood ? 1 : 0)) {
    Stage stage(task, Ground::Memory);
    const bool done = RunWithout(stage, n, forGood);
    const std::string where = std::string(task.name) + " allocation " + std::to_string(n);
    EXPECT_TRUE(Allocations::hasFailed) << where;
    EXPECT_FALSE(done && forGood) << where;
    stage.CheckOutcome(done, where);
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    ++rounds;
  }
  TellLoop("allocations", rounds, last);
}

std::string NameOf(const testing::TestParamInfo<Case>& row) {
  const auto& [task, forGood] = row.param;
  return NameOfTask(task) + (forGood ? "ForGood" : "Once");
}

// Its destructor once ran over what the copy had not made.
TEST(Values, MayFailToBeCopied) {
  const dao::Value values[] = {std::u16string(100, u'x'), dao::Binary(100)};
  for (const dao::Value& value : values) {
    bool hasFailed = false;
    Allocations::Begin(1, false);
    try {
      const dao::Value copy = value;
    } catch (const std::bad_alloc&) {
      hasFailed = true;
    }
    Allocations::End();
    EXPECT_TRUE(hasFailed);
  }
}

INSTANTIATE_TEST_SUITE_P(Tasks, MemoryFaults,
                         testing::Combine(testing::ValuesIn(AllTasks()), testing::Bool()), NameOf);

}  // namespace
}  // namespace zimbrat::tests

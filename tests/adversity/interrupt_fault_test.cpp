// The user wants an end at each pulse that long work gives.
#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

class Interrupts : public testing::TestWithParam<Task> {};

std::uint64_t CountPulses(const Task& task) {
  Stage stage(task, Ground::Memory);
  std::uint64_t pulses = 0;
  stage.bench.host.onPulse = [&] { ++pulses; };
  EXPECT_TRUE(stage.Run()) << stage.text;
  return pulses;
}

TEST_P(Interrupts, LeaveTheOldFileOrASoundNewOne) {
  const Task& task = GetParam();
  const std::uint64_t last = CountPulses(task);
  std::uint64_t rounds = 0;
  for (const std::uint64_t n : LoopNumbers(last, 5, 0)) {
    Stage stage(task, Ground::Memory);
    stage.bench.host.onPulse = [&, pulse = std::uint64_t{0}]() mutable {
      if (++pulse == n) throw platform::OwnError(platform::kErrUserInterrupt);
    };
    const bool done = stage.Run();
    const std::string where = std::string(task.name) + " pulse " + std::to_string(n);
    EXPECT_FALSE(done) << where;
    stage.bench.host.onPulse = {};
    stage.CheckOutcome(done, where);
    EXPECT_EQ(stage.Leftovers(), "") << where;
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    ++rounds;
  }
  EXPECT_GT(last, 0u);
  TellLoop("pulses", rounds, last);
}

INSTANTIATE_TEST_SUITE_P(Tasks, Interrupts, testing::ValuesIn(AllTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests

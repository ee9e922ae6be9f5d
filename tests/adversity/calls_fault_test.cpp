// Every call of the file layer goes wrong, once or from then on.
#include <ostream>

#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

struct Wrong {
  const char* name;
  Fault how;
  std::int32_t error;
  std::uint64_t turn;
};

std::ostream& operator<<(std::ostream& out, const Wrong& wrong) { return out << wrong.name; }

constexpr Wrong kWrongs[] = {
    {"NoSpace", Fault::Error, platform::kErrDiskFull, 0},
    {"NoRight", Fault::Error, platform::kErrPathAccess, 1},
    {"DeviceIo", Fault::Error, platform::kErrDeviceIo, 2},
    {"InUse", Fault::Error, platform::kErrPermissionDenied, 3},
    {"Half", Fault::Half, platform::kErrDeviceIo, 4},
};

using Case = std::tuple<Task, Wrong, bool>;

class CallFaults : public testing::TestWithParam<Case> {};

TEST_P(CallFaults, LeaveTheOldFileOrASoundNewOne) {
  const auto& [task, wrong, forGood] = GetParam();
  const std::uint64_t last = CountCalls(task, Ground::Memory, false);
  std::uint64_t rounds = 0;
  for (const std::uint64_t n : LoopNumbers(last, 3, 2 * wrong.turn + (forGood ? 1 : 0))) {
    Stage stage(task, Ground::Memory);
    stage.files.plan = {.call = n, .how = wrong.how, .error = wrong.error, .forGood = forGood};
    const bool done = stage.Run();
    EXPECT_TRUE(stage.files.HasFailed());
    const std::string where =
        std::string(task.name) + " call " + std::to_string(n) + " " + stage.files.FailedCall();
    stage.files.plan = {};
    stage.CheckOutcome(done, where);
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    ++rounds;
  }
  TellLoop("calls", rounds, last);
}

std::string NameOf(const testing::TestParamInfo<Case>& row) {
  const auto& [task, wrong, forGood] = row.param;
  return NameOfTask(task) + wrong.name + (forGood ? "ForGood" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Tasks, CallFaults,
                         testing::Combine(testing::ValuesIn(AllTasks()),
                                          testing::ValuesIn(kWrongs), testing::Bool()),
                         NameOf);

}  // namespace
}  // namespace zimbrat::tests

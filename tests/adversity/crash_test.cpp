// The process ends at each call, before it or halfway through a write; the next run needs no hand.
#include <sys/wait.h>
#include <unistd.h>

#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

using Case = std::tuple<Task, Fault>;

class Crashes : public testing::TestWithParam<Case> {};

// Whether the child came to the planned call.
bool EndsAtFault(Stage& stage) {
  const pid_t child = ::fork();
  if (child == 0) {
    stage.Run();
    ::_exit(0);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
    ADD_FAILURE() << "the child did not end by itself: " << status;
    return false;
  }
  return WEXITSTATUS(status) == kEndedByFault;
}

TEST_P(Crashes, LeaveTheOldFileOrASoundNewOneAndTheWayFree) {
  const auto& [task, fault] = GetParam();
  const bool isHalfway = fault == Fault::EndHalfway;
  const std::uint64_t last = CountCalls(task, Ground::Disk, isHalfway);
  std::uint64_t rounds = 0;
  for (const std::uint64_t n : LoopNumbers(last, 4, isHalfway ? 1 : 0)) {
    Stage stage(task, Ground::Disk);
    stage.files.plan = {.call = n, .how = fault, .changesOnly = isHalfway};
    const std::string where = std::string(task.name) + " call " + std::to_string(n);
    EXPECT_TRUE(EndsAtFault(stage)) << where;
    stage.files.plan = {};
    stage.CheckTarget(where);
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    ++rounds;
  }
  TellLoop("calls", rounds, last);
}

INSTANTIATE_TEST_SUITE_P(Tasks, Crashes,
                         testing::Combine(testing::ValuesIn(AllTasks()),
                                          testing::Values(Fault::EndProcess, Fault::EndHalfway)),
                         [](const testing::TestParamInfo<Case>& row) {
                           return NameOfTask(std::get<0>(row.param)) +
                                  (std::get<1>(row.param) == Fault::EndHalfway ? "Halfway" : "Before");
                         });

}  // namespace
}  // namespace zimbrat::tests

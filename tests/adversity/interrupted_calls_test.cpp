// Calls of the system that signals interrupt, reads and writes that fall short: nobody notices.
#include "interrupted_calls.h"
#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

class Interrupted : public testing::TestWithParam<Task> {};

TEST_P(Interrupted, CallsAreMadeAgainUntilAllIsDone) {
  Stage stage(GetParam(), Ground::Disk);
  stage.onRun = [](bool begins) { InterruptedCalls::areOn = begins; };
  InterruptedCalls::interrupted = InterruptedCalls::cut = 0;
  const bool done = stage.Run();
  EXPECT_TRUE(done) << stage.text;
  EXPECT_GT(InterruptedCalls::interrupted, 100u);
  EXPECT_GT(InterruptedCalls::cut, 100u);
  stage.CheckOutcome(done, GetParam().name);
  EXPECT_EQ(stage.Leftovers(), "");
}

INSTANTIATE_TEST_SUITE_P(Tasks, Interrupted, testing::ValuesIn(AllTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests

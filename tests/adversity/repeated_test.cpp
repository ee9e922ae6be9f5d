// The same task again and again.
#include "tests/adversity/stage.h"

#include <cstdlib>

namespace zimbrat::tests {
namespace {

int Repetitions() { return std::getenv("ZIMBRAT_ALL") != nullptr ? 1000 : 6; }

const Task& TaskNamed(std::string_view name) {
  for (const Task& task : AllTasks()) {
    if (task.name == name) return task;
  }
  throw std::logic_error("no such task");
}

TEST(Repeated, SprawdzGivesTheSameFileFromTheSecondOn) {
  Stage stage(TaskNamed("sprawdz"), Ground::Memory);
  ASSERT_TRUE(stage.Run()) << stage.text;
  ASSERT_TRUE(stage.Run()) << stage.text;
  const std::string second = stage.Read(kTarget);
  for (int i = 3; i <= Repetitions(); ++i) {
    ASSERT_TRUE(stage.Run()) << i << ": " << stage.text;
    ASSERT_EQ(stage.Read(kTarget) == second, true) << "differs in run " << i;
  }
  stage.CheckOutcome(true, "repeated");
  EXPECT_EQ(stage.Leftovers(), "");
}

TEST(Repeated, DodajOfWhatIsThereChangesNothing) {
  Stage stage(TaskNamed("dodaj"), Ground::Memory);
  ASSERT_TRUE(stage.Run()) << stage.text;
  const std::string first = stage.Read(kTarget);
  EXPECT_FALSE(stage.Run());
  EXPECT_EQ(stage.bench.host.messages.size(), 1u) << "nothing to add";
  EXPECT_EQ(stage.Read(kTarget) == first, true);
  EXPECT_EQ(stage.Leftovers(), "");
}

}  // namespace
}  // namespace zimbrat::tests

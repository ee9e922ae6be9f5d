// A volume with n free bytes, from none to what the run needs.
#include <regex>

#include "tests/adversity/stage.h"

namespace zimbrat::tests {
namespace {

using Case = std::tuple<Task, bool>;

class FullDisk : public testing::TestWithParam<Case> {};

// The most bytes that one run has on the volume beyond those before it.
std::uint64_t MostNeeded(const Task& task) {
  Stage stage(task, Ground::Memory);
  const std::uint64_t before = stage.volume.Used();
  EXPECT_TRUE(stage.Run()) << stage.text;
  return stage.volume.MostUsed() - before;
}

// The system's number or the engine's; a relation's failure has one number whatever its cause.
bool TellsNumber(const std::string& text) {
  static const std::regex number(R"(\b(61|3026|438)\b)");
  return std::regex_search(text, number);
}

TEST_P(FullDisk, IsToldAndLeavesTheOldFile) {
  const auto& [task, tellsTheTruth] = GetParam();
  constexpr std::uint64_t kStep = 512;
  const std::uint64_t need = MostNeeded(task);
  std::uint64_t rounds = 0;
  for (const std::uint64_t n : LoopNumbers(need / kStep, 5, 0)) {
    Stage stage(task, Ground::Memory);
    const std::uint64_t before = stage.volume.Used();
    stage.volume.room = before + n * kStep - kStep;
    stage.volume.liesAboutRoom = !tellsTheTruth;
    const bool done = stage.Run();
    const std::string where = std::string(task.name) + " with " + std::to_string(n * kStep - kStep);
    EXPECT_FALSE(done) << where;
    EXPECT_TRUE(TellsNumber(stage.text)) << where << ": " << stage.text;
    EXPECT_EQ(stage.Leftovers(), "") << where;
    if (tellsTheTruth && task.asksForRoom) {
      EXPECT_EQ(stage.volume.MostUsed(), before) << where << ": began";
    }
    stage.CheckOutcome(done, where);
    stage.volume.room = ~std::uint64_t{0};
    stage.CheckCleanRun(where);
    if (HasFailure()) return;
    ++rounds;
  }
  TellLoop("blocks", rounds, need / kStep);
}

INSTANTIATE_TEST_SUITE_P(Tasks, FullDisk,
                         testing::Combine(testing::ValuesIn(AllTasks()), testing::Bool()),
                         [](const testing::TestParamInfo<Case>& row) {
                           return NameOfTask(std::get<0>(row.param)) +
                                  (std::get<1>(row.param) ? "Told" : "NotTold");
                         });

}  // namespace
}  // namespace zimbrat::tests

// Every call of the file layer goes wrong, once or from then on.
#include <algorithm>
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

bool TellsOfCalls(const Wrong& wrong) { return wrong.how == Fault::Error; }

bool NamesCallAndFile(const Stage& stage) {
  const std::string call = stage.files.FailedCall();
  if (call == "List" || call == "TryHold") return true;  // these raise nothing
  return stage.text.find(call + ": " + Utf8(stage.files.FailedPath())) != std::string::npos;
}

// Where the product tells less than it knows: a relation's failure, a database in use, a question about a database
// that stays without an answer, lists of programs.
bool HasTextOfItsOwn(const std::string& text) {
  constexpr const char* kTexts[] = {
      "438; (", "plik jest już używany.", "w trybie wyłączności przez innego użytkownika",
      "nie posiada struktury danych dla program", "Zaznacz programy, dla których",
      "naprawa bazy nie powiodły się. Zimbrat nie może sprawdzić struktury bazy."};
  return std::any_of(std::begin(kTexts), std::end(kTexts),
                     [&](const char* own) { return text.find(own) != std::string::npos; });
}

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
    if (!done && !forGood && TellsOfCalls(wrong)) {
      EXPECT_TRUE(NamesCallAndFile(stage) || HasTextOfItsOwn(stage.text)) << where << ": " << stage.text;
    }
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

// Each call of the server fails once: everything is released, the failure is told, the old file or a sound new one
// stands there and nobody holds it.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "tests/adversity/stage.h"
#include "tests/daoserver/allocation_count.h"
#include "tests/support/error_of.h"
#include "tests/through_com/offered_engine.h"

namespace zimbrat::tests {
namespace {

constexpr std::int32_t kFailure = platform::kErrDiskIo;

// One run, of which a call fails.
struct Outcome {
  bool isDone = false;
  int calls = 0;
  std::vector<std::string> log;  // up to the end, the failed call at `failed`
  std::size_t failed = 0;

  const std::string& FailedCall() const { return log.at(failed); }
  // Until it failed.
  bool HasCalled(std::string_view call) const {
    return std::ranges::count(std::span(log).first(failed + 1), call) != 0;
  }
};

// Places where nothing is lost when the engine refuses.
bool MayPass(const Outcome& outcome) {
  constexpr std::string_view kCalls[] = {
      "Recordset.Close", "Database.Close", "Workspace.Close",  // the work is done or has failed already
      "Database.Name",                                         // for a message that is not due
      "DBEngine.RepairDatabase",                               // the compaction does it then
      "DBEngine.Errors", "Errors.Count", "Errors.Item", "Error.Number", "Error.Source", "Error.Description"};
  return std::ranges::count(kCalls, outcome.FailedCall()) != 0;
}

bool IsTold(const Stage& stage, const Outcome& outcome) {
  const suite::KontekstBledu& context = stage.bench.state.context;
  const auto says = [&](std::string_view text) { return stage.text.find(text) != std::string::npos; };
  if (context.Number == kFailure) return context.Source == u"DAO.Awaria" && !context.Description.empty();
  if (says(platform::Utf8FromUtf16(platform::DecimalText(kFailure)))) return true;
  // Two routines have a word of their own for whatever happens: that of the relations, and the one that looks for
  // the catalogue tables.
  if (context.Number == platform::kErrNoSuchMember) return outcome.HasCalled("Database.Relations");
  return outcome.FailedCall() == "Database.OpenRecordset" && says("nie posiada struktury danych");
}

class FailingCalls : public testing::TestWithParam<Task> {
 protected:
  // The call of that number fails, 0: none.
  Outcome Run(Stage& stage, std::uint64_t call);
  void Check(Stage& stage, const Outcome& outcome, const std::string& where);

  OfferedEngine offered_;
  DaoServer& server_ = offered_.server;
};

Outcome FailingCalls::Run(Stage& stage, std::uint64_t call) {
  stage.bench.state.Engine();
  const long idle = server_.Objects();
  const int before = server_.Calls(), unclosed = server_.Unclosed();
  server_.log.clear();
  server_.keepsLog = true;
  server_.isTerse = call % 2 == 1;
  server_.FailAt(static_cast<int>(call), kFailure);
  Outcome outcome;
  outcome.isDone = stage.Run();
  server_.FailAt(0, 0);
  server_.keepsLog = false;
  outcome.calls = server_.Calls() - before;
  outcome.log = server_.log;
  outcome.failed = static_cast<std::size_t>(call) - 1;
  EXPECT_EQ(server_.Objects(), idle) << call;
  const bool isClose = call > 0 && outcome.log.size() >= call && outcome.FailedCall().ends_with(".Close");
  EXPECT_LE(server_.Unclosed() - unclosed, isClose ? 1 : 0) << call;
  return outcome;
}

void FailingCalls::Check(Stage& stage, const Outcome& outcome, const std::string& where) {
  if (outcome.isDone) {
    EXPECT_TRUE(MayPass(outcome)) << where;
  } else {
    EXPECT_TRUE(IsTold(stage, outcome)) << where << ": " << stage.text;
  }
  EXPECT_NO_THROW(stage.Real().Open(stage.PathOf(kTarget), platform::OpenMode::ReadWrite, platform::Sharing::None))
      << where;
  EXPECT_EQ(stage.Leftovers(), "") << where;
  stage.CheckOutcome(outcome.isDone, where);
}

TEST_P(FailingCalls, ReleaseEverythingAndTell) {
  const Task& task = GetParam();
  int last = 0;
  {
    Stage stage(task, Ground::Disk, engines::Wish::Installed);
    const Outcome undisturbed = Run(stage, 0);
    EXPECT_TRUE(undisturbed.isDone);
    last = undisturbed.calls;
  }
  const AllocationCount count;
  std::uint64_t rounds = 0;
  for (const std::uint64_t call : LoopNumbers(static_cast<std::uint64_t>(last), 50, 0)) {
    {
      Stage stage(task, Ground::Disk, engines::Wish::Installed);
      const Outcome outcome = Run(stage, call);
      ASSERT_GE(outcome.log.size(), call);
      Check(stage, outcome, std::string(task.name) + " call " + std::to_string(call) + " " + outcome.FailedCall());
    }
    EXPECT_EQ(server_.Objects(), 0) << call;
    EXPECT_EQ(count.Live(), 0) << call;
    ++rounds;
  }
  std::cout << "[  rounds  ] " << rounds << " of " << last << " calls\n";
}

TEST(FailingSearch, LeavesAnEngineThatCannotWorkAlone) {
  OfferedEngine offered;
  DaoServer& server = offered.server;
  {
    DatabaseBench bench(nullptr, engines::Wish::Installed);
    bench.state.Engine();
  }
  for (int call = server.Calls(); call > 0; --call) {
    DatabaseBench bench(nullptr, engines::Wish::Installed);
    server.FailAt(call, kFailure);
    EXPECT_EQ(ErrorOf([&] { bench.state.Engine(); }), platform::kErrCannotCreateObject) << call;
    EXPECT_EQ(server.Objects(), 0) << call;
  }
}

INSTANTIATE_TEST_SUITE_P(OfATask, FailingCalls, testing::ValuesIn(TellingTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests

// Others: who hold the database for a while, and who put another file in its place meanwhile.
#include "platform/file_errors.h"
#include "tests/adversity/stage.h"

#include <functional>

namespace zimbrat::tests {
namespace {

class Others : public testing::TestWithParam<Task> {};

// The last replacement of a run is that of the database.
std::uint64_t CountReplacements(const Task& task) {
  Stage stage(task, Ground::Memory);
  std::uint64_t count = 0;
  stage.files.onCall = [&](std::string_view name) { count += name == "Replace" ? 1 : 0; };
  EXPECT_TRUE(stage.Run()) << stage.text;
  return count;
}

// Calls `act` directly before the run's replacement of the database, each time it is tried.
void AtReplacement(Stage& stage, std::uint64_t last, std::function<void()> act) {
  stage.files.onCall = [last, act = std::move(act), count = std::uint64_t{0}](
                           std::string_view name) mutable {
    if (name == "Replace" && ++count >= last) act();
  };
}

TEST_P(Others, WhoHoldTheDatabaseAreWaitedForTwoSeconds) {
  const Task& task = GetParam();
  const std::uint64_t last = CountReplacements(task);
  for (const std::uint64_t held : {10u, 400u, 1000u, 1900u, 2200u, 5000u}) {
    Stage stage(task, Ground::Memory);
    std::uint64_t until = 0;
    AtReplacement(stage, last, [&] {
      if (until == 0) until = stage.bench.clock.milliseconds + held;
      if (stage.bench.clock.milliseconds < until) {
        throw platform::FileError(platform::kErrPermissionDenied, u"zamiana pliku",
                                  stage.PathOf(kTarget));
      }
    });
    const bool done = stage.Run();
    const std::string where = std::string(task.name) + " held for " + std::to_string(held);
    EXPECT_EQ(done, held < 2000) << where << ": " << stage.text;
    if (!done) {
      EXPECT_NE(stage.text.find("zamiana pliku: " + Utf8(stage.PathOf(kTarget))), std::string::npos)
          << where << ": " << stage.text;
    }
    EXPECT_EQ(stage.Leftovers(), "") << where;
    stage.files.onCall = {};
    stage.CheckOutcome(done, where);
    stage.CheckCleanRun(where);
  }
}

// A real handle, which only Windows minds; it goes at the third attempt.
TEST_P(Others, WhoHaveTheFileOpenAreWaitedFor) {
  const std::uint64_t last = CountReplacements(GetParam());
  Stage stage(GetParam(), Ground::Disk);
  std::unique_ptr<platform::File> held;
  int attempts = 0;
  AtReplacement(stage, last, [&] {
    ++attempts;
    if (attempts == 1) {
      held = stage.Real().Open(stage.PathOf(kTarget), platform::OpenMode::Read,
                               platform::Sharing::Readers);
    }
    if (attempts == 3) held.reset();
  });
  EXPECT_TRUE(stage.Run()) << stage.text;
  EXPECT_TRUE(attempts == 3 || held != nullptr) << attempts;
  held.reset();
  stage.files.onCall = {};
  stage.CheckOutcome(true, NameOfTask(GetParam()));
  EXPECT_EQ(stage.Leftovers(), "");
}

TEST_P(Others, WhoHoldTheDatabaseFromTheBeginningAreRefused) {
  Stage stage(GetParam(), Ground::Disk);
  const auto held =
      stage.Real().Open(stage.PathOf(kTarget), platform::OpenMode::ReadWrite, platform::Sharing::None);
  EXPECT_FALSE(stage.Run());
  EXPECT_NE(stage.text.find(Utf8(stage.PathOf(kTarget))), std::string::npos) << stage.text;
  EXPECT_EQ(stage.Leftovers(), "");
}

// What befalls the target while the task works.
struct Event {
  const char* name;
  void (*happen)(Stage& stage);
  const char* content;  // of the target afterwards; null: there is none
};

constexpr Event kEvents[] = {
    {"another file in its place",
     [](Stage& stage) { stage.volume.Put(stage.PathOf(kTarget), "inna baza"); }, "inna baza"},
    {"removed", [](Stage& stage) { stage.volume.Delete(stage.PathOf(kTarget)); }, nullptr},
};

TEST_P(Others, WhoPutAnotherFileInItsPlaceLoseNothing) {
  const Task& task = GetParam();
  const std::string beside = "Firma (zimbrat).mdb";
  for (const Event& event : kEvents) {
    // The finished file is flushed; then the target is looked at once more.
    std::uint64_t last = 0;
    {
      Stage stage(task, Ground::Memory);
      stage.files.onCall = [&](std::string_view name) { last += name == "Flush" ? 1 : 0; };
      EXPECT_TRUE(stage.Run());
    }
    Stage stage(task, Ground::Memory);
    stage.files.onCall = [&, count = std::uint64_t{0}](std::string_view name) mutable {
      if (name == "State" && count == last) {
        ++count;
        event.happen(stage);
      }
      if (name == "Flush") ++count;
    };
    EXPECT_FALSE(stage.Run()) << event.name;
    EXPECT_NE(stage.text.find(beside), std::string::npos) << event.name << ": " << stage.text;
    EXPECT_EQ(stage.Leftovers(), "baza/" + beside + " ") << event.name;
    if (event.content != nullptr) {
      EXPECT_EQ(stage.Read(kTarget), event.content);
    }
    // What was made is not lost either: in the target's place it holds the run's effect.
    stage.files.onCall = {};
    stage.Write(kTarget, stage.Read(u"baza/Firma (zimbrat).mdb"));
    stage.CheckOutcome(true, event.name);
  }
}

INSTANTIATE_TEST_SUITE_P(Tasks, Others, testing::ValuesIn(TellingTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests

// Every call of the file layer fails once while a database is created over an old one: afterwards
// the old file is there or a sound new one, nothing else lies about, and only a finished run says
// so.
#include "tests/product/database_bench.h"
#include "platform/error_numbers.h"
#include "tests/support/failing_files.h"

namespace zimbrat::tests {
namespace {

constexpr const char* kOld = "stara baza";

// Creates over an old file; returns whether the planned call was reached.
bool RunWithFault(const FaultPlan& plan, bool& done) {
  const platform::System system = platform::MakeSystem(0, nullptr);
  FailingFiles files(*system.files);
  DatabaseBench bench(&files);
  bench.folder.Write(u"Firma.mdb", kOld);
  const auto structure = bench.WriteStructure(u"a.stb", SmallProgram("AB"));
  bench.host.answer = platform::kAnswerYes;
  files.plan = plan;
  platform::ProgressBar bar;
  done = generator::GenerujNowaBaze(bench.state, bench.folder.Path(), u"Firma", structure,
                                    {1, 2025, 1, 2025}, bar);
  const bool reached = files.HasFailed();
  const std::string where = std::string(files.FailedCall()) + " " + std::to_string(plan.call);
  files.plan = {};

  const std::string content = bench.folder.Read(u"Firma.mdb");
  if (content != kOld) {
    EXPECT_NO_THROW(bench.choice.Verify(bench.PathOf(u"Firma.mdb"), {})) << where;
  }
  if (done) {
    EXPECT_NE(content, kOld) << where;
    EXPECT_EQ(Rows(bench.Open(u"Firma.mdb"), u"SELECT * FROM dbprg"), "AB|Próba AB|1|3") << where;
    bench.Close();
  }
  // What could not be removed at once goes with the next run.
  bench.host.answer = platform::kAnswerYes;
  if (!done) {
    EXPECT_TRUE(generator::GenerujNowaBaze(bench.state, bench.folder.Path(), u"Druga", structure,
                                           {1, 2025, 1, 2025}, bar))
        << where << bench.Summary();
  }
  for (const std::u16string& name : bench.folder.Names()) {
    EXPECT_FALSE(name.ends_with(u".zimbrat-nowa")) << where << " left " << Utf8(name);
  }
  return reached;
}

class DriverFaults : public testing::TestWithParam<std::int32_t> {};

TEST_P(DriverFaults, LeaveTheOldFileOrASoundNewOne) {
  bool done = false;
  std::uint64_t call = 1;
  while (RunWithFault({.call = call, .error = GetParam(), .changesOnly = true}, done)) ++call;
  EXPECT_TRUE(done);
  EXPECT_GT(call, 10u);
}

INSTANTIATE_TEST_SUITE_P(Errors, DriverFaults,
                         testing::Values(platform::kErrDiskFull, platform::kErrPathAccess),
                         [](const auto& row) { return std::to_string(row.param); });

TEST(DriverFaultsForGood, NeverEndInSuccess) {
  bool done = false;
  for (std::uint64_t call = 1; call < 40; ++call) {
    if (!RunWithFault(
            {.call = call, .error = platform::kErrDiskFull, .forGood = true, .changesOnly = true},
            done)) {
      break;
    }
    EXPECT_FALSE(done) << call;
  }
}

}  // namespace
}  // namespace zimbrat::tests

// Sound databases come out of a repair as they went in, only smaller.
#include <gtest/gtest.h>

#include "bench.h"
#include "jet/engine.h"
#include "jet/file/header.h"
#include "platform/error_numbers.h"
#include "platform/working_file.h"
#include "tests/support/error_of.h"

namespace zimbrat::tests {

using jet::ConstBytes;

namespace {

jet::FileHeader HeaderOf(RepairBench& bench) {
  return jet::DecodeHeader(bench.Page(0), kPath);
}

// Page 0 without mask and encoding key.
std::vector<std::byte> BareHeader(RepairBench& bench) {
  std::vector<std::byte> page(bench.Page(0).begin(), bench.Page(0).end());
  jet::RenewHeader(page, 0);
  return page;
}

}  // namespace

TEST(Repair, LeavesSoundFilesAsTheyAre) {
  if (!HasAccessFiles()) GTEST_SKIP();
  for (const std::filesystem::path& path : SoundAccessFiles()) {
    SCOPED_TRACE(path);
    RepairBench bench(path);
    const platform::Secret password = jet::DecodePassword(bench.Page(0));
    const bool isEncoded = HeaderOf(bench).encodingKey != 0;
    const Contents before = bench.Read(password);
    const std::vector<std::byte> header = BareHeader(bench);
    const std::size_t size = bench.bytes().size();
    const jet::RepairReport report = bench.Repair();
    EXPECT_TRUE(report.found.empty());
    EXPECT_EQ(LossesOf(report), "");
    EXPECT_EQ(DifferenceOf(before, bench.Read(password)), "");
    EXPECT_EQ(BareHeader(bench), header);
    EXPECT_EQ(HeaderOf(bench).encodingKey != 0, isEncoded);
    EXPECT_LE(bench.bytes().size(), size);
    const std::size_t once = bench.bytes().size();
    EXPECT_FALSE(bench.Repair().IsAnythingLost());
    EXPECT_EQ(bench.bytes().size(), once);
    EXPECT_EQ(DifferenceOf(before, bench.Read(password)), "");
  }
}

TEST(Repair, IsReachedThroughTheEngine) {
  if (!HasAccessFiles()) GTEST_SKIP();
  RepairBench bench(AccessFile("overflow.mdb"));
  const Contents before = bench.Read();
  std::fill(bench.Page(1).begin(), bench.Page(1).end(), std::byte{0});
  const auto engine = jet::MakeEngine(bench.files, bench.clock, {});
  const dao::RepairOutcome outcome = engine->RepairDatabase(kPath);
  EXPECT_TRUE(outcome.wasDamaged);
  EXPECT_TRUE(outcome.losses.empty());
  EXPECT_EQ(outcome.keptFile, u"");
  EXPECT_TRUE(jet::CheckFile(bench.files, kPath).empty());
  EXPECT_EQ(DifferenceOf(before, bench.Read()), "");
}

// It is asked for at every check of somebody's only copy.
TEST(Repair, ThroughTheEngineLeavesSoundFilesAlone) {
  if (!HasAccessFiles()) GTEST_SKIP();
  for (const std::filesystem::path& path : SoundAccessFiles()) {
    RepairBench bench(path);
    const FileBytes before = bench.bytes();
    const dao::RepairOutcome outcome =
        jet::MakeEngine(bench.files, bench.clock, {})->RepairDatabase(kPath);
    EXPECT_FALSE(outcome.wasDamaged) << path;
    EXPECT_EQ(bench.bytes(), before) << path;
  }
}

// What was lost is told, and the damaged file stays beside the repaired one: each once, none over another.
TEST(Repair, KeepsTheDamagedFileWhenSomethingIsLost) {
  if (!HasAccessFiles()) GTEST_SKIP();
  RepairBench bench(AccessFile("overflow.mdb"));
  const FileBytes sound = bench.bytes();
  const auto engine = jet::MakeEngine(bench.files, bench.clock, {});
  const auto repairAfter = [&](std::initializer_list<std::size_t> wiped) {
    bench.bytes() = sound;
    for (const std::size_t page : wiped) std::ranges::fill(bench.Page(page), std::byte{0});
    const FileBytes damaged = bench.bytes();
    const dao::RepairOutcome outcome = engine->RepairDatabase(kPath);
    EXPECT_TRUE(outcome.wasDamaged);
    EXPECT_NE(bench.bytes(), damaged);
    EXPECT_TRUE(jet::CheckFile(bench.files, kPath).empty());
    EXPECT_EQ(bench.files.BytesOf(outcome.keptFile), damaged);
    EXPECT_FALSE(outcome.losses.empty());
    for (const std::u16string& line : outcome.losses) EXPECT_TRUE(line.starts_with(u"tabela „"));
    return outcome.keptFile;
  };
  const std::u16string first = std::u16string(kPath) + u".uszkodzona";
  EXPECT_EQ(repairAfter({31}), first);
  EXPECT_EQ(repairAfter({27}), first + u"-2");
  EXPECT_EQ(repairAfter({31}), first) << "it is there already";
  EXPECT_EQ(repairAfter({27, 31}), first + u"-3");
}

TEST(Repair, RefusesWhatItCannotRead) {
  if (!HasAccessFiles()) GTEST_SKIP();
  const auto errorOf = [](RepairBench& bench) {
    const FileBytes before = bench.bytes();
    const std::int32_t number = ErrorOf([&] { bench.Repair(); });
    EXPECT_EQ(bench.bytes(), before);
    EXPECT_FALSE(bench.files.State(std::u16string(kPath) + std::u16string(platform::kRepairSuffix)));
    return number;
  };
  RepairBench jet3(AccessFile("jet3-refuse.mdb"));
  EXPECT_EQ(errorOf(jet3), platform::kErrUnrecognizedFormat);
  RepairBench headerOnly(AccessFile("index.mdb"));
  std::fill(headerOnly.bytes().begin() + jet::kPageSize, headerOnly.bytes().end(), std::byte{0});
  EXPECT_EQ(errorOf(headerOnly), platform::kErrCannotRepair);
  RepairBench polish(AccessFile("index.mdb"));
  jet::ToggleHeaderMask(polish.Page(0));
  jet::Put16(polish.Page(0), jet::kOffsetLanguage, 0x0415);
  jet::ToggleHeaderMask(polish.Page(0));
  EXPECT_EQ(errorOf(polish), platform::kErrCannotRepair);
}

}  // namespace zimbrat::tests

// Each call to the disk fails once during a repair: the old file stays as it was or the new one is
// there whole, and beside it, when something was lost, the old one. Nothing else lies around after the
// next run.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "jet/repair.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/working_file.h"
#include "tests/support/access_files.h"
#include "tests/support/error_of.h"
#include "tests/support/failing_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;

namespace {

class RepairFaults : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasAccessFiles()) GTEST_SKIP();
    Damage(kMapOfFreePages);
  }
  // The file with that page wiped, and what the repair makes of it.
  void Damage(std::ptrdiff_t page) {
    std::ifstream in(AccessFile("overflow.mdb"), std::ios::binary);
    damaged_.assign(std::istreambuf_iterator<char>(in), {});
    std::fill_n(damaged_.begin() + page * 4096, 4096, '\0');
    folder_.Write(u"a.mdb", damaged_);
    jet::RepairDatabaseFile(*system_.files, clock_, path_);
    repaired_ = folder_.Read(u"a.mdb");
    ASSERT_NE(repaired_, damaged_);
    names_ = folder_.Names();
  }

  // False when the repair has fewer calls.
  bool FailCall(std::uint64_t n, Fault how, std::int32_t error, bool forGood) {
    folder_.Write(u"a.mdb", damaged_);
    if (HasKept()) system_.files->Delete(kept_);
    FailingFiles files(*system_.files);
    files.plan = {.call = n, .how = how, .error = error, .forGood = forGood};
    const std::int32_t number = ErrorOf([&] { jet::RepairDatabaseFile(files, clock_, path_); });
    const std::string where = std::string(files.FailedCall()) + " " + std::to_string(n);
    const std::string now = folder_.Read(u"a.mdb");
    EXPECT_EQ(now == repaired_, now != damaged_) << where;
    EXPECT_TRUE(number != 0 || now == repaired_) << where;
    if (!forGood) {
      EXPECT_EQ(folder_.Names(), now == repaired_ ? names_ : Names{u"a.mdb"}) << where;
    }
    folder_.Write(u"a.mdb", damaged_);
    EXPECT_EQ(ErrorOf([&] { jet::RepairDatabaseFile(*system_.files, clock_, path_); }), 0);
    EXPECT_EQ(folder_.Read(u"a.mdb"), repaired_);
    EXPECT_EQ(folder_.Names(), names_) << where;
    if (HasKept()) {
      EXPECT_EQ(folder_.Read(u"a.mdb.uszkodzona"), damaged_) << where;
    }
    return files.HasFailed();
  }
  void FailEveryCall();
  bool HasKept() { return system_.files->IsFile(kept_); }

  using Names = std::vector<std::u16string>;
  static constexpr std::ptrdiff_t kMapOfFreePages = 1, kMovedRows = 31;

  TempFolder folder_;
  FakeClock clock_;
  System system_ = MakeSystem(0, nullptr);
  std::u16string path_ = folder_.PathOf(u"a.mdb"), kept_ = folder_.PathOf(u"a.mdb.uszkodzona");
  std::string damaged_, repaired_;
  Names names_;  // in the folder after the repair
};

void RepairFaults::FailEveryCall() {
  struct Kind {
    Fault how;
    std::int32_t error;
    bool forGood;
  };
  for (const Kind& kind :
       {Kind{Fault::Error, kErrDiskFull, false}, Kind{Fault::Error, kErrDeviceIo, true},
        Kind{Fault::Half, kErrDiskFull, false}}) {
    std::uint64_t n = 1;
    while (FailCall(n, kind.how, kind.error, kind.forGood) && !HasFailure()) ++n;
    EXPECT_GT(n, 40u);
  }
}

}  // namespace

TEST_F(RepairFaults, LeaveTheOldFileOrTheNewOne) {
  EXPECT_FALSE(HasKept()) << "nothing is lost with the map of free pages";
  FailEveryCall();
}

TEST_F(RepairFaults, LeaveNoHalfOfWhatIsKept) {
  Damage(kMovedRows);
  ASSERT_TRUE(HasKept());
  FailEveryCall();
}

TEST_F(RepairFaults, OfUseByOthersAreTold) {
  const auto numberOf = [&](std::u16string_view path) {
    return ErrorOf([&] { jet::RepairDatabaseFile(*system_.files, clock_, path); });
  };
  EXPECT_EQ(numberOf(folder_.PathOf(u"b.mdb")), kErrCouldNotFindFile);
  EXPECT_EQ(numberOf(folder_.PathOf(u"brak/b.mdb")), kErrInvalidPath);
  {
    const auto hold = system_.files->TryHold(path_ + std::u16string(platform::kRepairSuffix));
    EXPECT_EQ(numberOf(path_), kErrFileInUse);
  }
  {
    const auto open = system_.files->Open(path_, OpenMode::Read, Sharing::Readers);
    EXPECT_EQ(numberOf(path_), kErrFileInUse);
  }
  EXPECT_EQ(numberOf(path_), 0);
}

}  // namespace zimbrat::tests

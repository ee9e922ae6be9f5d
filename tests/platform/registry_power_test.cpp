// The power goes at each write, flush and rename. Only where open files can be read (POSIX).
#include "registry_round.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/support/failing_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

TEST(RegistryPower, LossLeavesOldOrNew) {
  System system = MakeSystem(0, nullptr);
  for (const tests::PowerLoss loss : {tests::PowerLoss::Drop, tests::PowerLoss::Shuffle}) {
    for (std::uint64_t n = 1;; ++n) {
      tests::TempFolder folder;
      const std::u16string path = folder.PathOf(u"rejestr.reg");
      ASSERT_EQ(Write(*system.files, path, u"old"), kRegistrySuccess);
      tests::FailingFiles failing(*system.files);
      failing.tracksUnsynced = true;
      failing.plan = {.call = n, .forGood = true, .changesOnly = true};
      const std::int32_t result = Write(failing, path, u"new");
      failing.LosePower(loss, static_cast<std::uint32_t>(n));
      ASSERT_EQ(Read(*system.files, path), result == kRegistrySuccess ? u"new" : u"old") << n;
      if (!failing.HasFailed()) break;
    }
  }
}

}  // namespace
}  // namespace zimbrat::platform

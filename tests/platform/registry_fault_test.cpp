// Each call to the disk fails in turn.
#include "registry_round.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/support/failing_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

TEST(RegistryFault, OldOrNewValueWhateverCallFails) {
  System system = MakeSystem(0, nullptr);
  for (const bool forGood : {false, true}) {
    for (const tests::Fault how : {tests::Fault::Error, tests::Fault::Half}) {
      for (std::uint64_t n = 1;; ++n) {
        tests::TempFolder folder;
        const std::u16string path = folder.PathOf(u"rejestr.reg");
        ASSERT_EQ(Write(*system.files, path, u"old"), kRegistrySuccess);
        tests::FailingFiles failing(*system.files);
        failing.plan = {.call = n, .how = how, .error = kErrDiskFull, .forGood = forGood};
        const std::int32_t result = Write(failing, path, u"new");
        const std::u16string value = Read(*system.files, path);
        SCOPED_TRACE(failing.FailedCall());
        if (result == kRegistrySuccess) {
          ASSERT_EQ(value, u"new");
        } else {
          ASSERT_EQ(value, u"old");
        }
        ASSERT_EQ(Write(*system.files, path, u"next"), kRegistrySuccess);
        if (!failing.HasFailed()) break;
      }
    }
  }
}

}  // namespace
}  // namespace zimbrat::platform

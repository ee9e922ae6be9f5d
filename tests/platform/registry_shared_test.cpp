// The power goes at each write, flush and rename, and two writers meet. Only where open files can be
// read and replaced (POSIX).
#include "registry_round.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/failing_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

TEST(RegistryShared, PowerLossLeavesOldOrNew) {
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

TEST(RegistryShared, TwoWritersLoseNoKey) {
  constexpr int kKeys = 60;
  System system = MakeSystem(0, nullptr);
  tests::TempFolder folder;
  const auto work = [&](std::u16string_view prefix) {
    PortableRegistry registry(*system.files, folder.PathOf(u"rejestr.reg"));
    for (int i = 0; i < kKeys; ++i) {
      std::unique_ptr<RegistryKey> key;
      const std::u16string name = std::u16string(prefix) + DecimalText(i);
      EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, name, key), kRegistrySuccess);
    }
  };
  std::thread first(work, u"a"), second(work, u"b");
  first.join();
  second.join();
  PortableRegistry registry(*system.files, folder.PathOf(u"rejestr.reg"));
  std::unique_ptr<RegistryKey> root;
  ASSERT_EQ(registry.OpenKey(RegistryRoot::CurrentUser, u"", RegistryAccess::Read, root), 0);
  std::u16string name;
  EXPECT_EQ(root->EnumerateKey(2 * kKeys - 1, name), kRegistrySuccess);
  EXPECT_EQ(root->EnumerateKey(2 * kKeys, name), kRegistryNoMoreItems);
}

}  // namespace
}  // namespace zimbrat::platform

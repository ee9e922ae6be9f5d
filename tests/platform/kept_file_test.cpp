// The damaged file that is kept: made in spite of those who are in the way for a moment.
#include "platform/kept_file.h"

#include <gtest/gtest.h>

#include "platform/run_time_error.h"
#include "platform/system.h"
#include "tests/support/failing_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

using namespace platform;

TEST(KeptFile, IsMadeAtTheSecondAttemptWhicheverCallFailsAtTheFirst) {
  TempFolder folder;
  System system = MakeSystem(0, nullptr);
  folder.Write(u"a.mdb", std::string(5000, 'x'));
  folder.Write(u"a.mdb.zimbrat-naprawa", "nowy");
  const std::u16string path = folder.PathOf(u"a.mdb");
  for (std::uint64_t n = 1;; ++n) {
    FailingFiles files(*system.files);
    const auto source = system.files->Open(path, OpenMode::Read, Sharing::Readers);
    KeptFile kept(files, path, path + u".zimbrat-naprawa");
    files.plan = {.call = files.Calls() + n, .error = kErrPermissionDenied};
    for (int attempt = 1; kept.Path().empty(); ++attempt) {
      ASSERT_LE(attempt, 2) << files.FailedCall();
      try {
        kept.Make(*source, [] {});
      } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), kErrPermissionDenied) << files.FailedCall();
      }
    }
    EXPECT_EQ(folder.Read(u"a.mdb.uszkodzona"), std::string(5000, 'x')) << files.FailedCall();
    EXPECT_EQ(folder.Names().size(), 3u) << files.FailedCall();
    files.plan = {};
    system.files->Delete(kept.Path());
    if (!files.HasFailed()) break;
  }
}

}  // namespace
}  // namespace zimbrat::tests

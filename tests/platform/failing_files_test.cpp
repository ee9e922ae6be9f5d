// The instrument itself: a fault test proves nothing when the fault did not happen.
#include "tests/support/failing_files.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

using namespace platform;

class FailingFilesTest : public testing::Test {
 protected:
  // Six calls: Open, WriteAt, Flush, WriteAt, Replace, State.
  void Work() {
    const std::u16string path = folder.PathOf(u"a");
    {
      const auto file = failing.Open(path, OpenMode::CreateNew, Sharing::All);
      file->WriteAt(0, Bytes("1234"));
      file->Flush();
      file->WriteAt(4, Bytes("5678"));
    }
    failing.Replace(path, folder.PathOf(u"b"));
    failing.State(path);
  }
  static std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span<const char>(text));
  }

  TempFolder folder;
  System system = MakeSystem(0, nullptr);
  FailingFiles failing{*system.files};
};

TEST_F(FailingFilesTest, EveryCallCanFail) {
  const char* const names[] = {"Open", "WriteAt", "Flush", "WriteAt", "Replace", "State"};
  for (std::uint64_t n = 1; n <= 6; ++n) {
    TempFolder own;
    FailingFiles files(*system.files);
    files.plan = {.call = n, .error = kErrDiskFull};
    EXPECT_EQ(ErrorOf([&] {
                const auto file = files.Open(own.PathOf(u"a"), OpenMode::CreateNew, Sharing::All);
                file->WriteAt(0, Bytes("x"));
                file->Flush();
                file->WriteAt(1, Bytes("y"));
                files.Replace(own.PathOf(u"a"), own.PathOf(u"b"));
                files.State(own.PathOf(u"b"));
              }),
              kErrDiskFull);
    EXPECT_STREQ(files.FailedCall(), names[n - 1]);
  }
  Work();
  EXPECT_EQ(failing.Calls(), 6u);
  EXPECT_FALSE(failing.HasFailed());
}

TEST_F(FailingFilesTest, HalfAWriteIsOnTheDisk) {
  failing.plan = {.call = 4, .how = Fault::Half};
  EXPECT_EQ(ErrorOf([&] { Work(); }), kErrDeviceIo);
  EXPECT_EQ(folder.Read(u"a"), "123456");
}

TEST_F(FailingFilesTest, ProcessEndsBeforeTheCall) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  failing.plan.call = 5;
  failing.plan.how = Fault::EndProcess;
  EXPECT_EXIT(Work(), testing::ExitedWithCode(kEndedByFault), "");
}

TEST_F(FailingFilesTest, PowerLossForgetsWhatWasNotFlushed) {
  failing.tracksUnsynced = true;
  failing.plan = {.call = 5, .forGood = true};
  EXPECT_EQ(ErrorOf([&] { Work(); }), kErrDeviceIo);
  ASSERT_EQ(folder.Read(u"a"), "12345678");
  failing.LosePower(PowerLoss::Drop);
  EXPECT_FALSE(folder.Exists(u"a"));  // its folder was never flushed

  folder.Write(u"a", "old!");
  FailingFiles second(*system.files);
  second.tracksUnsynced = true;
  second.Open(folder.PathOf(u"a"), OpenMode::ReadWrite, Sharing::All)->WriteAt(2, Bytes("new"));
  EXPECT_EQ(folder.Read(u"a"), "olnew");
  second.LosePower(PowerLoss::Drop);
  EXPECT_EQ(folder.Read(u"a"), "old!");
}

}  // namespace
}  // namespace zimbrat::tests

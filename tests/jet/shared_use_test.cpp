// Databases that others share: on POSIX systems only their locks in the lock file tell.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

TEST(SharedUse, ALockedUserByteRefusesTheDatabase) {
  const tests::TempFolder folder;
  tests::FakeClock clock;
  const platform::System system = platform::MakeSystem(0, nullptr);
  const auto workspace = MakeEngine(*system.files, clock, {})->CreateWorkspace(u"", u"Admin", u"");
  const std::u16string path = folder.PathOf(u"Baza.mdb");
  workspace->CreateDatabase(path, dao::dbLangGeneral, 0)->Close();
  std::string slots(128, ' ');
  slots.replace(64, 7, std::string("DRUGI\0 ", 7)).replace(96, 5, std::string("Ewa\0 ", 5));
  folder.Write(u"Baza.ldb", slots);

  const int other = ::open(platform::Utf8FromUtf16(folder.PathOf(u"Baza.ldb")).c_str(), O_RDWR | O_CLOEXEC);
  struct flock lock{};
  lock.l_type = F_WRLCK;
  lock.l_start = 0x10000002;  // the second user
  lock.l_len = 1;
  ASSERT_EQ(::fcntl(other, F_OFD_SETLK, &lock), 0);
  for (const bool readOnly : {false, true}) {
    try {
      workspace->OpenDatabase(path, true, readOnly, u"");
      ADD_FAILURE() << "opened";
    } catch (const platform::RunTimeError& error) {
      EXPECT_EQ(error.Number(), platform::kErrFileInUse);
      EXPECT_NE(error.Description().find(u"„Ewa” na komputerze „DRUGI”"), std::u16string::npos);
    }
  }
  ::close(other);
  EXPECT_NO_THROW(workspace->OpenDatabase(path, true, false, u"")->Close());
}

}  // namespace zimbrat::jet

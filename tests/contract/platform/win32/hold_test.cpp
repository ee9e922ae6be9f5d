// A hold among processes.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/system.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

constexpr wchar_t kPathGiven[] = L"ZIMBRAT_TEST_HOLD";
constexpr DWORD kGranted = 7, kRefused = 8;

// Runs this test in another process, which tries to hold `path` and is ended while it has it.
DWORD TryElsewhere(const std::u16string& path) {
  std::u16string program = GrownText([](wchar_t* room, unsigned long size) {
    return ::GetModuleFileNameW(nullptr, room, size);
  });
  std::u16string command = u"\"" + program + u"\" --gtest_filter=WindowsHold.*";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION made{};
  ::SetEnvironmentVariableW(kPathGiven, Lend(path));
  const BOOL isStarted = ::CreateProcessW(nullptr, LendRoom(command), nullptr, nullptr, FALSE, 0, nullptr,
                                          nullptr, &start, &made);
  ::SetEnvironmentVariableW(kPathGiven, nullptr);
  if (!isStarted) return 0;
  const ObjectHandle process(made.hProcess), thread(made.hThread);
  DWORD code = 0;
  ::WaitForSingleObject(process.Get(), INFINITE);
  ::GetExitCodeProcess(process.Get(), &code);
  return code;
}

TEST(WindowsHold, BindsOtherProcessesAndEndsWithItsOwn) {
  const System system = MakeSystem(0, nullptr);
  if (const std::u16string given = system.environment->Variable(ViewWide(kPathGiven)); !given.empty()) {
    const auto hold = system.files->TryHold(given);
    ::TerminateProcess(::GetCurrentProcess(), hold ? kGranted : kRefused);
  }
  const tests::TempFolder folder;
  const std::u16string path = folder.PathOf(u"a.mdb");
  auto hold = system.files->TryHold(path);
  EXPECT_EQ(TryElsewhere(path), kRefused);
  hold.reset();
  EXPECT_EQ(TryElsewhere(path), kGranted);
  EXPECT_TRUE(folder.Names().empty());
  EXPECT_TRUE(system.files->TryHold(path));
}

}  // namespace
}  // namespace zimbrat::platform

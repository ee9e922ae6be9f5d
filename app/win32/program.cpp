#include "program.h"

#include "app/modMain.h"
#include "app/run_host.h"
#include "engines/engine_choice.h"
#include "platform/system.h"
#include "platform/win32/win32_shell.h"
#include "windows_host.h"
#include "wizard_window.h"

#include <ole2.h>

#include <memory>

namespace zimbrat::app {
namespace {

// COM for a thread with windows: dropped files, the shell's dialogs, the taskbar.
class Ole {
 public:
  Ole() : result_(::OleInitialize(nullptr)) {}
  ~Ole() {
    if (SUCCEEDED(result_)) ::OleUninitialize();
  }
  Ole(const Ole&) = delete;
  Ole& operator=(const Ole&) = delete;

 private:
  HRESULT result_;
};

// The host's window, as long as there is one.
class Shown {
 public:
  Shown(WindowsHost& windows, WizardWindow& window) : windows_(windows) { windows_.SetWindow(&window); }
  ~Shown() { windows_.SetWindow(nullptr); }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

 private:
  WindowsHost& windows_;
};

// The window while it is on the screen.
void ShowWizard(WindowsHost& windows, RunHost& host, mdiMenu& form, int showCommand) {
  const Ole ole;
  INITCOMMONCONTROLSEX controls = {sizeof controls,
                                   ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS |
                                       ICC_UPDOWN_CLASS};
  ::InitCommonControlsEx(&controls);
  WizardWindow window(form, host);
  const Shown shown(windows, window);
  window.Show(showCommand);
  window.RunUntilClosed();
}

}  // namespace

void RunProgram(std::u16string_view commandLine, int showCommand) {
  platform::System system = platform::MakeSystem(0, nullptr);
  platform::Files& files = *system.files;
  WindowsHost windows([&](std::u16string_view path, std::u16string_view original) {
    engines::VerifyDatabase(files, path, original, [&] { windows.Pulse(); });
  });
  struct {
    RunHost host;
    suite::ProgramState state;
  } program = {RunHost(windows, program.state),
               suite::ProgramState({files, *system.registry, *system.profile, *system.clock,
                                    *system.environment, program.host, [&] {
                                      return engines::MakeEngine(files, *system.clock,
                                                                 [&] { windows.Pulse(); });
                                    }})};
  platform::Win32Shell shell([&] { return windows.Owner(); });
  mdiMenu form(program.state, shell);
  Main(program.state, form, commandLine,
       [&] { ShowWizard(windows, program.host, form, showCommand); });
}

std::u16string_view TailOf(std::u16string_view wholeCommandLine) {
  const bool isQuoted = wholeCommandLine.starts_with(u'"');
  const std::size_t end = isQuoted ? wholeCommandLine.find(u'"', 1) : wholeCommandLine.find_first_of(u" \t");
  if (end == std::u16string_view::npos) return {};
  wholeCommandLine.remove_prefix(isQuoted ? end + 1 : end);
  const std::size_t start = wholeCommandLine.find_first_not_of(u' ');
  return start == std::u16string_view::npos ? std::u16string_view() : wholeCommandLine.substr(start);
}

}  // namespace zimbrat::app

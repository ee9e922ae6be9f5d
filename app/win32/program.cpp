#include "program.h"

#include "app/modMain.h"
#include "app/run_host.h"
#include "engines/engine_choice.h"
#include "errors/error_texts.h"
#include "errors/mail_method.h"
#include "platform/system.h"
#include "platform/win32/win32_automation.h"
#include "platform/win32/win32_mapi.h"
#include "platform/win32/win32_shell.h"
#include "windows_host.h"
#include "wizard_window.h"

#include <ole2.h>

#include <memory>

namespace zimbrat::app {
namespace {

// Of a process that the user broke off.
constexpr UINT kStatusAborted = 1;

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

// Nobody would see that an unknown word is refused.
engines::Wish WishOf(platform::Environment& environment) {
  return engines::FindWish(environment.Variable(engines::kEngineVariable)).value_or(engines::Wish::Found);
}

// The state and what it runs on, each of which knows the others.
struct Program {
  explicit Program(platform::System& system)
      : windows(
            [this](std::u16string_view path, std::u16string_view original) {
              choice.Verify(path, original);
            },
            state, outside),
        host(windows, state),
        state({*system.files, *system.registry, *system.profile, *system.clock, *system.environment, host,
               [this](const suite::PasswordOf& password) { return choice.Engine(password); }}),
        choice({.files = *system.files,
                .clock = *system.clock,
                .wish = WishOf(*system.environment),
                .pulse = [this] { windows.Pulse(); },
                .log = errors::ErrorFile(state, engines::kVerificationLog)}),
        shell([this] { return windows.Front(); }),
        mapi([this] { return windows.Front(); }) {}

  WindowsHost windows;
  RunHost host;
  suite::ProgramState state;
  engines::EngineChoice choice;
  platform::Win32Shell shell;
  platform::Win32Automation automation;
  platform::Win32Mapi mapi;
  errors::Outside outside{shell, automation, mapi, [] { ::ExitProcess(kStatusAborted); }};
};

}  // namespace

void RunProgram(std::u16string_view commandLine, int showCommand) {
  platform::System system = platform::MakeSystem(0, nullptr);
  Program program(system);
  program.state.mailMethod = errors::ReadMailMethod(*system.registry);
  mdiMenu form(program.state, program.shell);
  Main(program.state, form, commandLine,
       [&] { ShowWizard(program.windows, program.host, form, showCommand); });
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

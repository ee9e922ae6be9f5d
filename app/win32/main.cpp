#include "program.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

#include <exception>
#include <string>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
  using namespace zimbrat;
  try {
    const std::u16string whole = platform::FromWide(::GetCommandLineW());
    app::RunProgram(app::TailOf(whole), showCommand);
    return 0;
  } catch (const std::exception&) {
    // Memory or the system itself is missing; nobody may be asked anything.
    return 1;
  }
}

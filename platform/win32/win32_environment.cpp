#include "win32_environment.h"

#include <windows.h>

#include "platform/files.h"
#include "wide_text.h"

namespace zimbrat::platform {

std::u16string Win32Environment::Variable(std::u16string_view name) {
  const std::u16string variable(name);
  return GrownText([&](wchar_t* room, unsigned long size) {
    return ::GetEnvironmentVariableW(Lend(variable), room, size);
  });
}

std::u16string Win32Environment::ProgramFolder() {
  const std::u16string program = GrownText([](wchar_t* room, unsigned long size) {
    return ::GetModuleFileNameW(nullptr, room, size);
  });
  return std::u16string(FolderOfPath(program));
}

std::u16string Win32Environment::CurrentFolder() {
  return GrownText([](wchar_t* room, unsigned long size) {
    return ::GetCurrentDirectoryW(size, room);
  });
}

void Win32Environment::SetCurrentFolder(std::u16string_view folder) {
  ::SetCurrentDirectoryW(Lend(std::u16string(folder)));
}

std::u16string Win32Environment::TemporaryFolder() { return Variable(u"TEMP"); }

}  // namespace zimbrat::platform

#include "win32_console.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <string>

#include "handles.h"
#include "platform/text.h"
#include "wide_text.h"
#include "win32_interrupt.h"

namespace zimbrat::platform {
namespace {

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return ::GetConsoleMode(handle, &mode) != FALSE;
}

bool WriteWide(HANDLE console, std::u16string_view text) {
  constexpr std::size_t kPortion = 8192;  // older systems take no more than 64 KB at once
  while (!text.empty()) {
    const std::u16string portion(text.substr(0, kPortion));
    DWORD written = 0;
    if (!::WriteConsoleW(console, Lend(portion), static_cast<DWORD>(portion.size()), &written, nullptr) ||
        written == 0) {
      return false;
    }
    text.remove_prefix(written);
  }
  return true;
}

bool WriteBytes(HANDLE file, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto portion = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 20));
    DWORD written = 0;
    if (!::WriteFile(file, bytes.data() + done, portion, &written, nullptr) || written == 0) return false;
    done += written;
  }
  return true;
}

bool WriteText(DWORD which, std::u16string_view text) {
  const HANDLE handle = ::GetStdHandle(which);
  return IsConsole(handle) ? WriteWide(handle, text) : WriteBytes(handle, Utf8FromUtf16(text));
}

// Switches the echo off for its life, and makes Ctrl+C a key, so that it cannot end the process before the
// echo is on again.
class SilentInput {
 public:
  SilentInput() : input_(::GetStdHandle(STD_INPUT_HANDLE)) {
    worked_ = ::GetConsoleMode(input_, &oldMode_) &&
              ::SetConsoleMode(input_, (oldMode_ | ENABLE_LINE_INPUT) &
                                           ~static_cast<DWORD>(ENABLE_ECHO_INPUT |
                                                               ENABLE_PROCESSED_INPUT));
  }
  ~SilentInput() {
    if (worked_) ::SetConsoleMode(input_, oldMode_);
  }
  SilentInput(const SilentInput&) = delete;
  SilentInput& operator=(const SilentInput&) = delete;
  bool Worked() const { return worked_; }
  HANDLE Input() const { return input_; }

 private:
  HANDLE input_;
  DWORD oldMode_ = 0;
  bool worked_ = false;
};

std::optional<Secret> ReadLine(HANDLE console) {
  constexpr char16_t kInterruptKey = 3;
  std::u16string line(4096, u'\0');
  DWORD count = 0;
  std::optional<Secret> answer;
  if (::ReadConsoleW(console, LendRoom(line), static_cast<DWORD>(line.size()), &count, nullptr)) {
    const std::u16string_view typed = std::u16string_view(line).substr(0, count);
    const std::size_t end = typed.find_first_of(u"\r\n");
    if (end != std::u16string_view::npos && typed.find(kInterruptKey) == std::u16string_view::npos) {
      answer.emplace(typed.substr(0, end));
    }
  }
  Wipe(line);
  return answer;
}

}  // namespace

std::vector<std::u16string> Win32Console::Arguments() {
  std::vector<std::u16string> arguments;
  int count = 0;
  const LocalHandle words(::CommandLineToArgvW(::GetCommandLineW(), &count));
  if (!words.IsOpen()) return arguments;
  auto* list = static_cast<wchar_t**>(words.Get());
  arguments.reserve(static_cast<std::size_t>(count));  // no copies stay behind
  for (int i = 1; i < count; ++i) {
    arguments.push_back(FromWide(list[i]));
    WipeMemory(list[i], arguments.back().size() * sizeof(wchar_t));
  }
  return arguments;
}

void Win32Console::WriteOutput(std::u16string_view text) {
  if (!hasFailed_ && !WriteText(STD_OUTPUT_HANDLE, text)) hasFailed_ = true;
}

void Win32Console::WriteError(std::u16string_view text) { WriteText(STD_ERROR_HANDLE, text); }

bool Win32Console::HasFailed() { return hasFailed_; }

bool Win32Console::IsErrorTerminal() { return IsConsole(::GetStdHandle(STD_ERROR_HANDLE)); }

void Win32Console::NoteInterrupts() { platform::NoteInterrupts(); }
bool Win32Console::IsInterrupted() { return platform::IsInterrupted(); }

std::optional<Secret> Win32Console::AskPassword(std::u16string_view prompt) {
  const SilentInput silence;
  if (!silence.Worked()) return std::nullopt;
  WriteError(prompt);
  std::optional<Secret> password = ReadLine(silence.Input());
  WriteError(u"\n");
  return password;
}

}  // namespace zimbrat::platform

#include "posix_console.h"

#include <termios.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <string>

#include "descriptor.h"
#include "platform/text.h"
#include "posix_interrupt.h"

namespace zimbrat::platform {
namespace {

bool WriteAll(int descriptor, std::u16string_view text) {
  const std::string bytes = Utf8FromUtf16(text);
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = Uninterrupted(
        [&] { return ::write(descriptor, bytes.data() + done, bytes.size() - done); });
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

// Switches the echo off for its life. Keys that would stop or end the process while the echo is off are
// held back until it is on again.
class SilentInput {
 public:
  SilentInput() {
    sigset_t keys;
    ::sigemptyset(&keys);
    for (const int signal : {SIGINT, SIGTERM, SIGTSTP, SIGHUP}) ::sigaddset(&keys, signal);
    ::sigprocmask(SIG_BLOCK, &keys, &oldSignals_);
    worked_ = ::tcgetattr(STDIN_FILENO, &oldMode_) == 0;
    termios silent = oldMode_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    if (worked_) worked_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~SilentInput() {
    if (worked_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &oldMode_);
    ::sigprocmask(SIG_SETMASK, &oldSignals_, nullptr);
  }
  SilentInput(const SilentInput&) = delete;
  SilentInput& operator=(const SilentInput&) = delete;
  bool Worked() const { return worked_; }

 private:
  termios oldMode_{};
  sigset_t oldSignals_{};
  bool worked_ = false;
};

// Nothing when the input ends, or at the interrupt key, before the line does.
std::optional<Secret> ReadLine() {
  constexpr std::size_t kLongest = 4096;
  constexpr char kInterruptKey = 3;
  std::string line;
  line.reserve(kLongest);  // never moved, so that one wipe reaches all of it
  char byte = 0;
  while (Uninterrupted([&] { return ::read(STDIN_FILENO, &byte, 1); }) == 1 &&
         byte != kInterruptKey) {
    if (byte == '\n') {
      Secret text = SecretFromUtf8(line);
      Wipe(line);
      return text;
    }
    if (line.size() < kLongest) line.push_back(byte);
  }
  Wipe(line);
  return std::nullopt;
}

}  // namespace

std::vector<std::u16string> PosixConsole::Arguments() {
  std::vector<std::u16string> words;
  words.reserve(static_cast<std::size_t>(std::max(argc_, 0)));  // no copies stay behind
  for (int i = 1; i < argc_; ++i) words.push_back(Utf16FromUtf8(argv_[i]));
  return words;
}

void PosixConsole::HideArgument(std::size_t index) {
  if (index + 1 >= static_cast<std::size_t>(std::max(argc_, 0))) return;
  char* word = argv_[index + 1];
  WipeMemory(word, std::strlen(word));
}

void PosixConsole::WriteOutput(std::u16string_view text) {
  if (!hasFailed_ && !WriteAll(STDOUT_FILENO, text)) hasFailed_ = true;
}

void PosixConsole::WriteError(std::u16string_view text) { WriteAll(STDERR_FILENO, text); }

bool PosixConsole::HasFailed() { return hasFailed_; }

bool PosixConsole::IsErrorTerminal() { return ::isatty(STDERR_FILENO) != 0; }

void PosixConsole::NoteInterrupts() { platform::NoteInterrupts(); }
bool PosixConsole::IsInterrupted() { return platform::IsInterrupted(); }

std::optional<Secret> PosixConsole::AskPassword(std::u16string_view prompt) {
  const SilentInput silence;
  if (!silence.Worked()) return std::nullopt;
  WriteError(prompt);
  std::optional<Secret> password = ReadLine();
  WriteError(u"\n");
  return password;
}

}  // namespace zimbrat::platform

#include "win32_interrupt.h"

#include <windows.h>

#include <atomic>

namespace zimbrat::platform {
namespace {

// The system calls the handler on a thread of its own, with nothing but the event's number.
constinit std::atomic<bool> g_isInterrupted = false;

// After it the system ends the process of itself, sooner for a closed window.
constexpr DWORD kLongestEnd = 20'000;  // ms

BOOL WINAPI Note(DWORD event) {
  const bool isRepeated = g_isInterrupted.exchange(true);
  if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT) return isRepeated ? FALSE : TRUE;
  // The process would end with this call, and ends in it when the program has cleaned up.
  ::Sleep(kLongestEnd);
  return TRUE;
}

}  // namespace

void NoteInterrupts() { ::SetConsoleCtrlHandler(Note, TRUE); }
bool IsInterrupted() { return g_isInterrupted; }

}  // namespace zimbrat::platform

#include "win32_interrupt.h"

#include <windows.h>

#include <atomic>

namespace zimbrat::platform {
namespace {

// The system calls the handler on a thread of its own, with nothing but the event's number.
constinit std::atomic<bool> g_isInterrupted = false;

BOOL WINAPI Note(DWORD) { return g_isInterrupted.exchange(true) ? FALSE : TRUE; }

}  // namespace

void NoteInterrupts() { ::SetConsoleCtrlHandler(Note, TRUE); }
bool IsInterrupted() { return g_isInterrupted; }

}  // namespace zimbrat::platform

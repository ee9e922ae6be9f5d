#include "posix_interrupt.h"

#include <csignal>
#include <initializer_list>

namespace zimbrat::platform {
namespace {

// A signal handler can reach nothing but what is known to the whole process.
volatile std::sig_atomic_t g_isInterrupted = 0;

void Note(int) { g_isInterrupted = 1; }

}  // namespace

void NoteInterrupts() {
  struct sigaction action{};
  action.sa_handler = Note;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction present{};
    // What the caller told us to ignore (nohup) stays ignored.
    if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
      ::sigaction(signal, &action, nullptr);
    }
  }
}

bool IsInterrupted() { return g_isInterrupted != 0; }

}  // namespace zimbrat::platform

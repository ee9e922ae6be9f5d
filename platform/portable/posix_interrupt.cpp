#include "posix_interrupt.h"

#include <csignal>

namespace zimbrat::platform {
namespace {

constexpr int kRequests[] = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

void NoteInterrupts() {
  sigset_t requests;
  ::sigemptyset(&requests);
  for (const int signal : kRequests) ::sigaddset(&requests, signal);
  ::sigprocmask(SIG_BLOCK, &requests, nullptr);
}

bool IsInterrupted() {
  sigset_t pending;
  if (::sigpending(&pending) != 0) return false;
  for (const int signal : kRequests) {
    if (::sigismember(&pending, signal) == 1) return true;
  }
  return false;
}

}  // namespace zimbrat::platform

// The system's functions under their own names, in front of those of the C library.
#include "interrupted_calls.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace zimbrat::tests {
namespace {

// Every second call, so that each is made again.
bool IsInterrupted() {
  if (!InterruptedCalls::areOn || ++InterruptedCalls::calls % 2 == 0) return false;
  ++InterruptedCalls::interrupted;
  errno = EINTR;
  return true;
}

// A third of what was asked for, or a byte.
std::size_t Cut(std::size_t size) {
  if (!InterruptedCalls::areOn || size < 2) return size;
  ++InterruptedCalls::cut;
  return std::max<std::size_t>(1, size / 3);
}

}  // namespace
}  // namespace zimbrat::tests

extern "C" {

ssize_t pread(int file, void* bytes, size_t size, off_t offset) {
  if (zimbrat::tests::IsInterrupted()) return -1;
  return ::syscall(SYS_pread64, file, bytes, zimbrat::tests::Cut(size), offset);
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  if (zimbrat::tests::IsInterrupted()) return -1;
  return ::syscall(SYS_pwrite64, file, bytes, zimbrat::tests::Cut(size), offset);
}

int fsync(int file) {
  if (zimbrat::tests::IsInterrupted()) return -1;
  return static_cast<int>(::syscall(SYS_fsync, file));
}

int ftruncate(int file, off_t size) noexcept {
  if (zimbrat::tests::IsInterrupted()) return -1;
  return static_cast<int>(::syscall(SYS_ftruncate, file, size));
}

int flock(int file, int operation) noexcept {
  if (zimbrat::tests::IsInterrupted()) return -1;
  return static_cast<int>(::syscall(SYS_flock, file, operation));
}

}  // extern "C"

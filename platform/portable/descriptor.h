// A file descriptor that closes itself, and system calls repeated when a signal interrupts them.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace zimbrat::platform {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

// Whether the name still leads to what is open; with AT_SYMLINK_NOFOLLOW a link leads nowhere.
inline bool IsNamed(const Descriptor& descriptor, const std::string& name, int flags = 0) {
  struct stat opened, named;
  return ::fstat(descriptor.Number(), &opened) == 0 &&
         ::fstatat(AT_FDCWD, name.c_str(), &named, flags) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

template <class Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace zimbrat::platform

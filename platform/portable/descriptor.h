// A file descriptor that closes itself, and system calls repeated when a signal interrupts them.
#pragma once

#include <unistd.h>

#include <cerrno>
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

template <class Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace zimbrat::platform

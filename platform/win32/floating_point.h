// The processor's state of floating point around the calls of other programs' objects: they find it
// as Windows gives it, and what some of them make of it does not stay.
#pragma once

#include <cfenv>
#include <cfloat>

namespace zimbrat::platform {

class FloatingPoint {
 public:
  FloatingPoint() {
    std::feholdexcept(
        &kept_);  // flags of earlier work are cleared, or engines take them for theirs
    // The x87 of 32-bit programs: 53 bits, as engines were built for.
    if (sizeof(void*) == 4) ::_controlfp(_PC_53, _MCW_PC);
  }
  ~FloatingPoint() { std::fesetenv(&kept_); }
  FloatingPoint(const FloatingPoint&) = delete;
  FloatingPoint& operator=(const FloatingPoint&) = delete;

 private:
  std::fenv_t kept_;
};

}  // namespace zimbrat::platform

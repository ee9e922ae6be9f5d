// The time and chance of the machine, behind an interface so that tests can fix both.
#pragma once

#include <cstdint>
#include <string>

namespace zimbrat::platform {

class Clock {
 public:
  virtual ~Clock() = default;
  // Local time, days since 1899-12-30.
  virtual double Now() = 0;
  // Any 32 bits, not predictable.
  virtual std::uint32_t Random() = 0;
  // The present date and time in the user's short regional formats.
  virtual std::u16string ShortDate() = 0;
  virtual std::u16string ShortTime() = 0;
  // Milliseconds from any fixed point, never backwards.
  virtual std::uint64_t Milliseconds() = 0;
  // Waits that long.
  virtual void Sleep(std::uint32_t milliseconds) = 0;
};

}  // namespace zimbrat::platform

// In a program that links this, the planned allocations fail.
#pragma once

#include <atomic>
#include <cstdint>

namespace zimbrat::tests {

// One for the whole program, as `new` is.
struct Allocations {
  inline static std::atomic<std::uint64_t> made{0};     // since Begin
  inline static std::atomic<std::uint64_t> failsAt{0};  // the number of the one that fails; 0: none
  inline static std::atomic<bool> failsForGood{false};  // those after it too
  inline static std::atomic<bool> hasFailed{false};     // the planned one was reached

  static void Begin(std::uint64_t call, bool forGood);
  static void End() { failsAt = 0; }
};

}  // namespace zimbrat::tests

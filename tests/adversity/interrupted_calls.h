// In a program that links this, calls of the system are interrupted by signals and fall short.
#pragma once

#include <atomic>
#include <cstdint>

namespace zimbrat::tests {

// One for the whole program, as the system is.
struct InterruptedCalls {
  inline static std::atomic<bool> areOn{false};
  inline static std::atomic<std::uint64_t> calls{0};
  inline static std::atomic<std::uint64_t> interrupted{0};
  inline static std::atomic<std::uint64_t> cut{0};
};

}  // namespace zimbrat::tests

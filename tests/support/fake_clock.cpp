#include "tests/support/fake_clock.h"

namespace zimbrat::tests {

// Marsaglia's xorshift.
std::uint32_t FakeClock::Random() {
  seed ^= seed << 13;
  seed ^= seed >> 17;
  seed ^= seed << 5;
  return seed;
}

}  // namespace zimbrat::tests

// A round: work that chance chooses from the round's seed, and what it counted.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tests/support/rounds.h"

namespace zimbrat::tests {

struct Round {
  std::size_t Below(std::size_t most) { return random() % most; }

  std::uint32_t seed = SeedOfRound();
  std::mt19937 random{seed};
};

// Adds to a figure of the running test. The program's last line tells the sums.
void Count(const std::string& name, std::size_t by);

}  // namespace zimbrat::tests

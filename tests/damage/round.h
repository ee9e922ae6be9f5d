// A round: work that chance chooses, from a seed that is printed and can be given; and what it counted.
//
//   ZIMBRAT_SEED   the seed, to see a failure again
#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace zimbrat::tests {

// A number from the environment.
std::size_t Setting(const char* variable, std::size_t otherwise);

struct Round {
  Round();

  std::size_t Below(std::size_t most) { return random() % most; }

  std::uint32_t seed;
  std::mt19937 random;
};

// Adds to a figure of the running test. The program's last line tells the sums.
void Count(const std::string& name, std::size_t by);

}  // namespace zimbrat::tests

#include "round.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace zimbrat::tests {

std::size_t Setting(const char* variable, std::size_t otherwise) {
  const char* given = std::getenv(variable);
  return given ? std::strtoull(given, nullptr, 10) : otherwise;
}

Round::Round()
    : seed(static_cast<std::uint32_t>(Setting("ZIMBRAT_SEED", std::random_device{}() & 0x7FFFFFFF))), random(seed) {
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
}

void Count(const std::string& name, std::size_t by) {
  testing::Test::RecordProperty(name, std::to_string(by));
}

}  // namespace zimbrat::tests

#include "round.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace zimbrat::tests {

std::size_t Setting(const char* variable, std::size_t otherwise) {
  const char* given = std::getenv(variable);
  return given ? static_cast<std::size_t>(std::strtoull(given, nullptr, 10)) : otherwise;
}

Round::Round()
    : seed(static_cast<std::uint32_t>(Setting("ZIMBRAT_SEED", std::random_device{}() & 0x7FFFFFFF))), random(seed) {
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
}

void Count(const std::string& name, std::size_t by) {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.test_property_count(); ++i) {
    const testing::TestProperty& property = result.GetTestProperty(i);
    if (property.key() == name) by += static_cast<std::size_t>(std::strtoull(property.value(), nullptr, 10));
  }
  testing::Test::RecordProperty(name, std::to_string(by));
}

}  // namespace zimbrat::tests

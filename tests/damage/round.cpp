#include "round.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace zimbrat::tests {

void Count(const std::string& name, std::size_t by) {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.test_property_count(); ++i) {
    const testing::TestProperty& property = result.GetTestProperty(i);
    if (property.key() == name) by += static_cast<std::size_t>(std::strtoull(property.value(), nullptr, 10));
  }
  testing::Test::RecordProperty(name, std::to_string(by));
}

}  // namespace zimbrat::tests

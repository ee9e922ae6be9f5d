// Runs the tests, then tells in one line what all of them counted together.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>

namespace {

class Sums : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& test) override {
    for (int i = 0; i < test.result()->test_property_count(); ++i) {
      const testing::TestProperty& property = test.result()->GetTestProperty(i);
      sums_[property.key()] += std::strtoull(property.value(), nullptr, 10);
    }
  }
  void OnTestProgramEnd(const testing::UnitTest&) override {
    std::cout << "harden:";
    for (const auto& [name, sum] : sums_) std::cout << ' ' << name << '=' << sum;
    std::cout << std::endl;
  }

  std::map<std::string, unsigned long long> sums_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<Sums>().release());
  return RUN_ALL_TESTS();
}

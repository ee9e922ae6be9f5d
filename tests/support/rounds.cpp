#include "tests/support/rounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace zimbrat::tests {

namespace {

struct Shard {
  std::uint64_t number = 1;
  std::uint64_t count = 1;
  std::string text;
};

Shard ShardOfRound() {
  const char* given = std::getenv("ZIMBRAT_SHARD");
  if (given == nullptr) return {};
  const std::string text = given;
  const std::size_t slash = text.find('/');
  const Shard shard{std::stoull(text), slash == std::string::npos ? 0 : std::stoull(text.substr(slash + 1)), text};
  if (shard.number < 1 || shard.number > shard.count) throw std::invalid_argument("ZIMBRAT_SHARD=" + text);
  return shard;
}

// "Tasks/CallFaults.LeaveTheOldFile/nowaNoSpaceOnce" without its first and its middle.
std::string NameOfRunningTest() {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string suite = test.test_suite_name(), name = test.name();
  return suite.substr(suite.find('/') + 1) + "." + name.substr(name.find('/') + 1);
}

}  // namespace

long NumberFrom(const char* variable, long otherwise) {
  const char* given = std::getenv(variable);
  return given ? std::atol(given) : otherwise;
}

std::uint32_t SeedOfRound() {
  const auto seed = static_cast<std::uint32_t>(NumberFrom("ZIMBRAT_SEED", std::random_device{}() & 0x7FFFFFFF));
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
  return seed;
}

void TellCounts(std::initializer_list<std::pair<std::string_view, std::uint64_t>> counts) {
  std::cout << "harden:";
  for (const auto& [name, count] : counts) std::cout << ' ' << name << '=' << count;
  std::cout << std::endl;
}

std::vector<std::uint64_t> LoopNumbers(std::uint64_t last, std::uint64_t few, std::uint64_t turn) {
  std::uint64_t first = 1, step = std::max<std::uint64_t>(1, last / std::max<std::uint64_t>(1, few));
  if (std::getenv("ZIMBRAT_ALL") != nullptr) {
    const Shard shard = ShardOfRound();
    first = shard.number;
    step = shard.count;
  } else {
    first += turn * 37 % step;
  }
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t n = first; n <= last; n += step) numbers.push_back(n);
  return numbers;
}

void TellLoop(std::string_view unit, std::uint64_t done, std::uint64_t last) {
  EXPECT_GT(last, 0u) << "a loop over nothing";
  const std::string shard = ShardOfRound().text;
  std::cout << "harden-case: " << NameOfRunningTest() << (shard.empty() ? "" : "[" + shard + "]") << ' ' << unit << ' '
            << done << " of " << last << '\n';
  TellCounts({{"faults", done}});
}

}  // namespace zimbrat::tests

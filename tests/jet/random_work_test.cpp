// Random work on a database against a model.
//
//   ZIMBRAT_SEED   the seed, to see a failure again
//   ZIMBRAT_STEPS  how many operations, instead of some thousands
#include <gtest/gtest.h>

#include "random_database.h"
#include "tests/support/rounds.h"

namespace zimbrat::tests {
namespace {

constexpr int kOperationsOfABatch = 120;

class RandomWork : public ::testing::TestWithParam<bool> {};

TEST_P(RandomWork, IsThatOfTheModel) {
  RandomDatabase database(SeedOfRound(), GetParam());
  const auto operations = static_cast<std::uint64_t>(NumberFrom("ZIMBRAT_STEPS", 6'000));
  while (database.Operations() < operations && !HasFailure()) database.Batch(kOperationsOfABatch);
  TellCounts({{"operations", database.Operations()}});
}

INSTANTIATE_TEST_SUITE_P(Files, RandomWork, ::testing::Bool(),
                         [](const auto& param) { return param.param ? "Encoded" : "Plain"; });

}  // namespace
}  // namespace zimbrat::tests

// What a long test takes from the environment and what it tells of itself. tools/harden runs such tests as rounds
// and adds up what they print.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace zimbrat::tests {

// The environment's number; `otherwise` where there is none.
long NumberFrom(const char* variable, long otherwise);

// ZIMBRAT_SEED or one by chance, printed so that a failure can be seen again.
std::uint32_t SeedOfRound();

// "harden: operations=120 databases=2": what was reached, names in the plural.
void TellCounts(std::initializer_list<std::pair<std::string_view, std::uint64_t>> counts);

// The numbers of a loop over calls 1 to `last`. With ZIMBRAT_ALL=1 every one, or with ZIMBRAT_SHARD=i/n besides the
// i-th and each n-th after it; else about `few` spread evenly, those of another `turn` between them.
std::vector<std::uint64_t> LoopNumbers(std::uint64_t last, std::uint64_t few, std::uint64_t turn);

// "harden-case: CallFaults.nowaNoSpaceOnce[1/2] calls 156 of 312", for the running test, and the count `faults`.
void TellLoop(std::string_view unit, std::uint64_t done, std::uint64_t last);

}  // namespace zimbrat::tests

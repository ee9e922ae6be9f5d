// Every input of the corpora once, without a fuzzer: what was found stays mended.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <vector>

#include "targets.h"

namespace zimbrat::fuzz {

// In what GoogleTest prints.
static void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }

namespace {

class Corpus : public ::testing::TestWithParam<Target> {};

std::vector<std::uint8_t> BytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

TEST_P(Corpus, FindsNothing) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(ZIMBRAT_CORPUS) / GetParam().name)) {
    SCOPED_TRACE(entry.path().string());
    GetParam().run(BytesOf(entry.path()));
    ++count;
  }
  EXPECT_GT(count, 0u);
}

INSTANTIATE_TEST_SUITE_P(Targets, Corpus, ::testing::ValuesIn(Targets().begin(), Targets().end()),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace zimbrat::fuzz

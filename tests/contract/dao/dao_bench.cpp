#include "dao_bench.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <thread>

#include "platform/run_time_error.h"

namespace zimbrat::tests {
namespace {

// Real engines close a little later than they say.
constexpr int kPatience = 20;
constexpr std::chrono::milliseconds kPause{100};

bool IsFree(platform::Files& files, std::u16string_view path) {
  return ErrorOf([&] { files.Open(path, platform::OpenMode::Read, platform::Sharing::None); }) == 0;
}

void Tell(std::string_view point, std::string_view seen) {
  std::cout << "[   punkt  ] " << point << ": " << seen << '\n';
}

std::string InWords(const platform::RunTimeError& error) {
  return std::to_string(error.Number()) + ' ' + platform::Utf8FromUtf16(error.Source()) + ": " +
         platform::Utf8FromUtf16(error.Description());
}

}  // namespace

void DaoBench::TearDown() {
  database.reset();
  workspace.reset();
  engine.reset();
  if (under.held) {
    EXPECT_EQ(under.held(), 0);
  }
  for (const std::u16string& name : folder.Names()) {
    const std::u16string file = folder.PathOf(name);
    int tries = under.isForeign ? kPatience : 1;
    while (!IsFree(*system.files, file) && --tries > 0) std::this_thread::sleep_for(kPause);
    EXPECT_GT(tries, 0) << platform::Utf8FromUtf16(name) << " is held";
  }
}

void DaoBench::ExpectOneOf(std::string_view point, const Numbers& numbers, const std::function<void()>& work) const {
  std::int32_t number = 0;
  std::string seen = "0";
  try {
    work();
  } catch (const platform::RunTimeError& error) {
    number = error.Number();
    seen = InWords(error);
  }
  if (!under.isForeign) {
    EXPECT_EQ(number, numbers.all.front()) << point << ": " << seen;
    return;
  }
  if (numbers.all.size() > 1) Tell(point, seen);
  EXPECT_NE(std::find(numbers.all.begin(), numbers.all.end(), number), numbers.all.end()) << point << ": " << seen;
}

void DaoBench::ExpectSeen(std::string_view point, std::string_view seen, std::string_view ours) const {
  if (under.isForeign) {
    Tell(point, seen);
  } else {
    EXPECT_EQ(seen, ours) << point;
  }
}

}  // namespace zimbrat::tests

// The texts that are delivered: none is missing, each can be shown.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::tests {
namespace {

std::string BytesOf(const char* path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Of the header, which names every number that anything in the program raises.
std::set<int> NumbersInUse() {
  const std::string text = BytesOf(ERROR_NUMBERS);
  std::set<int> numbers;
  const std::regex line("kErr\\w+ = (\\d+);");
  for (std::sregex_iterator at(text.begin(), text.end(), line), end; at != end; ++at) {
    numbers.insert(std::stoi((*at)[1]));
  }
  numbers.erase(platform::kErrMapi);  // a base, never raised
  return numbers;
}

using Sections = std::map<std::string, std::map<int, std::string>>;

Sections ShippedTexts() {
  Sections sections;
  std::string section;
  const std::string text = platform::Utf8FromUtf16(platform::Utf16FromAnsi1250(BytesOf(SHIPPED_TEXTS)));
  const std::regex line("(?:\\[(\\w+)\\]|(\\d+)=([^\r]+)|;[^\r]*)\r\n");
  std::ptrdiff_t taken = 0;
  for (std::sregex_iterator at(text.begin(), text.end(), line), end; at != end; ++at) {
    taken += at->length();
    if ((*at)[1].matched) section = (*at)[1];
    if (!(*at)[2].matched) continue;
    EXPECT_TRUE(sections[section].emplace(std::stoi((*at)[2]), (*at)[3]).second) << (*at)[0];
  }
  EXPECT_EQ(taken, std::ssize(text)) << "there is a line of another kind";
  return sections;
}

// Expressions of the engine raise the numbers of Visual Basic under its own source.
TEST(ShippedTexts, ExplainEveryNumberThatIsRaised) {
  const Sections sections = ShippedTexts();
  const std::set<int> numbers = NumbersInUse();
  ASSERT_GT(numbers.size(), 150u);
  for (const int number : numbers) {
    const bool isMail = number == platform::kErrNoMailSession;
    EXPECT_TRUE(isMail || sections.at("DAO").contains(number)) << number;
    const bool isOwn = number < 3000 || isMail;
    EXPECT_TRUE(!isOwn || sections.at("Program").contains(number)) << number;
  }
}

TEST(ShippedTexts, SayWhatHappenedAndWhatToDo) {
  for (const auto& [section, texts] : ShippedTexts()) {
    for (const auto& [number, text] : texts) {
      EXPECT_GE(std::count(text.begin(), text.end(), '.'), 2) << section << " " << number;
      EXPECT_EQ(text.back(), '.') << section << " " << number;
      EXPECT_LT(text.size(), 600u) << section << " " << number;
      EXPECT_EQ(text.find_first_of("!\"\t"), std::string::npos) << section << " " << number;
      EXPECT_EQ(text.find("\xEF\xBF\xBD"), std::string::npos) << section << " " << number;
    }
  }
}

}  // namespace
}  // namespace zimbrat::tests

// The texts that are delivered: none is missing, each can be shown.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
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
std::map<std::string, int> NumbersInUse() {
  const std::string text = BytesOf(PROJECT_FOLDER "/platform/error_numbers.h");
  std::map<std::string, int> numbers;
  const std::regex line("(kErr\\w+) = (\\d+);");
  for (std::sregex_iterator at(text.begin(), text.end(), line), end; at != end; ++at) {
    numbers[(*at)[1]] = std::stoi((*at)[2]);
  }
  numbers.erase("kErrMapi");  // a base, never raised
  return numbers;
}

// Names of the numbers that the program's own code raises under its own source.
std::set<std::string> RaisedAsOwn() {
  std::set<std::string> names;
  const std::regex raise("RunTimeError\\(\\s*(?:platform::)?(kErr\\w+),\\s*(?:u\"Zimbrat\"|(?:platform::)?kOwnErrorSource)");
  for (const char* folder : {"app", "console", "engines", "generator", "platform", "suite"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(std::string(PROJECT_FOLDER "/") + folder)) {
      if (entry.path().extension() != ".cpp") continue;
      const std::string text = BytesOf(entry.path().string().c_str());
      for (std::sregex_iterator at(text.begin(), text.end(), raise), end; at != end; ++at) names.insert((*at)[1]);
    }
  }
  return names;
}

using Sections = std::map<std::string, std::map<int, std::string>>;

Sections ShippedTexts() {
  Sections sections;
  std::string section;
  const std::string text = platform::Utf8FromUtf16(platform::Utf16FromAnsi1250(BytesOf(PROJECT_FOLDER "/errors/Errormsg.txt")));
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
  const std::map<std::string, int> numbers = NumbersInUse();
  ASSERT_GT(numbers.size(), 150u);
  const std::set<std::string> own = RaisedAsOwn();
  EXPECT_TRUE(own.contains("kErrCannotOpenDatabase")) << "a copy that does not pass its check";
  for (const std::string& name : own) EXPECT_TRUE(sections.at("Program").contains(numbers.at(name))) << name;
  for (const auto& [name, number] : numbers) {
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

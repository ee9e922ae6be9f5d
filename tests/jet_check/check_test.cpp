// Sound databases give no fault, what is no Jet 4 file is refused.
#include "jet/check/check.h"

#include "gtest/gtest.h"
#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/error_of.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {
namespace {

constexpr const char16_t* kPath = u"baza.mdb";

std::string Lines(const std::vector<Fault>& faults) {
  std::string lines;
  for (const Fault& fault : faults) {
    lines += platform::Utf8FromUtf16(fault.place + u": " + fault.text) + "\n";
  }
  return lines;
}

// Warnings would be false alarms too; and every key is made anew byte for byte.
TEST(CheckFile, FindsNothingInWhatAccessMade) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  for (const std::filesystem::path& path : tests::SoundAccessFiles()) {
    tests::MemoryFiles files;
    files.BytesOf(kPath) = tests::BytesOfFile(path);
    KeyCounts keys;
    std::size_t pulses = 0;
    CheckOptions options;
    options.keyCounts = &keys;
    options.pulse = [&] { ++pulses; };
    EXPECT_EQ("", Lines(CheckFile(files, kPath, options))) << path;
    EXPECT_FALSE(keys.empty()) << path;
    for (const auto& [kind, count] : keys) {
      EXPECT_EQ(count.keys, count.equal) << path << ", type " << kind.first;
    }
  }
}

TEST(CheckFile, RefusesOtherFormats) {
  const auto errorOf = [](const std::vector<std::byte>& bytes) {
    tests::MemoryFiles files;
    files.BytesOf(kPath) = bytes;
    return tests::ErrorOf([&] { CheckFile(files, kPath); });
  };
  EXPECT_EQ(platform::kErrUnrecognizedFormat, errorOf({}));
  EXPECT_EQ(platform::kErrUnrecognizedFormat, errorOf(std::vector<std::byte>(100, std::byte{'x'})));
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  for (const char* name : {"jet3-refuse.mdb", "accdb-refuse.accdb"}) {
    EXPECT_EQ(platform::kErrUnrecognizedFormat,
              errorOf(tests::BytesOfFile(tests::AccessFile(name))))
        << name;
  }
}

TEST(CheckFile, EndsAfterTheGivenNumberOfFaults) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  tests::MemoryFiles files;
  files.BytesOf(kPath) = tests::BytesOfFile(tests::AccessFile("index.mdb"));
  // All pages but the header and the map of free pages.
  std::fill(files.BytesOf(kPath).begin() + 3 * 4096, files.BytesOf(kPath).end(), std::byte{0});
  EXPECT_GT(CheckFile(files, kPath).size(), 5u);
  CheckOptions options;
  options.maxFaults = 3;
  EXPECT_EQ(4u, CheckFile(files, kPath, options).size()) << "three and the one that says so";
}

}  // namespace
}  // namespace zimbrat::jet

// More than fits into memory, sorted and set aside.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

#include "jet/file/pager.h"
#include "jet/file/sorter.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {

namespace {

ConstBytes BytesOf(const std::string& text) { return std::as_bytes(std::span(text)); }
std::string TextOf(ConstBytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class Setting : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  Setting() { files_.BytesOf(u"a.mdb").resize(6 * kPageSize); }
  tests::MemoryFiles files_;
  Pager pager_{files_, files_.Open(u"a.mdb", platform::OpenMode::ReadWrite, platform::Sharing::None), u"a.mdb",
               GetParam()};
};

}  // namespace

// Some records and so many that runs are merged; equal keys keep the order of their arrival.
TEST_P(Setting, RecordsAscendAndEqualKeysKeepTheirOrder) {
  for (const int count : {0, 1, 1000, 200'000}) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::multimap<std::string, std::string> expected;
    Sorter sorter(pager_);
    for (int i = 0; i < count; ++i) {
      std::string key(random() % 40, '\0');
      for (char& c : key) c = static_cast<char>(random() % 3 * 100);
      const std::string payload = std::to_string(i) + std::string(random() % 60, 'x');
      sorter.Add(BytesOf(key), BytesOf(payload));
      expected.emplace(std::move(key), payload);
    }
    EXPECT_EQ(sorter.Count(), expected.size());
    // Signed characters order otherwise than bytes: compare as the sorter does.
    std::vector<std::pair<std::string, std::string>> list(expected.begin(), expected.end());
    std::stable_sort(list.begin(), list.end(), [](const auto& a, const auto& b) {
      return std::lexicographical_compare(BytesOf(a.first).begin(), BytesOf(a.first).end(),
                                          BytesOf(b.first).begin(), BytesOf(b.first).end());
    });
    for (const auto& [key, payload] : list) {
      ASSERT_TRUE(sorter.Next());
      ASSERT_EQ(TextOf(sorter.Key()), key);
      ASSERT_EQ(TextOf(sorter.Payload()), payload);
    }
    EXPECT_FALSE(sorter.Next());
    EXPECT_FALSE(sorter.Next());
  }
}

TEST_P(Setting, WhatWasSetAsideIsReadAtAnyPlace) {
  Scratch scratch(pager_);
  std::string all;
  std::mt19937 random(7);
  while (all.size() < 3'000'000) {
    const std::string part(random() % 9000, static_cast<char>('a' + random() % 26));
    EXPECT_EQ(scratch.Append(BytesOf(part)), all.size());
    all += part;
  }
  EXPECT_EQ(scratch.Size(), all.size());
  for (int i = 0; i < 2000; ++i) {
    const std::size_t offset = random() % all.size();
    std::string read(std::min<std::size_t>(random() % 10000, all.size() - offset), '?');
    scratch.Read(offset, std::as_writable_bytes(std::span(read)));
    ASSERT_EQ(read, all.substr(offset, read.size())) << offset;
  }
}

INSTANTIATE_TEST_SUITE_P(PlainAndEncoded, Setting, ::testing::Values(0u, 0x12345678u));

}  // namespace zimbrat::jet

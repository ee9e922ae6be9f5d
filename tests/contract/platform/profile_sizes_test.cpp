// How the profile functions cut what does not fit their buffers.
#include <gtest/gtest.h>

#include <algorithm>

#include "makers.h"
#include "platform/system.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

class ProfileSizes : public testing::TestWithParam<tests::ProfileMaker> {
 protected:
  // The buffer after the call, with `|` for NUL and `#` for what was not touched.
  std::string Section(std::size_t size, std::uint32_t& result) {
    std::string room(size, '#');
    result = profile->Section("S", room, path);
    std::replace(room.begin(), room.end(), '\0', '|');
    return room;
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  std::unique_ptr<Profile> profile = GetParam().make(*system.files);
  std::u16string path = folder.PathOf(u"t.ini");
};

TEST_P(ProfileSizes, SectionIsCutTwoBeforeTheBuffersEnd) {
  folder.Write(u"t.ini", "[S]\r\na=1\r\nb=22\r\nc=333\r\n");
  const std::string whole = "a=1|b=22|c=333|";
  for (std::size_t size = 2; size <= whole.size() + 4; ++size) {
    std::uint32_t result = 0;
    const std::string room = Section(size, result);
    const std::size_t count = size >= whole.size() + 2 ? whole.size() : size - 2;
    EXPECT_EQ(result, count) << size;
    const std::size_t shown = size == whole.size() + 1 ? whole.size() : count;
    EXPECT_EQ(room.substr(0, shown), whole.substr(0, shown)) << size;
    EXPECT_EQ(room[shown], '|') << size;
    EXPECT_TRUE(shown + 1 == size || room[shown + 1] == '|' || shown == whole.size()) << size;
  }
}

TEST_P(ProfileSizes, BufferOf2048AsTheSectionReaderUsesIt) {
  std::uint32_t result = 0;
  const struct {
    std::size_t length;
    std::uint32_t result;
    bool isWhole;
  } rows[] = {{2045, 2045, true}, {2046, 2046, true}, {2047, 2046, true}, {2048, 2046, false},
              {3000, 2046, false}};
  for (const auto& row : rows) {  // one entry "k=xxx" and its NUL
    folder.Write(u"t.ini", "[S]\r\nk=" + std::string(row.length - 3, 'x') + "\r\n");
    const std::string room = Section(2048, result);
    EXPECT_EQ(result, row.result) << row.length;
    EXPECT_EQ(std::count(room.begin(), room.end(), 'x'),
              static_cast<std::ptrdiff_t>(row.isWhole ? row.length - 3 : 2046 - 2));
  }
  std::string entries = "[S]\r\n";
  for (int i = 0; i < 300; ++i) {
    entries += "key" + std::to_string(1000 + i).substr(1) + "=value\r\n";
  }
  folder.Write(u"t.ini", entries);
  const std::string room = Section(2048, result);
  EXPECT_EQ(result, 2046u);
  EXPECT_TRUE(room.ends_with("key156=value|key15||"));
}

TEST_P(ProfileSizes, EmptySectionEndsAtOnce) {
  folder.Write(u"t.ini", "[S]\r\n");
  std::uint32_t result = 1;
  EXPECT_EQ(Section(4, result)[0], '|');
  EXPECT_EQ(result, 0u);
  EXPECT_EQ(Section(1, result), "|");
  EXPECT_EQ(Section(0, result), "");
}

TEST_P(ProfileSizes, TextIsCutOneBeforeTheBuffersEnd) {
  folder.Write(u"t.ini", "[S]\r\nk=abcdef\r\n");
  for (std::size_t size = 0; size <= 9; ++size) {
    for (const char* key : {"k", "none"}) {
      const std::string whole = std::string_view(key) == "k" ? "abcdef" : "DEF";
      std::string room(size, '#');
      const std::size_t count = size == 0 ? 0 : std::min(whole.size(), size - 1);
      EXPECT_EQ(profile->String("S", key, "DEF", room, path), count) << key << size;
      EXPECT_EQ(room.substr(0, count), whole.substr(0, count)) << key << size;
      EXPECT_TRUE(size == 0 || room[count] == '\0') << key << size;
    }
  }
}

TEST_P(ProfileSizes, LongTextsAreCountedIn16Bits) {
  if (!GetParam().isPortable) GTEST_SKIP() << "Wine counts them in full";
  std::string room(100000, '#');
  const std::pair<std::size_t, std::uint32_t> rows[] = {{3999, 3999}, {65535, 65535}, {65536, 0}, {65537, 1}};
  for (const auto& [length, result] : rows) {
    folder.Write(u"t.ini", "[S]\r\nk=" + std::string(length, 'x') + "\r\n");
    EXPECT_EQ(profile->String("S", "k", "", room, path), result);
  }
}

INSTANTIATE_TEST_SUITE_P(Every, ProfileSizes, testing::ValuesIn(tests::ProfileMakers()),
                         tests::MakerName<tests::ProfileMaker>);

}  // namespace
}  // namespace zimbrat::platform

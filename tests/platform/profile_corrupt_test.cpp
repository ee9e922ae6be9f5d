// Files that no editor would write, and buffers of every size.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "platform/portable/profile.h"
#include "platform/system.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

class ProfileCorruptTest : public testing::Test {
 protected:
  void Put(std::string_view bytes) { folder.Write(u"t.ini", bytes); }
  // Asks everything with a buffer between two guards.
  void AskAll(std::size_t size) {
    std::string room(size + 2, '#');
    const std::span<char> buffer(room.data() + 1, size);
    for (const char* section : {"S", "", "\x80", "T"}) {
      EXPECT_LE(profile.Section(section, buffer, path), size);
      for (const char* key : {"k", "", "="}) {
        EXPECT_LE(profile.String(section, key, "default", buffer, path), size);
        profile.Int(section, key, 0, path);
      }
    }
    EXPECT_EQ(room.front(), '#');
    EXPECT_EQ(room.back(), '#');
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  PortableProfile profile{*system.files};
  std::u16string path = folder.PathOf(u"t.ini");
};

TEST_F(ProfileCorruptTest, RandomBytesAreReadAndWrittenWithoutHarm) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  constexpr char kLetters[] = "S[]=;\r\n\0\"' \t\x1A\xEF\xBB\xBF\xFF\xFEk1\x80";
  for (int round = 0; round < 100; ++round) {
    std::string bytes(random() % 200, '\0');
    for (char& byte : bytes) byte = kLetters[random() % (sizeof kLetters - 1)];
    Put(bytes);
    AskAll(random() % 40);
    const std::string key = "k", value = "v";
    ASSERT_TRUE(profile.Write("S", &key, &value, path));
    char answer[8];
    ASSERT_EQ(profile.String("S", "k", "", answer, path), 1u);
    ASSERT_STREQ(answer, "v");
    // Taking the entry out again leaves every byte that was there, in its order.
    ASSERT_TRUE(profile.Write("S", nullptr, nullptr, path));
  }
}

TEST_F(ProfileCorruptTest, HugeLinesAndFilesTakeBoundedTime) {
  Put("[S]\r\nk=" + std::string(10 << 20, 'x') + "\r\nz=1");
  AskAll(2048);
  Put(std::string(5 << 20, '['));
  AskAll(100);
  std::string entries = "[S]\n";
  for (int i = 0; i < 200000; ++i) entries += "key" + std::to_string(i) + "=value\n";
  Put(entries);
  AskAll(4000);
}

TEST_F(ProfileCorruptTest, FileAboveTheLimitIsUnreadableAndUntouched) {
  const auto file = system.files->Open(path, OpenMode::CreateNew, Sharing::None);
  file->Resize((64u << 20) + 1);
  char answer[8];
  EXPECT_EQ(profile.String("S", "k", "d", answer, path), 1u);
  const std::string text = "1";
  EXPECT_FALSE(profile.Write("S", &text, &text, path));
  EXPECT_EQ(file->Size(), (64u << 20) + 1);
}

}  // namespace
}  // namespace zimbrat::platform

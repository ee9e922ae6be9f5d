// Generated files, read by the portable code and by the system's own functions: the answers are compared.
// The generator keeps to what Wine and Windows do alike: no marks, no comments asked for as keys, no header
// without its bracket or with two, no two lines that begin with `=`, ASCII names of sections.
#include <gtest/gtest.h>

#include <random>

#include "platform/portable/profile.h"
#include "platform/system.h"
#include "platform/win32/win32_profile.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t bound) { return random_() % bound; }

  std::string File() {
    std::string text;
    for (std::size_t lines = Below(25); lines > 0; --lines) text += Line() + Pick({"\r\n", "\n", "\r\n"});
    return text;
  }
  std::string Name() { return Pick({"S", "s", "T", "k", "K", "key two", "\xB3", "#h", "d;e"}); }

 private:
  std::string Pick(std::initializer_list<const char*> texts) { return texts.begin()[Below(texts.size())]; }
  std::string Blank() { return Pick({"", "", " ", "\t", "  "}); }
  std::string Line() {
    switch (Below(8)) {
      case 0:
        return "[" + Pick({"S", "s", "T", "long name"}) + "]" + Pick({"", "", ";x", " tail"});
      case 1:
        return Blank() + ";" + Name() + "=1";
      case 2:
        return Blank();
      case 3:
        return Name();
      default:
        return Blank() + Name() + Blank() + "=" + Blank() +
               Pick({"", "1", "-5", "'a'", "v;c", "a=b", "\xA5\x81", "4294967297", "12x", "ab cd"}) + Blank();
    }
  }

  std::mt19937 random_;
};

TEST(ProfileRandom, PortableAndSystemAnswerAlike) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  Generator generator(seed);
  const tests::TempFolder folder;
  const System system = MakeSystem(0, nullptr);
  PortableProfile portable(*system.files);
  Win32Profile own;
  for (int round = 0; round < 400; ++round) {
    const std::string bytes = generator.File();
    SCOPED_TRACE(bytes);
    folder.Write(u"t.ini", bytes);
    const std::u16string path = folder.PathOf(u"t.ini");
    for (const char* section : {"S", "t", "Long Name", "none"}) {
      const std::size_t size = 2 + generator.Below(80);
      std::string mine(size, '#'), theirs(size, '#');
      const std::uint32_t count = portable.Section(section, mine, path);
      ASSERT_EQ(count, own.Section(section, theirs, path)) << section << size;
      ASSERT_EQ(mine.substr(0, count), theirs.substr(0, count)) << section << size;
      for (int i = 0; i < 3; ++i) {
        const std::string key = generator.Name();
        char mineText[64], theirText[64];
        ASSERT_EQ(portable.String(section, key, "DEF ", mineText, path),
                  own.String(section, key, "DEF ", theirText, path));
        ASSERT_STREQ(mineText, theirText) << section << key;
        ASSERT_EQ(portable.Int(section, key, 77, path), own.Int(section, key, 77, path)) << key;
      }
    }
  }
}

}  // namespace
}  // namespace zimbrat::platform

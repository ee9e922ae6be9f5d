// What the profile functions answer, file by file. Rows marked Portable are answers of Windows that Wine
// does not give; the system's own functions are not asked them.
#include <gtest/gtest.h>

#include <algorithm>

#include "makers.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using namespace std::string_view_literals;

enum class Ask { Section, String, Int };
enum class Where { Everywhere, Portable };

struct Row {
  const char* name;
  std::string_view file;
  Ask ask;
  std::string_view section, key;
  std::string_view answer;  // of a section with `|` for each NUL; of a missing text DEF, of a number 77
  Where where = Where::Everywhere;
};

class ProfileReading : public testing::TestWithParam<tests::ProfileMaker> {
 protected:
  std::string Answer(const Row& row) {
    std::string room(4096, '#');
    std::uint32_t count = 0;
    switch (row.ask) {
      case Ask::Section:
        count = profile->Section(row.section, room, path);
        EXPECT_EQ(room.substr(count, 1), std::string(1, '\0'));
        std::replace(room.begin(), room.begin() + count, '\0', '|');
        return room.substr(0, count);
      case Ask::String:
        count = profile->String(row.section, row.key, "DEF", room, path);
        EXPECT_EQ(room.find('\0'), count);
        return room.substr(0, count);
      case Ask::Int:
        return std::to_string(profile->Int(row.section, row.key, 77, path));
    }
    return {};
  }
  template <std::size_t N>
  void Check(const Row (&rows)[N]) {
    for (const Row& row : rows) {
      if (row.where == Where::Portable && !GetParam().isPortable) continue;
      folder.Write(u"t.ini", row.file);
      EXPECT_EQ(Answer(row), row.answer) << row.name;
    }
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  std::unique_ptr<Profile> profile = GetParam().make(*system.files);
  std::u16string path = folder.PathOf(u"t.ini");
};

TEST_P(ProfileReading, CommentsAndBlanks) {
  constexpr std::string_view kComments = "[S]\r\n;c=1\r\na=1\r\n ;d=2\r\n\t;e=3\r\nb=2;x\r\n";
  constexpr std::string_view kBlanks = "[S]\r\n  b = 2  \r\n\tc\t=\t3\t\r\nd=   \r\nf f = g  g \r\n";
  const Row rows[] = {
      {"comment lines", kComments, Ask::Section, "S", "", "a=1|b=2;x|"},
      {"comment asked for", kComments, Ask::String, "S", ";c", "DEF", Where::Portable},
      {"semicolon in a value", kComments, Ask::String, "S", "b", "2;x"},
      {"value of a semicolon", "[S]\r\nc=;v\r\n", Ask::String, "S", "c", ";v"},
      {"other marks", "[S]\r\n#h=4\r\n//q=5\r\nd;e=6\r\n", Ask::Section, "S", "", "#h=4|//q=5|d;e=6|"},
      {"empty lines", "[S]\r\n\r\n  \r\n\t\r\na=1\r\n", Ask::Section, "S", "", "a=1|"},
      {"blanks around", kBlanks, Ask::Section, "S", "", "b=2|c=3|d=|f f=g  g|"},
      {"blank value", kBlanks, Ask::String, "S", "d", ""},
      {"blanks inside", kBlanks, Ask::String, "S", "f f", "g  g"},
      {"blanks of the key asked", kBlanks, Ask::String, "S", " b ", "2"},
      {"blanks of the section asked", kBlanks, Ask::String, " S ", "b", "2"},
      {"tab of the key asked", kBlanks, Ask::String, "S", "\tb", "DEF", Where::Portable},
      {"tab of the section asked", kBlanks, Ask::String, "\tS", "b", "DEF", Where::Portable},
      {"blanks in the header", "[ T ]\r\nb=2\r\n", Ask::Section, "T", "", "b=2|"},
      {"blanks in the header, asked", "[ T ]\r\nb=2\r\n", Ask::Section, " T ", "", "b=2|", Where::Portable},
      {"no-break space is a letter", "[S]\r\na=\xA0x\xA0\r\n", Ask::String, "S", "a", "\xA0x\xA0"},
  };
  Check(rows);
}

TEST_P(ProfileReading, Quotes) {
  constexpr std::string_view kPairs = "[S]\r\na=\"x\"\r\nb='y'\r\nc= \" z \" \r\n";
  constexpr std::string_view kOdd =
      "[S]\r\nd=\"p'\r\ne=\"\r\nf=\"\"\r\ng=''q''\r\nh=\"m\" n\r\ni=\"open\r\nl=\"a\"b\"\r\nm='\"x\"'\r\n"
      "\"k\"=1\r\n";
  const Row rows[] = {
      {"double", kPairs, Ask::String, "S", "a", "x"},
      {"single", kPairs, Ask::String, "S", "b", "y"},
      {"blanks kept inside", kPairs, Ask::String, "S", "c", " z "},
      {"stay in a section", kPairs, Ask::Section, "S", "", "a=\"x\"|b='y'|c=\" z \"|", Where::Portable},
      {"unequal", kOdd, Ask::String, "S", "d", "\"p'"},
      {"one alone", kOdd, Ask::String, "S", "e", "\"", Where::Portable},
      {"nothing inside", kOdd, Ask::String, "S", "f", "", Where::Portable},
      {"one pair only", kOdd, Ask::String, "S", "g", "'q'"},
      {"text behind", kOdd, Ask::String, "S", "h", "\"m\" n", Where::Portable},
      {"not closed", kOdd, Ask::String, "S", "i", "\"open", Where::Portable},
      {"inside too", kOdd, Ask::String, "S", "l", "a\"b", Where::Portable},
      {"pair in a pair", kOdd, Ask::String, "S", "m", "\"x\""},
      {"quoted key, bare", kOdd, Ask::String, "S", "k", "DEF"},
      {"quoted key", kOdd, Ask::String, "S", "\"k\"", "1"},
  };
  Check(rows);
}

TEST_P(ProfileReading, SectionsAndKeys) {
  constexpr std::string_view kTwice = "[S]\r\na=1\r\n[T]\r\nz=0\r\n[s]\r\na=2\r\nb=3\r\n";
  constexpr std::string_view kRepeated = "[S]\r\na=1\r\nA=2\r\nb=3\r\na=4\r\n";
  constexpr std::string_view kSigns = "[S]\r\nonly\r\nk=\r\nk2==x\r\nk3=a=b\r\n";
  const Row rows[] = {
      {"first section wins", kTwice, Ask::Section, "S", "", "a=1|"},
      {"whatever case is asked", kTwice, Ask::Section, "s", "", "a=1|"},
      {"later one never seen", kTwice, Ask::String, "S", "b", "DEF"},
      {"empty first section", "[S]\r\n[T]\r\nz=0\r\n[S]\r\na=2\r\n", Ask::Section, "S", "", ""},
      {"repeats in file order", kRepeated, Ask::Section, "S", "", "a=1|A=2|b=3|a=4|"},
      {"first key wins", kRepeated, Ask::String, "S", "A", "1"},
      {"case of both", "[SeCt]\r\nKeY=Val\r\n", Ask::String, "sect", "key", "Val"},
      {"spelling kept", "[SeCt]\r\nKeY=Val\r\n", Ask::Section, "SECT", "", "KeY=Val|"},
      {"letters of 1250", "[\xC6\xA3]\r\nq=1\r\n[\xE6\xB3]\r\nq=2\r\n", Ask::Section, "\xE6\xB3", "", "q=1|",
       Where::Portable},
      {"with and without value", kSigns, Ask::Section, "S", "", "only|k=|k2==x|k3=a=b|"},
      {"no sign is absent", kSigns, Ask::String, "S", "only", "DEF"},
      {"empty value", kSigns, Ask::String, "S", "k", ""},
      {"sign twice", kSigns, Ask::String, "S", "k2", "=x"},
      {"sign in the value", kSigns, Ask::String, "S", "k3", "a=b"},
      {"no key", "[S]\r\n=v\r\n", Ask::Section, "S", "", "=v|"},
      {"lines without key", "[S]\r\n=v\r\n==w\r\n=\r\nk=\r\n", Ask::Section, "S", "", "=v|==w|=|k=|",
       Where::Portable},
      {"before the first header", "a=0\r\n[S]\r\na=1\r\n", Ask::Section, "S", "", "a=1|"},
      {"belongs to nothing", "a=0\r\n[S]\r\na=1\r\n", Ask::Section, "", "", "", Where::Portable},
      {"header without name", "[]\r\nf=6\r\n", Ask::Section, "", "", "f=6|", Where::Portable},
      {"header not closed", "[T]\r\nb=2\r\n[U\r\nc=3\r\n", Ask::Section, "T", "", "b=2|", Where::Portable},
      {"is one to its end", "[T]\r\nb=2\r\n[U\r\nc=3\r\n", Ask::Section, "U", "", "c=3|", Where::Portable},
      {"text behind a header", "[V]tail\r\nd=4\r\n", Ask::Section, "V", "", "d=4|"},
      {"comment behind a header", "[P] ;c\r\nj=1\r\n", Ask::Section, "P", "", "j=1|"},
      {"blanks before a header", "  [W]\r\ne=5\r\n", Ask::Section, "W", "", "e=5|"},
      {"first bracket ends", "[X]]\r\ng=7\r\n", Ask::Section, "X", "", "g=7|", Where::Portable},
      {"second is none", "[X]]\r\ng=7\r\n", Ask::Section, "X]", "", "", Where::Portable},
      {"bracket in a name", "[[Y]\r\nh=8\r\nx [Z]\r\ni=9\r\n", Ask::Section, "[Y", "", "h=8|x [Z]|i=9|"},
      {"bracket inside a line", "[[Y]\r\nh=8\r\nx [Z]\r\ni=9\r\n", Ask::Section, "Z", "", ""},
      {"entry on the header's line", "[S]a=1\r\nb=2\r\n", Ask::Section, "S", "", "b=2|"},
      {"no line end", "[S]\r\na=1", Ask::Section, "S", "", "a=1|"},
      {"header alone", "[S]", Ask::Section, "S", "", ""},
      {"empty file", "", Ask::Section, "S", "", ""},
      {"date and time as name", "[05.02.2003 7:08 AM]\r\nk=1\r\n", Ask::String, "05.02.2003 7:08 AM", "k", "1"},
  };
  Check(rows);
}

TEST_P(ProfileReading, LineEndsEncodingsAndOddBytes) {
  constexpr std::string_view kMarked = "\xEF\xBB\xBF[S]\r\na=1\r\n[T]\r\nb=2\r\n";
  const Row rows[] = {
      {"LF", "[S]\na=1\nb=2\n", Ask::Section, "S", "", "a=1|b=2|"},
      {"CR", "[S]\ra=1\rb=2\r", Ask::Section, "S", "", "a=1|b=2|"},
      {"mixed", "[S]\r\r\na=1\n\rb=2\r\n", Ask::Section, "S", "", "a=1|b=2|", Where::Portable},
      {"UTF-8 mark hides the first header", kMarked, Ask::Section, "S", "", "", Where::Portable},
      {"not the second", kMarked, Ask::Section, "T", "", "b=2|"},
      {"UTF-8 mark on a line of its own", "\xEF\xBB\xBF\r\n[S]\r\na=1\r\n", Ask::Section, "S", "", "a=1|"},
      {"UTF-8 is not converted", "\xEF\xBB\xBF;c\r\n[S]\r\na=\xC5\x82\r\n", Ask::String, "S", "a", "\xC5\x82",
       Where::Portable},
      {"UTF-16", "\xFF\xFE[\0S\0]\0\r\0\n\0a\0=\0\x41\x01\r\0\n\0"sv, Ask::String, "S", "a", "\xA3",
       Where::Portable},
      {"UTF-16 without mark", "[\0S\0]\0\n\0a\0=\0b\0\n\0"sv, Ask::Section, "S", "", ""},
      {"UTF-16 big-endian", "\xFE\xFF\0[\0S\0]\0\n\0a\0=\0b\0\n"sv, Ask::Section, "S", "", "", Where::Portable},
      {"1A at a line's end", "[S]\r\na=1\x1A\r\n\x1A\r\nb=2\r\n", Ask::Section, "S", "", "a=1|b=2|",
       Where::Portable},
      {"NUL in a value", "[S]\r\na=1\0x\r\nb=2\r\n"sv, Ask::String, "S", "a", "1", Where::Portable},
      {"NUL at the end", "[S]\r\na=1\r\n\0"sv, Ask::Section, "S", "", "a=1|"},
      {"high bytes", "[S]\r\na=\x80\x81\x9D\xB3\xFF\r\n", Ask::String, "S", "a", "\x80\x81\x9D\xB3\xFF"},
  };
  Check(rows);
}

TEST_P(ProfileReading, Numbers) {
  const struct {
    std::string_view value;
    std::int32_t number;
    Where where = Where::Everywhere;
  } rows[] = {
      {"12", 12}, {"  9", 9}, {"9  ", 9}, {"\t3", 3}, {"+7", 7}, {"-5", -5}, {"12abc", 12}, {"1.9", 1},
      {"1,9", 1}, {"1 2", 1}, {"1e3", 1}, {"abc", 0}, {"x1", 0}, {"-", 0}, {"+", 0}, {"- 5", 0}, {"+-5", 0},
      {"--5", 0}, {"\xB2", 0}, {"010", 10}, {"2147483648", -2147483647 - 1}, {"4294967295", -1},
      {"4294967296", 0}, {"4294967297", 1}, {"-4294967297", -1}, {"42A94967297", 42}, {"B4294967297", 0},
      {"0x1F", 31}, {"0x1G", 1}, {"-0x10", -16, Where::Portable}, {"0X1f", 0, Where::Portable},
      {"0x", 0, Where::Portable}, {"0b101", 5, Where::Portable}, {"0o17", 15, Where::Portable},
      {"'4'", 4, Where::Portable}, {"\"5\"", 5, Where::Portable}, {"\"6", 0, Where::Portable},
      {"", 77, Where::Portable}, {"99999999999", 1215752191, Where::Portable},
  };
  for (const auto& row : rows) {
    if (row.where == Where::Portable && !GetParam().isPortable) continue;
    folder.Write(u"t.ini", "[S]\r\nk=" + std::string(row.value) + "\r\n");
    EXPECT_EQ(profile->Int("S", "k", 77, path), row.number) << row.value;
  }
  for (const std::string_view file : {"", "[S]\r\n", "[S]\r\nk\r\n"}) {
    folder.Write(u"t.ini", file);
    EXPECT_EQ(profile->Int("S", "k", -77, path), -77) << file;
  }
}

TEST_P(ProfileReading, WhatCannotBeReadIsNothing) {
  const std::u16string places[] = {folder.PathOf(u"none.ini"), folder.PathOf(u"no/none.ini"), folder.Path(),
                                   u"zimbrat-no-folder.ini",
                                   path + std::u16string(1, u'\0') + u"x"};
  folder.Write(u"t.ini", "[S]\r\nk=1\r\n");
  for (const std::u16string& place : places) {
    char room[16] = "###############";
    EXPECT_EQ(profile->Section("S", room, place), 0u) << Utf8FromUtf16(place);
    EXPECT_EQ(room[0], '\0');
    EXPECT_EQ(profile->String("S", "k", "  d e  ", std::span(room).first(10), place),
              place.find(u'\0') == std::u16string::npos || GetParam().isPortable ? 5u : 0u);
    EXPECT_EQ(profile->Int("S", "k", 77, place), 77);
  }
}

TEST_P(ProfileReading, FileHeldByAnotherIsNothing) {
  folder.Write(u"t.ini", "[S]\r\nk=1\r\n");
  char room[16];
  {
    const auto held = system.files->Open(path, OpenMode::Read, Sharing::None);
    EXPECT_EQ(profile->Section("S", room, path), 0u);
    EXPECT_EQ(profile->String("S", "k", "DEF", room, path), 3u);
  }
  EXPECT_EQ(profile->Section("S", room, path), 4u);
}

TEST_P(ProfileReading, EachCallSeesTheFileAsItIs) {
  char room[16];
  for (const char* value : {"1", "22", "33", "4"}) {
    folder.Write(u"t.ini", std::string("[S]\r\nk=") + value);
    profile->String("S", "k", "DEF", room, path);
    EXPECT_STREQ(room, value);
  }
}

TEST_P(ProfileReading, PathsMayHoldAnyLetters) {
  folder.Write(u"Łódź Ελ/ţ.stb", "[S]\r\nk=\xB3\r\n");
  const std::u16string odd = folder.PathOf(u"Łódź Ελ/ţ.stb");
  char room[16];
  EXPECT_EQ(profile->Section("S", room, odd), 4u);
  EXPECT_EQ(std::string_view(room), "k=\xB3");
  EXPECT_EQ(profile->String("S", "k", "", room, odd), 1u);
  EXPECT_EQ(profile->Int("S", "none", 5, odd), 5);
  const std::string key = "n", value = "\xB9";
  EXPECT_TRUE(profile->Write("S", &key, &value, odd));
  EXPECT_EQ(folder.Read(u"Łódź Ελ/ţ.stb"), "[S]\r\nk=\xB3\r\nn=\xB9\r\n");
}

INSTANTIATE_TEST_SUITE_P(Every, ProfileReading, testing::ValuesIn(tests::ProfileMakers()),
                         tests::MakerName<tests::ProfileMaker>);

}  // namespace
}  // namespace zimbrat::platform

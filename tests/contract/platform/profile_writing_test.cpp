// What writing to a profile file leaves behind.
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "makers.h"
#include "platform/system.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using namespace std::string_view_literals;

enum class Where { Everywhere, Portable };

struct Step {
  std::string section;
  std::optional<std::string> key, value;
};

struct Row {
  const char* name;
  std::optional<std::string_view> before;
  std::vector<Step> steps;
  std::string_view after;
  Where where = Where::Everywhere;
};

class ProfileWriting : public testing::TestWithParam<tests::ProfileMaker> {
 protected:
  bool Write(const Step& step, const std::u16string& place) {
    return profile->Write(step.section, step.key ? &*step.key : nullptr, step.value ? &*step.value : nullptr,
                          place);
  }
  void Check(const std::vector<Row>& rows) {
    int number = 0;
    for (const Row& row : rows) {
      if (row.where == Where::Portable && !GetParam().isPortable) continue;
      // A new file for each row: the system may have kept something of an old one.
      const std::u16string name = u"t" + std::u16string(1, static_cast<char16_t>(u'A' + number++)) + u".ini";
      if (row.before) folder.Write(name, *row.before);
      for (const Step& step : row.steps) EXPECT_TRUE(Write(step, folder.PathOf(name))) << row.name;
      EXPECT_EQ(folder.Read(name), row.after) << row.name;
    }
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  std::unique_ptr<Profile> profile = GetParam().make(*system.files);
};

TEST_P(ProfileWriting, SetsKeys) {
  Check({
      {"makes the file", {}, {{"S", "a", "1"}}, "[S]\r\na=1\r\n"},
      {"new keys in order", "[S]\r\na=1\r\n", {{"S", "b", "2"}, {"S", "c", "3"}}, "[S]\r\na=1\r\nb=2\r\nc=3\r\n"},
      {"new section at the end", "[S]\r\na=1\r\n", {{"T", "c", "3"}, {"S", "d", "4"}},
       "[S]\r\na=1\r\nd=4\r\n[T]\r\nc=3\r\n"},
      {"spelling of the file", "[S]\r\na=1\r\n", {{"s", "A", "11"}}, "[S]\r\na=11\r\n"},
      {"empty value", "[S]\r\n", {{"S", "e", ""}}, "[S]\r\ne=\r\n"},
      {"blanks given", "[S]\r\n", {{"S", " f ", " x "}}, "[S]\r\nf= x \r\n", Where::Portable},
      {"quotes given", "[S]\r\n", {{"S", "g", "\"q\""}}, "[S]\r\ng=\"q\"\r\n"},
      {"blanks of the section", "[S]\r\n", {{" S ", "h", "8"}}, "[S]\r\nh=8\r\n"},
      {"sign in the value", "[S]\r\n", {{"S", "i", "a=b"}}, "[S]\r\ni=a=b\r\n"},
      {"line end in the value", "[S]\r\n", {{"S", "n", "a\r\nb=c"}}, "[S]\r\nn=a\r\nb=c\r\n"},
      {"bracket in the section", "[S]\r\n", {{"a]b", "k", "1"}}, "[S]\r\n[a]b]\r\nk=1\r\n"},
      {"no final line end, same section", "[S]\r\na=1", {{"S", "b", "2"}}, "[S]\r\na=1\r\nb=2\r\n"},
      {"no final line end, new section", "[S]\r\na=1", {{"T", "b", "2"}}, "[S]\r\na=1\r\n[T]\r\nb=2\r\n"},
      {"header alone without line end", "[S]", {{"S", "b", "2"}}, "[S]\r\nb=2\r\n"},
      {"LF lines stay", "[S]\na=1\nb=2\n", {{"S", "a", "7"}}, "[S]\na=7\r\nb=2\n", Where::Portable},
      {"odd lines stay", "\r\n[S] ;x\r\n\r\n a = 1\r\n;c\r\n", {{"S", "b", "2"}},
       "\r\n[S] ;x\r\n\r\n a = 1\r\nb=2\r\n;c\r\n", Where::Portable},
      {"comments between", "[S]\r\na=1\r\n;c\r\nb=2\r\n", {{"S", "a", "5"}, {"S", "d", "3"}},
       "[S]\r\na=5\r\n;c\r\nb=2\r\nd=3\r\n"},
      {"first of two sections", "[S]\r\na=1\r\n[S]\r\nb=2\r\n", {{"S", "b", "9"}},
       "[S]\r\na=1\r\nb=9\r\n[S]\r\nb=2\r\n"},
      {"first of two keys", "[S]\r\na=1\r\na=2\r\n", {{"S", "a", "9"}}, "[S]\r\na=9\r\na=2\r\n"},
      {"bytes as given", "[S]\r\n", {{"S", "\xB3\xF3", "\x9F\x81"}}, "[S]\r\n\xB3\xF3=\x9F\x81\r\n"},
      {"error log", "", {{"2003-02-05 07:08", "\xAFr\xF3\x64\xB3o", "x [RegBaseKeySave]"}},
       "[2003-02-05 07:08]\r\n\xAFr\xF3\x64\xB3o=x [RegBaseKeySave]\r\n"},
  });
}

TEST_P(ProfileWriting, DeletesKeysAndSections) {
  Check({
      {"a key, twice", "[S]\r\na=1\r\nb=2\r\n", {{"S", "b", {}}, {"S", "b", {}}}, "[S]\r\na=1\r\n"},
      {"the last key", "[S]\r\na=1\r\n", {{"S", "a", {}}}, "[S]\r\n"},
      {"first of two keys", "[S]\r\na=1\r\na=2\r\n", {{"S", "a", {}}}, "[S]\r\na=2\r\n"},
      {"a section", "[S]\r\na=1\r\n[T]\r\nb=2\r\n", {{"S", {}, {}}}, "[T]\r\nb=2\r\n"},
      {"its comments stay", "[S]\r\na=1\r\n;c\r\nb=2\r\n[T]\r\n", {{"S", {}, {}}}, ";c\r\n[T]\r\n",
       Where::Portable},
      {"first of two sections", "[S]\r\na=1\r\n[S]\r\nb=2\r\n", {{"S", {}, {}}}, "[S]\r\nb=2\r\n"},
      {"absent section", "[S]\r\na=1\r\n", {{"T", {}, {}}}, "[S]\r\na=1\r\n"},
  });
}

TEST_P(ProfileWriting, KeepsTheEncodingOfMarkedFiles) {
  Check({
      {"UTF-16", "\xFF\xFE[\0S\0]\0\r\0\n\0x\0=\0\x42\x01\r\0\n\0"sv, {{"S", "k", "\xB3"}},
       "\xFF\xFE[\0S\0]\0\r\0\n\0x\0=\0\x42\x01\r\0\n\0k\0=\0\x42\x01\r\0\n\0"sv, Where::Portable},
      {"UTF-16 mark alone", "\xFF\xFE", {{"S", "k", "\xB3"}},
       "\xFF\xFE\r\0\n\0[\0S\0]\0\r\0\n\0k\0=\0\x42\x01\r\0\n\0"sv, Where::Portable},
      {"UTF-8 mark alone", "\xEF\xBB\xBF", {{"S", "k", "\xB3"}}, "\xEF\xBB\xBF\r\n[S]\r\nk=\xB3\r\n",
       Where::Portable},
  });
}

TEST_P(ProfileWriting, WhatCannotBeWrittenIsFalse) {
  folder.Write(u"t.ini", "[S]\r\na=1\r\n");
  const Step step{"S", "a", "2"};
  EXPECT_FALSE(Write(step, folder.PathOf(u"no/t.ini")));
  EXPECT_FALSE(Write(step, folder.Path()));
  const auto held = system.files->Open(folder.PathOf(u"t.ini"), OpenMode::Read, Sharing::Readers);
  EXPECT_FALSE(Write(step, folder.PathOf(u"t.ini")));
  EXPECT_EQ(folder.Read(u"t.ini"), "[S]\r\na=1\r\n");
}

INSTANTIATE_TEST_SUITE_P(Every, ProfileWriting, testing::ValuesIn(tests::ProfileMakers()),
                         tests::MakerName<tests::ProfileMaker>);

}  // namespace
}  // namespace zimbrat::platform

#include <gtest/gtest.h>

#include "platform/portable/registry.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/registry_values.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using tests::NumberValue;
using tests::TextOf;
using tests::TextValue;

std::string Utf16File(std::u16string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

class RegistryTextTest : public testing::Test {
 protected:
  std::unique_ptr<RegistryKey> Create(std::u16string_view path) {
    std::unique_ptr<RegistryKey> key;
    EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, path, key), kRegistrySuccess);
    return key;
  }
  RegistryValue Read(std::u16string_view path, std::u16string_view name) {
    std::unique_ptr<RegistryKey> key;
    RegistryValue value;
    if (registry.OpenKey(RegistryRoot::CurrentUser, path, RegistryAccess::Read, key) == 0) {
      key->Query(name, value);
    }
    return value;
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  PortableRegistry registry{*system.files, folder.PathOf(u"kalmix/rejestr.reg")};
};

TEST_F(RegistryTextTest, FileIsWhatWindowsImports) {
  const auto key = Create(u"SOFTWARE\\Próba");
  key->Set(u"Folder \"a\"", TextValue(u"C:\\Łódź"));
  key->Set(u"", TextValue(u""));
  key->Set(u"Liczba", NumberValue(0x1F));
  key->Set(u"Wiersze", TextValue(u"a\nb"));
  key->Set(u"Puste", {kRegSz, {}});
  key->Set(u"Bajty", {3, {std::byte{1}, std::byte{0xAB}}});
  EXPECT_EQ(folder.Read(u"kalmix/rejestr.reg"),
            Utf16File(u"Windows Registry Editor Version 5.00\r\n"
                      u"\r\n[HKEY_CURRENT_USER]\r\n"
                      u"\r\n[HKEY_CURRENT_USER\\SOFTWARE]\r\n"
                      u"\r\n[HKEY_CURRENT_USER\\SOFTWARE\\Próba]\r\n"
                      u"@=\"\"\r\n"
                      u"\"Bajty\"=hex:01,ab\r\n"
                      u"\"Folder \\\"a\\\"\"=\"C:\\\\Łódź\"\r\n"
                      u"\"Liczba\"=dword:0000001f\r\n"
                      u"\"Puste\"=hex(1):\r\n"
                      u"\"Wiersze\"=hex(1):61,00,0a,00,62,00,00,00\r\n"));
}

TEST_F(RegistryTextTest, EveryValueComesBackAsItWas) {
  const auto key = Create(u"K");
  RegistryValue longBytes{7, std::vector<std::byte>(1000, std::byte{0x5A})};
  const RegistryValue rows[] = {
      TextValue(u""),       TextValue(u"\"\\"),    TextValue(u"a\r\nb"), TextValue(u"a\\"),
      TextValue(u"\xD800"), TextValue({u"a\0", 2}), {kRegSz, {}},         {kRegSz, {std::byte{65}}},
      NumberValue(0),       NumberValue(~0u),      {kRegDword, {}},      longBytes,
      {0xABCDEF01, {std::byte{1}}},
  };
  int number = 0;
  for (const RegistryValue& row : rows) key->Set(DecimalText(number++), row);
  PortableRegistry other(*system.files, folder.PathOf(u"kalmix/rejestr.reg"));
  std::unique_ptr<RegistryKey> read;
  ASSERT_EQ(other.OpenKey(RegistryRoot::CurrentUser, u"k", RegistryAccess::Read, read), 0);
  number = 0;
  for (const RegistryValue& row : rows) {
    RegistryValue value;
    ASSERT_EQ(read->Query(DecimalText(number), value), kRegistrySuccess);
    EXPECT_EQ(value.type, row.type) << number;
    EXPECT_EQ(value.data, row.data) << number;
    ++number;
  }
}

TEST_F(RegistryTextTest, ReadsWhatOthersWrite) {
  const std::u16string_view text =
      u"Windows Registry Editor Version 5.00\n\n; uwaga \\\n[hkey_current_user\\K]\n"
      u"  \"a\" = \"ż\"  \n\"b\"=hex(1):41,\\\n  00,\\\n  00,00\n\"c\"=DWORD\n";
  const std::u16string_view right = text.substr(0, text.find(u"\"c\""));
  for (const std::string& bytes : {Utf16File(right), Utf8FromUtf16(right),
                                   "\xEF\xBB\xBF" + Utf8FromUtf16(right)}) {
    folder.Write(u"kalmix/rejestr.reg", bytes);
    EXPECT_EQ(TextOf(Read(u"K", u"A")), u"ż");
    EXPECT_EQ(TextOf(Read(u"K", u"b")), u"A");
  }
}

TEST_F(RegistryTextTest, SpellingOfTheFirstWriterStays) {
  Create(u"Firma")->Set(u"Folder", TextValue(u"1"));
  Create(u"FIRMA")->Set(u"FOLDER", TextValue(u"2"));
  std::u16string name;
  EXPECT_EQ(Create(u"")->EnumerateKey(0, name), kRegistrySuccess);
  EXPECT_EQ(name, u"Firma");
  EXPECT_EQ(TextOf(Read(u"firma", u"folder")), u"2");
}

TEST_F(RegistryTextTest, PlaceFollowsTheEnvironment) {
  struct Variables : Environment {
    std::u16string own, config, home;
    std::u16string Variable(std::u16string_view name) override {
      return name == u"ZIMBRAT_REJESTR" ? own : name == u"XDG_CONFIG_HOME" ? config : home;
    }
    std::u16string ProgramFolder() override { return {}; }
    void SetCurrentFolder(std::u16string_view) override {}
    std::u16string CurrentFolder() override { return {}; }
    std::u16string TemporaryFolder() override { return {}; }
  } variables;
  variables.home = u"h";
  EXPECT_EQ(RegistryFilePath(variables),
            JoinPath(JoinPath(JoinPath(u"h", u".config"), u"kalmix"), u"rejestr.reg"));
  variables.config = u"c";
  EXPECT_EQ(RegistryFilePath(variables), JoinPath(JoinPath(u"c", u"kalmix"), u"rejestr.reg"));
  variables.own = u"x.reg";
  EXPECT_EQ(RegistryFilePath(variables), u"x.reg");
}

}  // namespace
}  // namespace zimbrat::platform

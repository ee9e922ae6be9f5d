// What every Registry answers.
#include <gtest/gtest.h>

#include "makers.h"
#include "tests/support/registry_values.h"

namespace zimbrat::platform {
namespace {

using tests::NumberValue;
using tests::TextOf;
using tests::TextValue;

class RegistryContract : public testing::TestWithParam<tests::RegistryMaker> {
 protected:
  std::unique_ptr<RegistryKey> Create(std::u16string_view path) {
    std::unique_ptr<RegistryKey> key;
    EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, path, key), kRegistrySuccess);
    return key;
  }
  std::int32_t Open(std::u16string_view path, std::unique_ptr<RegistryKey>& key,
                    RegistryAccess access = RegistryAccess::All) {
    return registry.OpenKey(RegistryRoot::CurrentUser, path, access, key);
  }
  std::vector<std::u16string> Subkeys(std::u16string_view path) {
    std::unique_ptr<RegistryKey> key;
    std::vector<std::u16string> names;
    if (Open(path, key, RegistryAccess::Read) != kRegistrySuccess) return names;
    std::u16string name;
    std::uint32_t index = 0;
    std::int32_t result = kRegistrySuccess;
    while ((result = key->EnumerateKey(index++, name)) == kRegistrySuccess) names.push_back(name);
    EXPECT_EQ(result, kRegistryNoMoreItems);
    return names;
  }

  std::unique_ptr<tests::RegistryBench> bench = GetParam().make();
  Registry& registry = bench->Get();
};

TEST_P(RegistryContract, MissingKeysAndValuesAreNotFound) {
  std::unique_ptr<RegistryKey> key;
  EXPECT_EQ(Open(u"SOFTWARE\\None", key), kRegistryNotFound);
  EXPECT_FALSE(key);
  RegistryValue value;
  EXPECT_EQ(Create(u"SOFTWARE\\Some")->Query(u"v", value), kRegistryNotFound);
  EXPECT_EQ(Open(u"software\\SOME", key), kRegistrySuccess);
}

TEST_P(RegistryContract, CreateMakesAllKeysOfThePathAndKeepsWhatIsThere) {
  Create(u"a\\b\\c")->Set(u"v", TextValue(u"1"));
  const auto again = Create(u"A\\B\\C");
  RegistryValue value;
  ASSERT_EQ(again->Query(u"V", value), kRegistrySuccess);
  EXPECT_EQ(TextOf(value), u"1");
  EXPECT_EQ(Subkeys(u"a"), std::vector<std::u16string>{u"b"});
}

TEST_P(RegistryContract, ValuesKeepTypeAndBytes) {
  const auto key = Create(u"k");
  const std::pair<std::u16string, RegistryValue> rows[] = {
      {u"Zapisz błędy", TextValue(u"1")},  {u"pusty", TextValue(u"")},   {u"bez końca", {kRegSz, {}}},
      {u"litery", TextValue(u"ĄŻź ☺ \"\\")}, {u"liczba", NumberValue(0xFFFFFFFF)},
      {u"", TextValue(u"domyślna")},         {u"wiersze", TextValue(u"a\r\nb")},
      {u"długi", TextValue(std::u16string(5000, u'ś'))},
  };
  for (const auto& [name, value] : rows) ASSERT_EQ(key->Set(name, value), kRegistrySuccess);
  for (const auto& [name, expected] : rows) {
    RegistryValue value;
    ASSERT_EQ(key->Query(name, value), kRegistrySuccess);
    EXPECT_EQ(value.type, expected.type);
    EXPECT_EQ(value.data, expected.data);
  }
}

TEST_P(RegistryContract, SetReplacesTypeAndText) {
  const auto key = Create(u"k");
  key->Set(u"v", TextValue(u"longer text"));
  key->Set(u"V", NumberValue(7));
  RegistryValue value;
  ASSERT_EQ(key->Query(u"v", value), kRegistrySuccess);
  EXPECT_EQ(value.data, NumberValue(7).data);
}

TEST_P(RegistryContract, EnumeratesByUpperCasedName) {
  const std::vector<std::u16string> names = {u"10", u"2", u"aa", u"B2", u"C",  u"z",
                                             u"z b", u"z_", u"ć",  u"ł"};
  for (auto name = names.rbegin(); name != names.rend(); ++name) Create(u"list\\" + *name + u"\\sub");
  EXPECT_EQ(Subkeys(u"list"), names);
  EXPECT_EQ(Subkeys(u"list\\aa"), std::vector<std::u16string>{u"sub"});
  EXPECT_TRUE(Subkeys(u"list\\aa\\sub").empty());
}

TEST_P(RegistryContract, EmptyPathIsTheRoot) {
  Create(u"")->Set(u"Zapisz błędy", TextValue(u"0"));
  std::unique_ptr<RegistryKey> key;
  RegistryValue value;
  ASSERT_EQ(Open(u"", key, RegistryAccess::Read), kRegistrySuccess);
  ASSERT_EQ(key->Query(u"Zapisz błędy", value), kRegistrySuccess);
  EXPECT_EQ(TextOf(value), u"0");
}

TEST_P(RegistryContract, KeyOpenedForReadingRefusesToWrite) {
  Create(u"k");
  std::unique_ptr<RegistryKey> key;
  ASSERT_EQ(Open(u"k", key, RegistryAccess::Read), kRegistrySuccess);
  EXPECT_EQ(key->Set(u"v", TextValue(u"x")), kRegistryAccessDenied);
}

TEST_P(RegistryContract, NamesUpTo255Units) {
  const std::u16string longest(255, u'ż');
  Create(u"k\\" + longest);
  EXPECT_EQ(Subkeys(u"k"), std::vector<std::u16string>{longest});
  std::unique_ptr<RegistryKey> key;
  const std::u16string tooLong(300, u'ż');  // Wine's own limit is a little above 255
  EXPECT_NE(registry.CreateKey(RegistryRoot::CurrentUser, u"k\\" + tooLong, key), 0);
  EXPECT_FALSE(key);
  const std::u16string cut = u"k" + std::u16string(1, u'\0') + u"x";
  EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, cut, key), kRegistryInvalidParameter);
}

INSTANTIATE_TEST_SUITE_P(Every, RegistryContract, testing::ValuesIn(tests::RegistryMakers()),
                         tests::MakerName<tests::RegistryMaker>);

}  // namespace
}  // namespace zimbrat::platform

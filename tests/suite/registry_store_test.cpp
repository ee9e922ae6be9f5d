#include <gtest/gtest.h>

#include "suite/ModSysReg.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

using suite::RegVariant;

constexpr std::u16string_view kKey = u"SOFTWARE\\Orvane\\Kalmix\\Próba";

void PutRaw(Bench& bench, std::u16string_view name, platform::RegistryValue value) {
  std::unique_ptr<platform::RegistryKey> key;
  ASSERT_EQ(bench.registry.CreateKey(platform::RegistryRoot::CurrentUser, kKey, key), 0);
  ASSERT_EQ(key->Set(name, value), 0);
}

std::string Read(Bench& bench, std::u16string_view name, std::u16string_view otherwise) {
  return Utf8(suite::RegStringRead(bench.registry, kKey, name, otherwise));
}

TEST(RegistryStore, ReadsBackWhatWasSaved) {
  Bench bench;
  suite::RegStringSave(bench.registry, kKey, u"Zażółć", u"gęślą \"jaźń\"\\");
  EXPECT_EQ(Read(bench, u"Zażółć", u"x"), "gęślą \"jaźń\"\\");
}

TEST(RegistryStore, WritesADefaultBackOnlyIntoAnExistingKey) {
  Bench bench;
  EXPECT_EQ(Read(bench, u"a", u"pierwszy"), "pierwszy");
  EXPECT_EQ(Read(bench, u"a", u"drugi"), "drugi");
  suite::RegKeyCreate(bench.registry, kKey, platform::RegistryRoot::CurrentUser);
  EXPECT_EQ(Read(bench, u"a", u"trzeci"), "trzeci");
  EXPECT_EQ(Read(bench, u"a", u"czwarty"), "trzeci");
}

TEST(RegistryStore, DoesNotCreateAKeyToSetAValue) {
  Bench bench;
  suite::RegKeyValueSet(bench.registry, kKey, u"a", std::u16string(u"1"), platform::kRegSz);
  EXPECT_EQ(suite::RegKeyValueGet(bench.registry, kKey, u"a"), RegVariant());
}

TEST(RegistryStore, ShowsANumberAsDecimalTextAndWritesNothing) {
  Bench bench;
  PutRaw(bench, u"n", {platform::kRegDword, std::vector<std::byte>(4, std::byte{0xFF})});
  EXPECT_EQ(Read(bench, u"n", u"x"), "-1");
  EXPECT_EQ(suite::RegKeyValueGet(bench.registry, kKey, u"n"), RegVariant(std::int32_t{-1}));
}

TEST(RegistryStore, TakesATextOfSizeZeroAsEmptyAndOverwritesIt) {
  Bench bench;
  PutRaw(bench, u"t", {platform::kRegSz, {}});
  EXPECT_EQ(suite::RegKeyValueGet(bench.registry, kKey, u"t"), RegVariant());
  EXPECT_EQ(Read(bench, u"t", u"domyślny"), "domyślny");
  EXPECT_EQ(Read(bench, u"t", u"inny"), "domyślny");
}

TEST(RegistryStore, AnswersANullKeyWithACode) {
  RegVariant value = std::u16string(u"stays");
  EXPECT_EQ(suite::RegValueQuery(nullptr, u"a", value), platform::kRegistryInvalidHandle);
  EXPECT_EQ(suite::RegValueSet(nullptr, u"a", platform::kRegSz, value),
            platform::kRegistryInvalidHandle);
  EXPECT_EQ(suite::RegValueSet(nullptr, u"a", 3, value), platform::kRegistrySuccess);
  EXPECT_EQ(value, RegVariant(std::u16string(u"stays")));
}

TEST(RegistryStore, ListsSubkeysWithAnEmptyElementBehindThem) {
  Bench bench;
  std::vector<std::u16string> names = {u"kept"};
  EXPECT_FALSE(suite::RegSubKeysList(bench.registry, kKey, names));
  EXPECT_EQ(names, std::vector<std::u16string>{u"kept"});
  for (const char16_t* name : {u"B", u"a"}) {
    suite::RegKeyCreate(bench.registry, std::u16string(kKey) + u"\\" + name,
                        platform::RegistryRoot::CurrentUser);
  }
  EXPECT_TRUE(suite::RegSubKeysList(bench.registry, kKey, names));
  EXPECT_EQ(names, (std::vector<std::u16string>{u"a", u"B", u""}));
}

TEST(DatabaseList, RecordsAllElevenValues) {
  Bench bench;
  suite::RegBaseKeySave(bench.state, u"Firma", u"C:\\Dane\\Firma.mdb");
  const std::u16string key = std::u16string(suite::kDatabaseListKey) + u"\\Firma";
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"Folder", u"C:\\Dane\\Firma.mdb"},
      {u"Aktywna", u"1"},
      {u"Defragmentacja", u"0"},
      {u"Defragmentacja potwierdz", u"0"},
      {u"Defragmentacja co dni", u"30"},
      {u"Defragmentacja data", u""},
      {u"Kopia", u"0"},
      {u"Kopia potwierdz", u"0"},
      {u"Kopia co dni", u"3"},
      {u"Kopia data", u""},
      {u"Kopia folder", u""},
  };
  for (const auto& [name, text] : rows) {
    EXPECT_EQ(suite::RegKeyValueGet(bench.registry, key, name), RegVariant(std::u16string(text)))
        << Utf8(name);
  }
  EXPECT_TRUE(bench.host.reports.empty());
}

TEST(DatabaseList, OffersEachExistingFileOnce) {
  Bench bench;
  platform::OrvCombo list;
  EXPECT_FALSE(suite::RegBaseListLoad(bench.state, list));
  EXPECT_EQ(list.Count(), 0);

  bench.folder.Write(u"Firma.mdb", "x");
  suite::RegBaseKeySave(bench.state, u"Brak", bench.PathOf(u"Brak.mdb"));
  EXPECT_FALSE(suite::RegBaseListLoad(bench.state, list));
  EXPECT_EQ(list.Count(), 1);

  list.Clear();
  suite::RegBaseKeySave(bench.state, u"Firma", bench.PathOf(u"Firma.mdb"));
  suite::RegBaseKeySave(bench.state, u"Ta sama", bench.PathOf(u"Firma.mdb"));
  suite::RegStringSave(bench.registry, std::u16string(suite::kDatabaseListKey) + u"\\Pusta", u"x",
                       u"");
  EXPECT_TRUE(suite::RegBaseListLoad(bench.state, list));
  ASSERT_EQ(list.Count(), 2);
  EXPECT_EQ(Utf8(list.Items()[0].text), "(brak)");
  EXPECT_EQ(Utf8(list.Items()[1].text), "Firma");
  EXPECT_EQ(list.Current(), 0);
  EXPECT_TRUE(list.HiddenValue().empty());
  // An entry without a path received an empty one.
  EXPECT_EQ(suite::RegKeyValueGet(bench.registry,
                                  std::u16string(suite::kDatabaseListKey) + u"\\Pusta", u"Folder"),
            RegVariant(std::u16string()));
}

}  // namespace
}  // namespace zimbrat::tests

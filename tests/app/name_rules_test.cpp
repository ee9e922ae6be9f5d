#include "app/name_rules.h"

#include <gtest/gtest.h>

#include "app/ModFolder.h"
#include "app/new_database_run.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

TEST(DatabaseName, LosesItsExtensionInAnyCase) {
  for (const char16_t* name : {u"Firma.MDB", u"Firma.mdb", u"Firma.mDb", u"Firma"}) {
    EXPECT_EQ(Utf8(app::WithoutExtension(name)), "Firma");
  }
  EXPECT_EQ(Utf8(app::WithoutExtension(u"mdb")), "mdb");
}

TEST(DatabaseName, NamesTheForbiddenCharacter) {
  EXPECT_EQ(Utf8(*app::FindNameFault(u"a:b")),
            "Nazwa bazy danych nie może zawierać znaku „:”. Wpisz inną nazwę.");
  EXPECT_TRUE(app::FindNameFault(u"a.Mdb")) << "the list of databases would name another file";
  for (const char16_t* name :
       {u"Firma ABC", u"Żółw (kopia) 2", u"COM", u"Console", u"a.b", u"-x"}) {
    EXPECT_FALSE(app::FindNameFault(name)) << Utf8(name);
  }
}

TEST(DatabasePlace, MustLeaveRoomForTheWorkingName) {
  // Folder, separator, name, ".mdb" and what a run puts behind it: 255 together.
  const std::u16string folder(232, u'f');
  EXPECT_FALSE(app::FindPlaceFault(folder, u"Firma"));
  EXPECT_TRUE(app::FindPlaceFault(folder, u"Firmaa"));
}

TEST(DatabasePlace, ChecksOnlyThatTheFolderExists) {
  Bench bench;
  EXPECT_TRUE(app::ValidateNameAndFolder(bench.state, u" ", bench.folder.Path()));
  EXPECT_FALSE(app::ValidateNameAndFolder(bench.state, u"", bench.folder.Path()));
  bench.folder.Write(u"plik", "");
  EXPECT_FALSE(app::ValidateNameAndFolder(bench.state, u"Firma", bench.PathOf(u"plik")));
  ASSERT_EQ(bench.host.messages.size(), 2u);
  EXPECT_EQ(Utf8(bench.host.messages[0]), "Wprowadź nazwę bazy danych i spróbuj ponownie.");
  EXPECT_EQ(Utf8(bench.host.messages[1]),
            "Folder: " + Utf8(bench.PathOf(u"plik")) +
                " nie istnieje. Wprowadź nazwę istniejącego folderu.");
}

TEST(NewDatabaseRun, RefusesAnImpossibleNameBeforeAnythingIsTouched) {
  Bench bench;
  platform::ProgressBar bar;
  const auto result =
      app::RunNewDatabase(bench.state, {u"NUL", bench.folder.Path(), u"x.stb", u"", {}}, bar);
  EXPECT_FALSE(result.done);
  EXPECT_EQ(Utf8(result.text),
            "Nazwa „NUL” jest zastrzeżona dla urządzenia. Wpisz inną nazwę.\r\n");
  EXPECT_TRUE(bench.folder.Names().empty());
}

}  // namespace
}  // namespace zimbrat::tests

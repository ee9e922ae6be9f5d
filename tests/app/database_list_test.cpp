#include "app/database_list.h"

#include <gtest/gtest.h>

#include "suite/ModSysReg.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

TEST(DatabaseListEntry, IsNamedAsTheFileWithoutThreeSpellingsOfTheExtension) {
  const std::u16string folder = u"Dane" + std::u16string(1, platform::kPathSeparator);
  const std::tuple<const char16_t*, const char16_t*, const char16_t*> rows[] = {
      // file as given, path recorded, name
      {u"Firma", u"Firma.mdb", u"Firma"},          {u"Dane.MDB", u"Dane.MDB", u"Dane"},
      {u"Dane.Mdb", u"Dane.Mdb", u"Dane"},         {u"x.mDb", u"x.mDb", u"x.mDb"},
      {u"a.mdb.x", u"a.mdb.x.mdb", u"a.x"},        {u"a.mdb.MDB", u"a.mdb.MDB", u"a"},
      {u"Żółw mdb", u"Żółw mdb.mdb", u"Żółw mdb"},
  };
  for (const auto& [file, recorded, name] : rows) {
    Bench bench;
    std::u16string path = folder + file;
    app::DodajDoListy(bench.state, path);
    EXPECT_EQ(Utf8(path), Utf8(folder + recorded));
    EXPECT_EQ(Utf8(suite::RegStringRead(bench.registry,
                                        std::u16string(suite::kDatabaseListKey) + u"\\" + name,
                                        u"Folder", u"brak")),
              Utf8(folder + recorded))
        << Utf8(file);
  }
}

}  // namespace
}  // namespace zimbrat::tests

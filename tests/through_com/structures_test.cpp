// The same structure files through COM and through the embedded engine: databases that are alike in every object
// and property, whichever of the two looks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "tests/product/database_bench.h"
#include "tests/product/database_picture.h"
#include "tests/through_com/offered_engine.h"

namespace zimbrat::tests {
namespace {

struct Programs {
  const char* name;
  std::vector<const char16_t*> files;
};

std::ostream& operator<<(std::ostream& out, const Programs& programs) { return out << programs.name; }

class Structures : public testing::TestWithParam<Programs> {
 protected:
  // A new database of the programs.
  static void Make(DatabaseBench& bench) {
    std::u16string files;
    for (const char16_t* name : GetParam().files) {
      files += platform::JoinPath(platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY), name) + u",";
    }
    platform::ProgressBar bar;
    EXPECT_TRUE(generator::GenerujNowaBaze(bench.state, bench.folder.Path(), u"Firma", files,
                                           {11, 2025, 2, 2026}, bar))
        << bench.Summary();
  }
};

TEST_P(Structures, GiveTheSameDatabase) {
  const OfferedEngine offered;
  {
    DatabaseBench embedded;
    DatabaseBench installed(nullptr, engines::Wish::Installed);
    Make(embedded);
    Make(installed);
    EXPECT_NE(installed.state.Engine().Name(), dao::kEmbeddedEngine);
    const std::u16string made = embedded.PathOf(u"Firma.mdb");
    const std::u16string madeThroughCom = installed.PathOf(u"Firma.mdb");
    const std::vector<std::string> picture = PictureOf(embedded.state.Engine(), made);
    EXPECT_EQ(PictureOf(embedded.state.Engine(), madeThroughCom), picture);
    EXPECT_EQ(PictureOf(installed.state.Engine(), made), picture);
    EXPECT_EQ(PictureOf(installed.state.Engine(), madeThroughCom), picture);
  }
  EXPECT_EQ(offered.server.Objects(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Structures,
    testing::Values(Programs{"Invoicing", {u"faktury.stb"}}, Programs{"Payroll", {u"kadry.stb"}},
                    Programs{"Stock", {u"magazyn.stb"}},
                    Programs{"PayrollAndStock", {u"kadry.stb", u"magazyn.stb"}},
                    Programs{"All", {u"faktury.stb", u"kadry.stb", u"magazyn.stb"}},
                    Programs{"AllFromTheLast", {u"magazyn.stb", u"kadry.stb", u"faktury.stb"}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace zimbrat::tests

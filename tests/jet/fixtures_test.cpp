// Databases that Access made: every table is read, every definition and property blob survives being
// written anew, what is not ours is refused with its number.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "jet/catalog/database_file.h"
#include "jet/table/table.h"
#include "platform/error_numbers.h"
#include "platform/system.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

using tests::ErrorOf;

namespace {

std::filesystem::path FixtureFolder() {
  const char* given = std::getenv("ZIMBRAT_FIXTURES");
  return given ? std::filesystem::path(given) : std::filesystem::path("../shared/fixtures/access");
}

struct Fixture {
  const char* name;
  std::int32_t error;
  const char16_t* password;
};

// Test names are made of it.
void PrintTo(const Fixture& fixture, std::ostream* out) { *out << fixture.name; }

class AccessFiles : public ::testing::TestWithParam<Fixture> {
 protected:
  void SetUp() override {
    const auto source = FixtureFolder() / GetParam().name;
    if (!std::filesystem::exists(source)) GTEST_SKIP() << "no fixture " << source;
    path_ = folder_.PathOf(u"kopia.mdb");
    std::filesystem::copy_file(source, path_);
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  std::unique_ptr<DatabaseFile> Open() {
    return OpenDatabaseFile(*system_.files, clock_, path_, false, GetParam().password, {});
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::u16string path_;
};

}  // namespace

TEST_P(AccessFiles, AreReadWholeOrRefused) {
  if (GetParam().error != 0) {
    EXPECT_EQ(ErrorOf([&] { Open(); }), GetParam().error);
    return;
  }
  const auto database = Open();
  std::size_t tables = 0;
  const std::vector<CatalogObject> objects = database->GetCatalog().Objects();
  for (const CatalogObject& object : objects) {
    const PropertyBlob& blob = database->GetCatalog().Properties(object.id);
    EXPECT_TRUE(blob.IsEmpty() || PropertyBlob::Decode(blob.Encode()) == blob);
    if (!object.Is(ObjectType::Table)) continue;
    ++tables;
    const auto table = database->GetCatalog().Open(static_cast<PageNumber>(object.id));
    const std::vector<std::byte> once = EncodeDefinition(table->Definition());
    EXPECT_EQ(EncodeDefinition(DecodeDefinition(once, table->Page())), once);
    std::uint32_t rows = 0;
    for (RowScan scan(*table); scan.Next(); ++rows) {
      for (std::size_t i = 0; i < scan.Fields().size(); ++i) table->ValueOf(i, scan.Fields()[i]);
      const std::vector<std::byte> bytes = EncodeRow(table->Definition(), scan.Fields());
      const RowFields again = DecodeRow(table->Definition(), bytes);
      for (std::size_t i = 0; i < again.size(); ++i) EXPECT_EQ(again[i].bytes, scan.Fields()[i].bytes);
    }
    const bool counted = object.name != u"MSysACEs" && object.name != u"MSysQueries";
    if (counted) {
      EXPECT_EQ(rows, table->Definition().rows);
    }
  }
  EXPECT_GE(tables, 5u);
}

INSTANTIATE_TEST_SUITE_P(
    Files, AccessFiles,
    ::testing::Values(Fixture{"empty.mdb", 0, u""}, Fixture{"common2.mdb", 0, u""},
                      Fixture{"comp-index.mdb", 0, u""}, Fixture{"deleted-column.mdb", 0, u""},
                      Fixture{"deleted-rows.mdb", 0, u""}, Fixture{"index.mdb", 0, u""},
                      Fixture{"overflow.mdb", 0, u""}, Fixture{"fixed-text.mdb", 0, u""},
                      Fixture{"properties.mdb", 0, u""}, Fixture{"encoded.mdb", 0, u""},
                      Fixture{"password.mdb", 0, u"password"},
                      Fixture{"password.mdb", platform::kErrInvalidPassword, u"Password"},
                      Fixture{"jet3-refuse.mdb", platform::kErrUnrecognizedFormat, u""},
                      Fixture{"accdb-refuse.accdb", platform::kErrUnrecognizedFormat, u""}),
    [](const auto& param) {
      std::string name = param.param.name;
      for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
      }
      return name + (param.param.error != 0 ? "_refused" : "");
    });

}  // namespace zimbrat::jet

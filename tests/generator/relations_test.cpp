#include "platform/error_numbers.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

constexpr const char* kTables =
    "[Kontrahent]\nField=Id,4,4,,True,False,17,\nIndex=PK,True,0,True,True\nIndexField=Id,0\n"
    "[Faktura]\nField=Kon,4,4,,False,False,1,\nField=Inne,4,4,,False,False,1,\n"
    "[F]\nField=Kon,4,4,,False,False,1,\n";

class Relations : public testing::Test {
 protected:
  Relations() {
    database_ = &bench_.Create();
    const auto file = bench_.WriteStructure(u"t.stb", kTables);
    for (const char16_t* table : {u"Kontrahent", u"Faktura", u"F"}) {
      EXPECT_TRUE(bench_.Table(table, file)) << bench_.Summary();
    }
  }

  // The number of the error that reached the caller; 0 for success.
  std::int32_t Apply(std::u16string_view name, std::u16string_view line, std::string section) {
    const auto file = bench_.WriteStructure(u"r.stb", section);
    try {
      return generator::UtwórzRelacje(bench_.state, *database_, name, line, file) ? 0 : -1;
    } catch (const platform::RunTimeError& error) {
      return error.Number();
    }
  }

  DatabaseBench bench_;
  dao::Database* database_ = nullptr;
};

TEST_F(Relations, AreCreatedWholeAndLeftAloneAfterwards) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Apply(u"R", u"Kontrahent,Faktura,4352", "[R]\nx=1\nField=Id,Kon\n"), 0);
    ASSERT_EQ(database_->Relations()->Count(), 1);
    const auto relation = database_->Relations()->Item(u"R");
    EXPECT_EQ(relation->Attributes(), 4352);
    EXPECT_EQ(Utf8(relation->Table()), "Kontrahent");
    EXPECT_EQ(Utf8(relation->ForeignTable()), "Faktura");
    EXPECT_EQ(Utf8(relation->Fields()->Item(0)->ForeignName()), "Kon");
  }
}

TEST_F(Relations, CutTheirAttributesToTheLengthOfTheForeignTable) {
  EXPECT_EQ(Apply(u"R", u"Kontrahent,F,2560", "[R]\nField=Id,Kon\n"), 0);
  EXPECT_EQ(database_->Relations()->Item(u"R")->Attributes(), 2);
}

TEST_F(Relations, FailWithError438AndTheContextOfTheFailedStep) {
  EXPECT_EQ(Apply(u"R", u"Kontrahent,Faktura", "[R]\nField=Id,Kon\n"), platform::kErrNoSuchMember);
  EXPECT_EQ(Utf8(bench_.state.context.Detail), "Błąd dekodowania relacji Kontrahent,Faktura");
  EXPECT_EQ(Utf8(bench_.state.context.Line), "Kontrahent,Faktura");
  EXPECT_EQ(Utf8(bench_.state.context.Relation), "R");
  EXPECT_EQ(Utf8(bench_.state.context.Table), "Kontrahent");

  bench_.state.context.Clear();
  EXPECT_EQ(Apply(u"Brak", u"Kontrahent,Faktura,0", "[R]\nField=Id,Kon\n"),
            platform::kErrNoSuchMember);
  EXPECT_EQ(Utf8(bench_.state.context.Detail), "Błąd odczytu pól relacji ");
  EXPECT_EQ(Utf8(bench_.state.context.Line), "Kontrahent,Faktura,0");
  EXPECT_EQ(bench_.state.context.Number, 0);
}

TEST_F(Relations, HideTheEnginesOwnErrorBehind438) {
  const std::tuple<const char16_t*, const char*, std::int32_t> rows[] = {
      {u"Kontrahent,Nie ma,0", "[R]\nField=Id,Kon\n", platform::kErrObjectNotFound},
      {u"Kontrahent,Faktura,0", "[R]\nField=Id,Nie ma\n", platform::kErrInvalidFieldName},
      {u"Faktura,Kontrahent,0", "[R]\nField=Kon,Id\n", platform::kErrNoUniqueIndex},
      {u"Kontrahent,Faktura,x", "[R]\nField=Id,Kon\n", platform::kErrDataConversion},
      {u"Kontrahent,Faktura,0", "[R]\nInne=Id,Kon\n", platform::kErrRelationNoFields},
  };
  for (const auto& [line, section, number] : rows) {
    EXPECT_EQ(Apply(u"R", line, section), platform::kErrNoSuchMember) << Utf8(line);
    EXPECT_EQ(bench_.state.context.Number, number) << Utf8(line) << section;
    EXPECT_TRUE(bench_.state.context.Detail.empty());
  }
  EXPECT_EQ(database_->Relations()->Count(), 0);
}

}  // namespace
}  // namespace zimbrat::tests

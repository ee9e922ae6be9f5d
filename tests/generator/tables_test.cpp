#include "platform/error_numbers.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

TEST(NewTable, GetsFieldsAndIndexesAsWritten) {
  DatabaseBench bench;
  dao::Database& database = bench.Create();
  const auto file = bench.WriteStructure(
      u"a.stb",
      "[Towar]\nField=Id,4,4,,True,False,17,\nField=Nazwa,10,40,\"x\",True,False,2,Podaj, proszę\n"
      "Field=Obraz,11,0,,False,False,2,To nie zostanie\nField=Cena,5,8,0,False,False,1,\n"
      "Inne=bez znaczenia\nIndex=PrimaryKey,True,0,True,True\nIndexField=Id,0\nIndexField=Id,0\n"
      "Index=Nazwa,False,0,0,0\nIndexField=Nazwa,\nIndexField=Cena,\n");
  ASSERT_TRUE(bench.Table(u"Towar", file)) << bench.Summary();
  const auto table = database.TableDefs()->Item(u"Towar");
  ASSERT_EQ(table->Fields()->Count(), 4);
  const auto field = [&](std::u16string_view name) { return table->Fields()->Item(name); };
  EXPECT_EQ(field(u"Id")->Attributes() & dao::dbAutoIncrField, dao::dbAutoIncrField);
  EXPECT_EQ(field(u"Nazwa")->Size(), 40);
  EXPECT_TRUE(field(u"Nazwa")->Required());
  EXPECT_EQ(Utf8(field(u"Nazwa")->DefaultValue()), "\"x\"");
  EXPECT_EQ(Utf8(field(u"Nazwa")->ValidationText()), "Podaj, proszę");
  EXPECT_EQ(Utf8(field(u"Obraz")->ValidationText()), "");
  ASSERT_EQ(table->Indexes()->Count(), 2);
  EXPECT_TRUE(table->Indexes()->Item(u"PrimaryKey")->Primary());
  EXPECT_EQ(table->Indexes()->Item(u"PrimaryKey")->Fields()->Count(), 1);
  EXPECT_EQ(table->Indexes()->Item(u"Nazwa")->Fields()->Count(), 2);
}

TEST(ExistingTable, IsCompletedAndOtherwiseLeftAlone) {
  DatabaseBench bench;
  dao::Database& database = bench.Create();
  const auto first =
      bench.WriteStructure(u"a.stb",
                           "[T]\nField=A,10,40,\"x\",True,False,2,pierwszy\nIndex=A,False,0,0,0\n"
                           "IndexField=A,0\n");
  const auto second = bench.WriteStructure(
      u"b.stb",
      "[T]\nField=A,10,99,\"y\",False,True,2,drugi\nField=Licznik,4,4,,True,False,17,\n"
      "Index=A,False,0,1,1\nIndexField=A,0\nIndex=B,False,0,0,0\nIndexField=Licznik,0\n");
  ASSERT_TRUE(bench.Table(u"T", first)) << bench.Summary();
  ASSERT_TRUE(bench.Table(u"T", second)) << bench.Summary();
  const auto table = database.TableDefs()->Item(u"T");
  const auto kept = table->Fields()->Item(u"A");
  EXPECT_EQ(kept->Size(), 40);
  EXPECT_TRUE(kept->Required());
  EXPECT_EQ(Utf8(kept->ValidationText()), "pierwszy");
  EXPECT_TRUE(kept->AllowZeroLength());
  EXPECT_EQ(Utf8(kept->DefaultValue()), "\"y\"");
  const auto added = table->Fields()->Item(u"Licznik");
  EXPECT_EQ(added->Attributes() & dao::dbAutoIncrField, 0);
  EXPECT_TRUE(added->Required());
  EXPECT_FALSE(table->Indexes()->Item(u"A")->Unique());
  EXPECT_EQ(table->Indexes()->Count(), 2);
  // Once more: nothing to do.
  EXPECT_TRUE(bench.Table(u"T", second)) << bench.Summary();
}

struct Failure {
  const char* name;
  const char* section;
  std::int32_t number;
  const char* field;
  const char* line;
};

class TableFailure : public testing::TestWithParam<Failure> {};

TEST_P(TableFailure, IsShownUnderTheRoutinesName) {
  const Failure& row = GetParam();
  DatabaseBench bench;
  bench.Create();
  const auto before = bench.WriteStructure(
      u"a.stb", "[Jest]\nField=A,10,40,,False,False,2,\nIndex=IX,False,0,0,0\nIndexField=A,0\n");
  ASSERT_TRUE(bench.Table(u"Jest", before)) << bench.Summary();
  const auto file = bench.WriteStructure(u"b.stb", row.section);
  EXPECT_FALSE(bench.Table(u"Jest", file) && bench.Table(u"T", file));
  EXPECT_EQ(bench.state.context.Number, row.number) << bench.Summary();
  EXPECT_EQ(Utf8(bench.state.context.Detail), "Funkcja: UtwórzTablice");
  EXPECT_EQ(Utf8(bench.state.context.Field), row.field);
  EXPECT_EQ(Utf8(bench.state.context.Line), row.line);
}

constexpr const char* kSame = "[Jest]\nField=A,10,40,,False,False,2,\n";

INSTANTIATE_TEST_SUITE_P(
    Sections, TableFailure,
    testing::Values(
        Failure{"MissingSection", kSame, 0, "", ""},
        Failure{"CutRequired", "[Jest]\nIndex=N,True,0,True,False\nIndexField=A,0\n",
                platform::kErrTypeMismatch, "", ""},
        Failure{"EmptyBoolean", "[Jest]\nField=B,10,40,,True,,2,\n", platform::kErrTypeMismatch,
                "B", ""},
        Failure{"SizeOfAnExistingFieldThatIsNoNumber", "[Jest]\nField=A,10,x,,True,False,2,\n",
                platform::kErrTypeMismatch, "A", ""},
        Failure{"IndexFieldWithoutComma",
                "[Jest]\nField=B,10,4,,False,False,2,\nIndex=N,False,0,0,0\nIndexField=B\n", 0, "B",
                "B"},
        Failure{"IndexFieldBeforeAnyIndex", "[Jest]\nIndexField=A,0\n", platform::kErrObjectNotSet,
                "A", ""},
        Failure{"FieldForAnIndexThatExists",
                "[Jest]\nField=B,10,4,,False,False,2,\nIndex=IX,False,0,0,0\nIndexField=B,0\n",
                platform::kErrInvalidOperation, "B", ""},
        Failure{"TypeThatIsNoNumber", "[Jest]\nField=B,abc,4,,False,False,2,\n",
                platform::kErrDataConversion, "B", ""},
        Failure{"NameThatDiffersInCaseOnly", "[Jest]\nField=a,10,4,,False,False,2,\n",
                platform::kErrFieldDefinedTwice, "a", ""},
        Failure{"UnknownType", "[Jest]\nField=B,99,4,,False,False,2,\n",
                platform::kErrInvalidFieldType, "B", ""},
        Failure{"TableWithoutFields", "[Jest]\nX=1\n[T]\nX=1\n", platform::kErrNoFieldDefined, "",
                ""}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace zimbrat::tests

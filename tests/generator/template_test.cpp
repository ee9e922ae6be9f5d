// What is left in a template's copy.
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

constexpr const char* kKey = "Index=PrimaryKey,True,0,True,True\nIndexField=Id,0\n";

class Template : public testing::Test {
 protected:
  Template() { bench_.Create(u"baza.mdb"); }

  // A table with a counterless key and a field for references.
  void Table(std::u16string_view name) {
    const std::string section = "[" + Utf8(name) + "]\nField=Id,4,4,,True,False,1,\n"
                                "Field=Ref,4,4,,False,False,1,\n" + kKey;
    const auto file = bench_.WriteStructure(u"t.stb", section);
    ASSERT_TRUE(bench_.Table(name, file)) << bench_.Summary();
  }
  void Relation(std::u16string_view table, std::u16string_view foreign, std::int32_t attributes = 0) {
    const auto relation = Database().CreateRelation(std::u16string(table) + std::u16string(foreign),
                                                    table, foreign, dao::Value(attributes));
    const auto field = relation->CreateField(u"Id");
    field->SetForeignName(u"Ref");
    relation->Fields()->Append(field);
    Database().Relations()->Append(relation);
  }
  void Row(std::u16string_view table, int id, std::optional<int> ref = {}) {
    Database().Execute(u"INSERT INTO [" + std::u16string(table) + u"] (Id, Ref) VALUES (" +
                           platform::DecimalText(id) + u", " +
                           (ref ? platform::DecimalText(*ref) : u"NULL") + u")",
                       dao::dbFailOnError);
  }
  void Programs(bool any = true) {
    const auto file = bench_.WriteStructure(u"k.stb", kCatalogueSections);
    ASSERT_TRUE(bench_.Table(u"dbprg", file));
    if (any) Database().Execute(u"INSERT INTO dbprg (Indprg) VALUES ('AB')", dao::dbFailOnError);
  }
  void Clean() {
    bench_.Close();
    platform::ProgressBar bar;
    ASSERT_TRUE(generator::WyczyscWzorzec(bench_.state, bench_.PathOf(u"baza.mdb"), bar))
        << bench_.Summary();
    EXPECT_NO_THROW(bench_.choice.Verify(bench_.PathOf(u"baza.mdb"), {}));
    bench_.Open(u"baza.mdb");
  }
  std::string Ids(std::u16string_view table) {
    return Rows(Database(), u"SELECT Id FROM [" + std::u16string(table) + u"] ORDER BY Id");
  }
  dao::Database& Database() { return bench_.Current(); }

  DatabaseBench bench_;
};

TEST_F(Template, LosesTheRowsOfTablesWithADocumentPrefix) {
  Programs();
  const char16_t* const documents[] = {u"ZAx", u"FA", u"UMowy", u"SE y", u"KAół", u"PB1", u"BAnk"};
  const char16_t* const others[] = {u"SLx", u"fax", u"dbx", u"XZA", u"Z"};
  for (const char16_t* name : documents) Table(name), Row(name, 1);
  for (const char16_t* name : others) Table(name), Row(name, 1);
  Clean();
  for (const char16_t* name : documents) EXPECT_EQ(Ids(name), "") << Utf8(name);
  for (const char16_t* name : others) EXPECT_EQ(Ids(name), "1") << Utf8(name);
}

TEST_F(Template, EmptiesParentsAfterTheirChildrenAndCircles) {
  Programs();
  for (const char16_t* name : {u"BAa", u"FAb", u"ZAc"}) Table(name);
  Relation(u"BAa", u"FAb");
  Relation(u"FAb", u"ZAc");
  Relation(u"ZAc", u"BAa");
  Relation(u"FAb", u"FAb");
  Row(u"BAa", 1);
  Row(u"BAa", 2);
  Row(u"FAb", 1);
  Row(u"ZAc", 1, 1);
  Database().Execute(u"UPDATE FAb SET Ref = 1");
  Database().Execute(u"UPDATE BAa SET Ref = 1");
  Clean();
  for (const char16_t* name : {u"BAa", u"FAb", u"ZAc"}) EXPECT_EQ(Ids(name), "") << Utf8(name);
}

TEST_F(Template, EmptiesAChainOfRowsThatFollowOneAnother) {
  Programs();
  Table(u"FAx");
  Relation(u"FAx", u"FAx");
  Row(u"FAx", 1);
  for (int id = 2; id <= 300; ++id) Row(u"FAx", id, id - 1);
  Clean();
  EXPECT_EQ(Ids(u"FAx"), "");
}

TEST_F(Template, KeepsADocumentThatADictionaryNeedsAndNoOther) {
  Programs();
  for (const char16_t* name : {u"UMowy", u"PRacownicy"}) Table(name);
  Relation(u"UMowy", u"PRacownicy");
  for (const int id : {1, 2, 3}) Row(u"UMowy", id);
  Row(u"PRacownicy", 10, 2);
  Clean();
  EXPECT_EQ(Ids(u"UMowy"), "2");
  EXPECT_EQ(Ids(u"PRacownicy"), "10");
}

TEST_F(Template, TakesWhatBelongsToADocumentWithIt) {
  Programs();
  for (const char16_t* name : {u"FAktury", u"POzycje"}) Table(name);
  Relation(u"FAktury", u"POzycje", dao::dbRelationDeleteCascade);
  Row(u"FAktury", 1);
  Row(u"POzycje", 1, 1);
  Row(u"POzycje", 2);
  Clean();
  EXPECT_EQ(Ids(u"POzycje"), "2");
}

TEST_F(Template, IsLeftAsItIsWhereNoProgramSaysWhatThePrefixesMean) {
  Programs(false);
  Table(u"FAktury");
  Row(u"FAktury", 1);
  Clean();
  EXPECT_EQ(Ids(u"FAktury"), "1");
}

TEST_F(Template, HasNoPasswordAnyMore) {
  Programs();
  Database().NewPassword(u"", u"Zażółć gęślą jaźń123");
  bench_.state.databasePassword = u"Zażółć gęślą jaźń123";
  Clean();
  Clean();  // with a password that the database does not have
}

}  // namespace
}  // namespace zimbrat::tests

// That no difference of two databases escapes their pictures.
#include <gtest/gtest.h>

#include "tests/product/database_bench.h"
#include "tests/product/database_picture.h"

namespace zimbrat::tests {
namespace {

// All that one may decide of a small database.
struct Plan {
  std::u16string table = u"Towary";
  std::u16string field = u"Nazwa";
  std::int16_t numberType = dao::dbDouble;
  std::int32_t size = 20;
  std::int32_t attributes = 0;
  bool required = false;
  bool allowZeroLength = false;
  std::u16string defaultValue = {};
  std::u16string rule = {};
  std::u16string ruleText = {};
  std::u16string index = u"Po nazwie";
  bool primary = false;
  bool unique = false;
  bool indexRequired = false;
  bool ignoreNulls = false;
  bool isDescending = false;
  std::u16string relation = u"Powiązanie";
  std::int32_t relationAttributes = dao::dbRelationDontEnforce;
  std::u16string foreignField = u"Nazwa";
  std::u16string value = u"żółw";
  double number = 0.5;
};

void MakeTable(dao::Database& database, const Plan& plan) {
  const auto table = database.CreateTableDef(plan.table);
  const auto field = table->CreateField(plan.field, std::int32_t{dao::dbText}, plan.size);
  field->SetAttributes(plan.attributes);
  field->SetRequired(plan.required);
  field->SetAllowZeroLength(plan.allowZeroLength);
  field->SetDefaultValue(plan.defaultValue);
  field->SetValidationRule(plan.rule);
  field->SetValidationText(plan.ruleText);
  table->Fields()->Append(field);
  table->Fields()->Append(table->CreateField(u"Liczba", std::int32_t{plan.numberType}, std::int32_t{0}));
  const auto index = table->CreateIndex(plan.index);
  const auto key = index->CreateField(plan.field);
  key->SetAttributes(plan.isDescending ? dao::dbDescending : 0);
  index->Fields()->Append(key);
  index->SetPrimary(plan.primary);
  index->SetUnique(plan.unique);
  index->SetRequired(plan.indexRequired);
  index->SetIgnoreNulls(plan.ignoreNulls);
  table->Indexes()->Append(index);
  database.TableDefs()->Append(table);
}

void MakeRelation(dao::Database& database, const Plan& plan) {
  database.Execute(u"CREATE TABLE Inna (Nazwa TEXT(20), Opis TEXT(20))");
  database.TableDefs()->Refresh();
  const auto relation =
      database.CreateRelation(plan.relation, plan.table, u"Inna", plan.relationAttributes);
  const auto field = relation->CreateField(plan.field);
  field->SetForeignName(plan.foreignField);
  relation->Fields()->Append(field);
  database.Relations()->Append(relation);
}

void AddRow(dao::Database& database, const Plan& plan) {
  const auto rows = database.OpenRecordset(plan.table);
  rows->AddNew();
  rows->Fields()->Item(plan.field)->SetValue(plan.value);
  rows->Fields()->Item(u"Liczba")->SetValue(plan.number);
  rows->Update();
  rows->Close();
}

std::vector<std::string> PictureOfPlan(const Plan& plan) {
  DatabaseBench bench;
  dao::Database& database = bench.Create();
  MakeTable(database, plan);
  MakeRelation(database, plan);
  AddRow(database, plan);
  bench.Close();
  return PictureOf(bench.state.Engine(), bench.PathOf(u"baza.mdb"));
}

TEST(DatabasePicture, ShowsEachDifference) {
  const std::vector<std::string> usual = PictureOfPlan({});
  EXPECT_EQ(PictureOfPlan({}), usual);
  const Plan others[] = {
      {.table = u"Wyroby"}, {.field = u"Opis"}, {.numberType = dao::dbSingle}, {.size = 21},
      {.attributes = dao::dbFixedField}, {.required = true}, {.allowZeroLength = true},
      {.defaultValue = u"\"a\""}, {.rule = u"<>'x'"}, {.ruleText = u"Nie!"}, {.index = u"Inny"},
      {.primary = true}, {.unique = true}, {.indexRequired = true}, {.ignoreNulls = true},
      {.isDescending = true}, {.relation = u"Inne"},
      {.relationAttributes = dao::dbRelationDontEnforce | dao::dbRelationUnique},
      {.foreignField = u"Opis"}, {.value = u"żółć"}, {.number = 0.5000000000000001},
  };
  for (int i = 0; const Plan& plan : others) EXPECT_NE(PictureOfPlan(plan), usual) << "plan " << i++;
}

}  // namespace
}  // namespace zimbrat::tests

// How long objects serve: after what they were taken from is closed or deleted each member raises 3420.
#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;

struct Use {
  const char* name;
  std::function<void()> work;
};

class DaoLifetime : public DaoBench {
 public:
  // A table T with an index, a table S that refers to it, and a row in each.
  void Fill() {
    Create();
    MakeTable(u"T", {{u"A", dao::dbLong}, {u"B", dao::dbText, 10}}, {{u"PK", {u"A"}, true}, {u"NaB", {u"B"}}});
    MakeTable(u"S", {{u"A", dao::dbLong}});
    MakeRelation(u"R", u"T", u"S", 0, {{u"A", u"A"}});
    Run(u"INSERT INTO T VALUES (1, 'x')");
    Run(u"INSERT INTO S VALUES (1)");
  }

  void ExpectInvalid(const std::vector<Use>& uses) const {
    for (const Use& use : uses) EXPECT_EQ(ErrorOf(use.work), kErrObjectInvalid) << use.name;
  }
};

std::vector<Use> UsesOf(const std::shared_ptr<dao::Field>& field) {
  return {{"Field.Name", [=] { field->Name(); }},
          {"Field.Name=", [=] { field->SetName(u"Z"); }},
          {"Field.Type", [=] { field->Type(); }},
          {"Field.Size", [=] { field->Size(); }},
          {"Field.Attributes", [=] { field->Attributes(); }},
          {"Field.Required", [=] { field->Required(); }},
          {"Field.Required=", [=] { field->SetRequired(true); }},
          {"Field.AllowZeroLength=", [=] { field->SetAllowZeroLength(true); }},
          {"Field.DefaultValue", [=] { field->DefaultValue(); }},
          {"Field.DefaultValue=", [=] { field->SetDefaultValue(u"1"); }},
          {"Field.ValidationRule", [=] { field->ValidationRule(); }},
          {"Field.ValidationText=", [=] { field->SetValidationText(u"x"); }}};
}

std::vector<Use> UsesOf(const std::shared_ptr<dao::Index>& index) {
  return {{"Index.Name", [=] { index->Name(); }},         {"Index.Name=", [=] { index->SetName(u"Z"); }},
          {"Index.Primary", [=] { index->Primary(); }},   {"Index.Unique", [=] { index->Unique(); }},
          {"Index.Required", [=] { index->Required(); }}, {"Index.Foreign", [=] { index->Foreign(); }},
          {"Index.Fields", [=] { index->Fields()->Count(); }}};
}

std::vector<Use> UsesOf(const std::shared_ptr<dao::Relation>& relation) {
  return {{"Relation.Name", [=] { relation->Name(); }},
          {"Relation.Table", [=] { relation->Table(); }},
          {"Relation.ForeignTable", [=] { relation->ForeignTable(); }},
          {"Relation.Attributes", [=] { relation->Attributes(); }},
          {"Relation.Fields", [=] { relation->Fields()->Count(); }}};
}

std::vector<Use> UsesOf(const std::shared_ptr<dao::TableDef>& table) {
  return {{"TableDef.Name", [=] { table->Name(); }},
          {"TableDef.Name=", [=] { table->SetName(u"Z"); }},
          {"TableDef.Updatable", [=] { table->Updatable(); }},
          {"TableDef.Attributes", [=] { table->Attributes(); }},
          {"TableDef.RecordCount", [=] { table->RecordCount(); }},
          {"TableDef.Fields", [=] { table->Fields()->Count(); }},
          {"TableDef.Indexes", [=] { table->Indexes()->Count(); }}};
}

std::vector<Use> UsesOf(const std::shared_ptr<dao::Recordset>& rows) {
  return {{"Recordset.EOF", [=] { rows->EndOfFile(); }},        {"Recordset.BOF", [=] { rows->BeginOfFile(); }},
          {"Recordset.MoveFirst", [=] { rows->MoveFirst(); }},  {"Recordset.MoveNext", [=] { rows->MoveNext(); }},
          {"Recordset.RecordCount", [=] { rows->RecordCount(); }},
          {"Recordset.Fields", [=] { rows->Fields()->Count(); }},
          {"Recordset.AddNew", [=] { rows->AddNew(); }},        {"Recordset.Edit", [=] { rows->Edit(); }},
          {"Recordset.Update", [=] { rows->Update(); }},
          {"Recordset.CancelUpdate", [=] { rows->CancelUpdate(); }},
          {"Recordset.Delete", [=] { rows->Delete(); }},        {"Recordset.Close", [=] { rows->Close(); }}};
}

std::vector<Use> UsesOf(const std::shared_ptr<dao::Database>& database) {
  return {{"Database.Name", [=] { database->Name(); }},
          {"Database.Version", [=] { database->Version(); }},
          {"Database.Updatable", [=] { database->Updatable(); }},
          {"Database.RecordsAffected", [=] { database->RecordsAffected(); }},
          {"Database.TableDefs", [=] { database->TableDefs()->Count(); }},
          {"Database.Relations", [=] { database->Relations()->Count(); }},
          {"Database.CreateTableDef", [=] { database->CreateTableDef(u"Z"); }},
          {"Database.CreateRelation", [=] { database->CreateRelation(u"Z", u"T", u"S", Long(0)); }},
          {"Database.OpenRecordset", [=] { database->OpenRecordset(u"T"); }},
          {"Database.Execute", [=] { database->Execute(u"DELETE FROM S"); }},
          {"Database.NewPassword", [=] { database->NewPassword(u"", u"x"); }},
          {"Database.Close", [=] { database->Close(); }}};
}

TEST_F(DaoLifetime, EndsWithTheDatabase) {
  for (const bool closesWorkspace : {false, true}) {
    Fill();
    auto tables = database->TableDefs();
    auto relations = database->Relations();
    auto table = tables->Item(u"T");
    auto field = table->Fields()->Item(u"B");
    auto index = table->Indexes()->Item(u"NaB");
    auto indexField = index->Fields()->Item(0);
    auto relation = relations->Item(u"R");
    auto relationField = relation->Fields()->Item(0);
    auto rows = database->OpenRecordset(u"T");
    auto value = rows->Fields()->Item(u"B");
    closesWorkspace ? workspace->Close() : database->Close();
    ExpectInvalid(UsesOf(database));
    ExpectInvalid(UsesOf(table));
    ExpectInvalid(UsesOf(field));
    ExpectInvalid(UsesOf(index));
    ExpectInvalid(UsesOf(relation));
    ExpectInvalid(UsesOf(rows));
    ExpectInvalid({{"TableDefs.Count", [&] { tables->Count(); }},
                   {"TableDefs.Item", [&] { tables->Item(0); }},
                   {"TableDefs.Delete", [&] { tables->Delete(u"T"); }},
                   {"TableDefs.Refresh", [&] { tables->Refresh(); }},
                   {"Relations.Item", [&] { relations->Item(u"R"); }},
                   {"Relations.Delete", [&] { relations->Delete(u"R"); }},
                   {"IndexFields: Field.Name", [&] { indexField->Name(); }},
                   {"Relation: Field.ForeignName", [&] { relationField->ForeignName(); }},
                   {"Recordset: Field.Value", [&] { value->Value(); }},
                   {"Recordset: Field.Value=", [&] { value->SetValue(Text(u"y")); }}});
    system.files->Delete(path);
  }
}

TEST_F(DaoLifetime, EndsWithTheWorkspace) {
  workspace->Close();
  ExpectInvalid({{"OpenDatabase", [&] { workspace->OpenDatabase(path, true, false); }},
                 {"CreateDatabase", [&] { workspace->CreateDatabase(path, dao::dbLangGeneral, 0); }},
                 {"BeginTrans", [&] { workspace->BeginTrans(); }},
                 {"CommitTrans", [&] { workspace->CommitTrans(); }},
                 {"Rollback", [&] { workspace->Rollback(); }},
                 {"Close", [&] { workspace->Close(); }}});
  EXPECT_FALSE(folder.Exists(u"Baza.mdb"));
}

TEST_F(DaoLifetime, EndsWithADeletion) {
  Fill();
  auto table = database->TableDefs()->Item(u"T");
  auto relation = database->Relations()->Item(u"R");
  auto index = table->Indexes()->Item(u"NaB");
  auto field = table->Fields()->Item(u"B");
  database->Relations()->Delete(u"R");
  ExpectInvalid(UsesOf(relation));
  table->Indexes()->Delete(u"NaB");
  ExpectInvalid(UsesOf(index));
  table->Fields()->Delete(u"B");
  ExpectInvalid(UsesOf(field));
  database->TableDefs()->Delete(u"T");
  ExpectInvalid(UsesOf(table));
}

TEST_F(DaoLifetime, EndsWithTheRows) {
  Fill();
  auto rows = database->OpenRecordset(u"T");
  auto value = rows->Fields()->Item(u"B");
  rows->Edit();
  value->SetValue(Text(u"zgubione"));
  rows->Close();
  ExpectInvalid(UsesOf(rows));
  ExpectInvalid({{"Field.Value", [&] { value->Value(); }}, {"Field.Value=", [&] { value->SetValue(Text(u"y")); }}});
  EXPECT_EQ(Column(u"T", u"B"), std::vector<dao::Value>{Text(u"x")}) << "a pending edit is lost";
}

TEST_F(DaoLifetime, GoesOnAfterTheAppend) {
  Create();
  auto table = database->CreateTableDef(u"T");
  auto field = table->CreateField(u"A", Long(dao::dbText), Long(10));
  auto index = table->CreateIndex(u"I");
  table->Fields()->Append(field);
  index->Fields()->Append(index->CreateField(u"A"));
  table->Indexes()->Append(index);
  database->TableDefs()->Append(table);
  field->SetDefaultValue(u"\"a\"");
  index->SetName(u"J");
  table->SetName(u"U");
  EXPECT_EQ(ErrorOf([&] { table->Fields()->Append(field); }), kErrFieldAppendedTwice);
  EXPECT_EQ(ErrorOf([&] { table->Indexes()->Append(index); }), kErrIndexAppendedTwice);
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Append(table); }), kErrDuplicateName);
  Reopen();
  EXPECT_EQ(database->TableDefs()->Item(u"U")->Fields()->Item(u"A")->DefaultValue(), u"\"a\"");
  EXPECT_EQ(database->TableDefs()->Item(u"U")->Indexes()->Item(0)->Name(), u"J");
}

}  // namespace zimbrat::tests

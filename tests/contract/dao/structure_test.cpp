// Tables, fields, indexes and relations: what is kept, and what is refused with which number.
#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;
using DaoStructure = DaoBench;

// What is appended to the fields of an index or relation that exists.
constexpr std::int32_t kNoReadPermission = 3112;
const Numbers kAppendToOld = {kErrInvalidOperation, kErrPropertyFixed, 3422, kErrObjectInvalid};

TEST_F(DaoStructure, FieldsKeepTypeSizeAndProperties) {
  struct Case {
    FieldPlan plan;
    std::int32_t size;
    std::int32_t attributes;
  };
  const Case cases[] = {
      {{u"Logiczne", dao::dbBoolean, 0, 1, false, false, u"True"}, 1, 33},
      {{u"Bajt", dao::dbByte, 1, 1, true, false, u"0"}, 1, 33},
      {{u"Krótka", dao::dbInteger, 99, 1}, 2, 33},
      {{u"Licznik", dao::dbLong, 4, 17}, 4, 49},
      {{u"Waluta", dao::dbCurrency, 8, 1, false, false, u"0"}, 8, 33},
      {{u"Pojedyncza", dao::dbSingle}, 4, 33},
      {{u"Podwójna", dao::dbDouble}, 8, 33},
      {{u"Data", dao::dbDate, 8, 1, false, false, u"=Now()"}, 8, 33},
      {{u"Bajty", dao::dbBinary, 20}, 20, 34},
      {{u"Tekst", dao::dbText, 50, 2, true, true, u"\"a\"\"b\""}, 50, 34},
      {{u"TekstDomyślny", dao::dbText, 0}, 255, 34},
      {{u"TekstStały", dao::dbText, 8, 1}, 8, 33},
      {{u"Obiekt", dao::dbLongBinary}, 0, 34},
      {{u"Nota", dao::dbMemo, 0, 2, false, true}, 0, 34},
      {{u"Guid", dao::dbGUID}, 16, 34},
  };
  Create(dao::dbEncrypt);
  std::vector<FieldPlan> plans;
  for (const Case& c : cases) plans.push_back(c.plan);
  MakeTable(u"Wszystkie", plans);
  Reopen();
  auto fields = database->TableDefs()->Item(u"wszystkie")->Fields();
  ASSERT_EQ(fields->Count(), static_cast<int>(std::size(cases)));
  for (int i = 0; i < fields->Count(); ++i) {
    const Case& c = cases[i];
    auto field = fields->Item(i);
    SCOPED_TRACE(Utf8FromUtf16(c.plan.name));
    EXPECT_EQ(field->Name(), c.plan.name);
    EXPECT_EQ(field->Type(), c.plan.type);
    EXPECT_EQ(field->Size(), c.size);
    EXPECT_EQ(field->Attributes(), c.attributes);
    EXPECT_EQ(field->Required(), c.plan.required);
    EXPECT_EQ(field->DefaultValue(), c.plan.defaultValue);
    const bool isText = c.plan.type == dao::dbText || c.plan.type == dao::dbMemo;
    EXPECT_EQ(field->AllowZeroLength(), isText && c.plan.allowZeroLength);
  }
}

TEST_F(DaoStructure, TablesAreRefusedWithDaosNumbers) {
  Create();
  MakeTable(u"Jest", {{u"A", dao::dbLong}});
  std::vector<FieldPlan> many;
  for (int i = 0; i < 256; ++i) many.push_back({u"P" + DecimalText(i), dao::dbLong});
  struct Case {
    const char* name;
    Numbers numbers;
    std::u16string table;
    std::vector<FieldPlan> fields;
    std::vector<IndexPlan> indexes;
  };
  const FieldPlan a{u"A", dao::dbLong}, b{u"B", dao::dbText, 10}, ole{u"O", dao::dbLongBinary};
  const Case cases[] = {
      {"no fields", kErrNoFieldDefined, u"T", {}, {}},
      {"name taken", kErrTableExists, u"JEST", {a}, {}},
      {"name of a system table", kErrTableExists, u"msysobjects", {a}, {}},
      {"dot in the name", kErrInvalidName, u"T.x", {a}, {}},
      {"65 letters", kErrInvalidName, std::u16string(65, u'x'), {a}, {}},
      {"leading blank", kErrInvalidName, u" T", {a}, {}},
      {"field twice in memory", {kErrDuplicateName, kErrFieldDefinedTwice}, u"T", {a, {u"a", dao::dbText, 5}}, {}},
      {"field name", kErrInvalidName, u"T", {{u"A[", dao::dbLong}}, {}},
      {"too many fields", kErrTooManyFields, u"T", many, {}},
      {"type 0", kErrInvalidFieldType, u"T", {{u"A", 0}}, {}},
      {"type 99", kErrInvalidFieldType, u"T", {{u"A", 99}}, {}},
      {"text of 256", {kErrFieldTooLong, 3017}, u"T", {{u"A", dao::dbText, 256}}, {}},
      {"two counters", kErrTwoCounters, u"T", {{u"A", dao::dbLong, 4, 17}, {u"B", dao::dbLong, 4, 17}}, {}},
      {"default syntax", {kErrDefaultSyntax, kErrExpressionSyntax}, u"T",
       {{u"A", dao::dbLong, 4, 0, false, false, u"12a"}}, {}},
      {"default function", kErrUnknownFunctionInDefault, u"T",
       {{u"A", dao::dbLong, 4, 0, false, false, u"Moja()"}}, {}},
      {"default name", kErrUnknownNameInExpression, u"T", {{u"A", dao::dbLong, 4, 0, false, false, u"abc"}}, {}},
      {"default of OLE", kErrExpressionNotAllowed, u"T",
       {{u"A", dao::dbLongBinary, 0, 0, false, false, u"1"}}, {}},
      {"index without fields", kErrNoFieldDefined, u"T", {a}, {{u"I", {}}}},
      {"index on an unknown field", kErrInvalidFieldName, u"T", {a}, {{u"I", {u"Z"}}}},
      {"index on a field twice", kErrInvalidIndexDefinition, u"T", {a}, {{u"I", {u"A", u"a"}}}},
      {"index on OLE", {kErrCannotIndexField, kErrInvalidFieldName}, u"T", {a, ole}, {{u"I", {u"O"}}}},
      {"index without a name", kErrInvalidPropertyValue, u"T", {a}, {{u"", {u"A"}}}},
      {"two primary keys", kErrPrimaryKeyExists, u"T", {a, b}, {{u"I", {u"A"}, true}, {u"J", {u"B"}, true}}},
      {"index twice in memory", {kErrIndexExists, kErrDuplicateName}, u"T", {a, b}, {{u"I", {u"A"}}, {u"i", {u"B"}}}},
  };
  const int before = database->TableDefs()->Count();
  for (const Case& c : cases) {
    ExpectOneOf(c.name, c.numbers, [&] { MakeTable(c.table, c.fields, c.indexes); });
    EXPECT_EQ(database->TableDefs()->Count(), before) << c.name;
  }
}

TEST_F(DaoStructure, TypeAndSizeMayBeTexts) {
  Create();
  auto table = database->CreateTableDef(u"T");
  auto field = table->CreateField(u"A", Text(u"10"), Text(u" 30 "));
  EXPECT_EQ(field->Type(), dao::dbText);
  EXPECT_EQ(field->Size(), 30);
  for (const std::u16string_view bad : {u"", u"abc", u"99999999999"}) {
    const Numbers numbers = {kErrDataConversion, kErrTypeMismatch};
    ExpectOneOf("type that is no number", numbers, [&] { table->CreateField(u"A", Text(bad), Text(u"1")); });
    ExpectOneOf("size that is no number", numbers, [&] { table->CreateField(u"A", Text(u"10"), Text(bad)); });
  }
}

TEST_F(DaoStructure, FieldsJoinATableWithRows) {
  Create();
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17}, {u"A", dao::dbText, 20}}, {{u"PK", {u"Id"}, true}});
  for (int i = 0; i < 300; ++i) Run(u"INSERT INTO T (A) VALUES ('wiersz " + DecimalText(i) + u"')");
  auto table = database->TableDefs()->Item(u"T");
  MakeField(*table, {u"Liczba", dao::dbLong, 4, 0, false, false, u"7"});
  MakeField(*table, {u"Uwagi", dao::dbMemo, 0, 0, false, true});
  auto flag = MakeField(*table, {u"Znak", dao::dbBoolean, 1, 0, false, false, u"True"});
  ExpectOneOf("field twice in a live table", {kErrFieldDefinedTwice, kErrDuplicateName, kErrFieldExistsInTable},
              [&] { MakeField(*table, {u"liczba", dao::dbText, 5}); });
  ExpectOneOf("put of an attribute after append", {kErrPropertyFixed, kErrInvalidOperation},
              [&] { flag->SetAttributes(17); });
  // Rows that were there keep nothing in the new fields; new ones get the default.
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Liczba Is Null And Uwagi Is Null And Znak = False"), 300u);
  Run(u"INSERT INTO T (A) VALUES ('nowy')");
  Run(u"UPDATE T SET Uwagi = A & ' ' & A & ' ' & A & ' długa uwaga do wiersza', Liczba = Id WHERE Id > 100");
  Reopen();
  EXPECT_EQ(Column(u"SELECT * FROM T WHERE A = 'nowy'", u"Znak"), std::vector<dao::Value>{true});
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Liczba = Id And Uwagi Like 'wiersz ### *'"), 200u);
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Liczba Is Null"), 100u);
}

TEST_F(DaoStructure, IndexesAreBuiltFromTheRows) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}, {u"B", dao::dbText, 20}});
  for (int i = 0; i < 500; ++i) {
    Run(u"INSERT INTO T (A, B) VALUES (" + DecimalText(i * 37 % 500) + u", 'Łódź " + DecimalText(i / 2) + u"')");
  }
  Run(u"INSERT INTO T (B) VALUES ('bez liczby')");
  auto table = database->TableDefs()->Item(u"T");
  MakeIndex(*table, {u"NaA", {u"A"}, false, true});
  EXPECT_EQ(ErrorOf([&] { MakeIndex(*table, {u"NaB", {u"B"}, false, true}); }), kErrDuplicateKey);
  EXPECT_EQ(ErrorOf([&] { MakeIndex(*table, {u"PK", {u"A"}, true}); }), kErrNullInIndex);
  EXPECT_EQ(ErrorOf([&] { MakeIndex(*table, {u"naa", {u"B"}}); }), kErrIndexExists);
  MakeIndex(*table, {u"NaBA", {u"B", u"A"}});
  EXPECT_EQ(table->Indexes()->Count(), 2);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (A) VALUES (17)"), kErrDuplicateKey);
  auto index = table->Indexes()->Item(u"NaBA");
  EXPECT_EQ(index->Fields()->Count(), 2);
  EXPECT_EQ(index->Fields()->Item(1)->Name(), u"A");
  ExpectOneOf("append to the fields of an index", kAppendToOld,
              [&] { index->Fields()->Append(index->CreateField(u"A")); });
  ExpectOneOf("put of Index.Unique after append", {kErrPropertyFixed, kErrInvalidOperation},
              [&] { index->SetUnique(true); });
  table->Indexes()->Delete(u"NaA");
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (A) VALUES (17)"), 0);
}

TEST_F(DaoStructure, RelationsAreRefusedWithDaosNumbers) {
  Create();
  MakeTable(u"Ojciec", {{u"Id", dao::dbLong, 4, 17}, {u"Kod", dao::dbText, 5}, {u"Inne", dao::dbLong}},
            {{u"PK", {u"Id"}, true}});
  MakeTable(u"Syn", {{u"Id", dao::dbLong, 4, 17}, {u"IdOjca", dao::dbLong}, {u"Kod", dao::dbText, 5}},
            {{u"PK", {u"Id"}, true}, {u"Zajęta", {u"Kod"}}});
  Run(u"INSERT INTO Syn (IdOjca) VALUES (5)");
  struct Case {
    const char* name;
    Numbers numbers;
    std::u16string relation, table, foreign;
    int attributes;
    std::vector<std::pair<std::u16string, std::u16string>> fields;
  };
  const auto make = [&](const Case& c) {
    ExpectOneOf(c.name, c.numbers, [&] { MakeRelation(c.relation, c.table, c.foreign, c.attributes, c.fields); });
  };
  const Numbers noTable = {kErrObjectNotFound, kErrTableNotFound, kErrItemNotFound};
  const Numbers noField = {kErrInvalidFieldName, 3799};
  const Case refused[] = {
      {"relation without fields", kErrRelationNoFields, u"R", u"Ojciec", u"Syn", 0, {}},
      {"relation's name", kErrInvalidName, u"R.", u"Ojciec", u"Syn", 0, {{u"Id", u"IdOjca"}}},
      {"relation: table missing", noTable, u"R", u"Nie ma", u"Syn", 0, {{u"Id", u"IdOjca"}}},
      {"relation: foreign table missing", noTable, u"R", u"Ojciec", u"Nie ma", 0, {{u"Id", u"IdOjca"}}},
      {"relation: field missing", noField, u"R", u"Ojciec", u"Syn", 0, {{u"Brak", u"IdOjca"}}},
      {"relation: foreign field missing", noField, u"R", u"Ojciec", u"Syn", 0, {{u"Id", u"Brak"}}},
      {"field related to itself", kErrFieldRelatedToItself, u"R", u"Ojciec", u"Ojciec", 0, {{u"Id", u"Id"}}},
      {"types differ", kErrRelationFieldsDiffer, u"R", u"Ojciec", u"Syn", 0, {{u"Id", u"Kod"}}},
      {"no unique index", kErrNoUniqueIndex, u"R", u"Ojciec", u"Syn", 0, {{u"Inne", u"IdOjca"}}},
      {"relation: name of an index", {kErrIndexExists, kErrRelationDataViolates, kErrRelatedRecordRequired},
       u"Zajęta", u"Ojciec", u"Syn", 0, {{u"Id", u"IdOjca"}}},
      {"relation: rows violate", {kErrRelationDataViolates, kErrRelatedRecordRequired},
       u"R", u"Ojciec", u"Syn", 0, {{u"Id", u"IdOjca"}}},
  };
  for (const Case& c : refused) make(c);
  EXPECT_EQ(database->Relations()->Count(), 0);
  // Not enforced: rows and indexes do not matter.
  make({"not enforced", 0, u"Luźna", u"Ojciec", u"Syn", dao::dbRelationDontEnforce, {{u"Inne", u"IdOjca"}}});
  make({"relation: name taken", {kErrObjectExists, kErrRelationExists},
        u"luźna", u"Ojciec", u"Syn", 2, {{u"Inne", u"IdOjca"}}});
  Run(u"DELETE FROM Syn");
  make({"cascades", 0, u"R", u"Ojciec", u"Syn", 4096, {{u"Id", u"IdOjca"}}});
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Delete(u"Syn"); }), kErrUsedInRelation);
}

TEST_F(DaoStructure, RelationsAreFoundAgainAndDeleted) {
  Create(dao::dbEncrypt);
  MakeTable(u"Ojciec", {{u"A", dao::dbLong}, {u"B", dao::dbText, 5}}, {{u"PK", {u"A", u"B"}, true}});
  MakeTable(u"Syn", {{u"X", dao::dbText, 5}, {u"Y", dao::dbLong}, {u"Z", dao::dbText, 3}});
  MakeRelation(u"Dwa pola", u"ojciec", u"SYN", 4352, {{u"B", u"X"}, {u"A", u"Y"}});
  Reopen();
  ASSERT_EQ(database->Relations()->Count(), 1);
  auto relation = database->Relations()->Item(u"DWA POLA");
  EXPECT_EQ(relation->Name(), u"Dwa pola");
  EXPECT_EQ(relation->Table(), u"Ojciec");
  EXPECT_EQ(relation->ForeignTable(), u"Syn");
  EXPECT_EQ(relation->Attributes(), 4352);
  ASSERT_EQ(relation->Fields()->Count(), 2);
  EXPECT_EQ(relation->Fields()->Item(0)->ForeignName(), u"X");
  EXPECT_EQ(relation->Fields()->Item(u"a")->ForeignName(), u"Y");
  ExpectOneOf("append to the fields of a relation", kAppendToOld,
              [&] { relation->Fields()->Append(relation->CreateField(u"C")); });
  auto indexes = database->TableDefs()->Item(u"Syn")->Indexes();
  ASSERT_EQ(indexes->Count(), 1);
  EXPECT_TRUE(indexes->Item(u"Dwa pola")->Foreign());
  EXPECT_EQ(database->TableDefs()->Item(u"Ojciec")->Indexes()->Count(), 1);
  Run(u"INSERT INTO Ojciec (A, B) VALUES (1, 'x')");
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Syn (X, Y) VALUES ('x', 2)"), kErrRelatedRecordRequired);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Syn (X, Y) VALUES ('X', 1)"), 0);
  ExpectOneOf("foreign key that is partly null", {0, kErrRelatedRecordRequired},
              [&] { Run(u"INSERT INTO Syn (X) VALUES ('inny')"); });
  database->Relations()->Delete(u"Dwa pola");
  EXPECT_EQ(database->Relations()->Count(), 0);
  EXPECT_EQ(database->TableDefs()->Item(u"Syn")->Indexes()->Count(), 0);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Syn (X, Y) VALUES ('x', 2)"), 0);
  EXPECT_EQ(ErrorOf([&] { database->Relations()->Delete(u"Dwa pola"); }), kErrItemNotFound);
}

TEST_F(DaoStructure, RenamesCarryEverythingAlong) {
  Create();
  MakeTable(u"Ojciec", {{u"Id", dao::dbLong, 4, 17}, {u"Nazwa", dao::dbText, 9, 0, true}},
            {{u"PK", {u"Id"}, true}});
  MakeTable(u"Syn", {{u"IdOjca", dao::dbLong, 4, 0, false, false, u"1"}});
  MakeRelation(u"R", u"Ojciec", u"Syn", 0, {{u"Id", u"IdOjca"}});
  database->TableDefs()->Item(u"Ojciec")->SetName(u"Rodzic");
  database->TableDefs()->Item(u"Rodzic")->Fields()->Item(u"Nazwa")->SetName(u"Imię");
  database->TableDefs()->Item(u"Syn")->Fields()->Item(u"IdOjca")->SetName(u"IdRodzica");
  database->TableDefs()->Item(u"Rodzic")->Indexes()->Item(u"PK")->SetName(u"Klucz");
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(u"Syn")->SetName(u"rodzic"); }), kErrTableExists);
  Reopen();
  auto relation = database->Relations()->Item(0);
  EXPECT_EQ(relation->Table(), u"Rodzic");
  EXPECT_EQ(relation->Fields()->Item(0)->ForeignName(), u"IdRodzica");
  EXPECT_TRUE(database->TableDefs()->Item(u"Rodzic")->Fields()->Item(u"Imię")->Required());
  EXPECT_EQ(database->TableDefs()->Item(u"Syn")->Fields()->Item(u"IdRodzica")->DefaultValue(), u"1");
  EXPECT_TRUE(database->TableDefs()->Item(u"Rodzic")->Indexes()->Item(u"Klucz")->Primary());
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Syn (IdRodzica) VALUES (5)"), kErrRelatedRecordRequired);
}

TEST_F(DaoStructure, FieldsLeaveATableWithRows) {
  Create(dao::dbEncrypt);
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17}, {u"A", dao::dbText, 20}, {u"N", dao::dbLong, 4, 0, true},
                   {u"M", dao::dbMemo}, {u"Z", dao::dbBoolean}, {u"O", dao::dbMemo}},
            {{u"PK", {u"Id"}, true}, {u"NaA", {u"A"}}});
  const std::u16string memo(5000, u'ż');
  for (int i = 0; i < 60; ++i) {
    Run(u"INSERT INTO T (A, N, M, Z, O) VALUES ('w" + DecimalText(i) + u"', 1, '" + memo + u"', True, 'o')");
  }
  auto fields = database->TableDefs()->Item(u"T")->Fields();
  EXPECT_EQ(ErrorOf([&] { fields->Delete(u"Brak"); }), kErrItemNotFound);
  EXPECT_EQ(ErrorOf([&] { fields->Delete(u"A"); }), kErrFieldInIndex);
  auto held = fields->Item(u"N");
  for (const std::u16string_view name : {u"M", u"n", u"Z"}) fields->Delete(name);
  EXPECT_EQ(fields->Count(), 3);
  EXPECT_EQ(ErrorOf([&] { held->Required(); }), kErrObjectInvalid);
  // The same name again is another field; the long values' pages serve anew.
  MakeField(*database->TableDefs()->Item(u"T"), {u"N", dao::dbText, 9});
  MakeField(*database->TableDefs()->Item(u"T"), {u"M", dao::dbMemo});
  Run(u"UPDATE T SET N = 'n' & Id, M = '" + memo + u"' WHERE Id > 30");
  Reopen();
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE O = 'o' And A Like 'w#*'"), 60u);
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE N = 'n' & Id And Len(M) = 5000"), 30u);
  EXPECT_FALSE(database->TableDefs()->Item(u"T")->Fields()->Item(u"N")->Required());
  const bool reuses = system.files->State(path)->size < 60u * 3 * memo.size();
  ExpectSeen("pages of a deleted field", reuses ? "used again" : "kept", "used again");
}

TEST_F(DaoStructure, WhatARelationNeedsStays) {
  Create();
  MakeTable(u"Ojciec", {{u"Id", dao::dbLong, 4, 17}, {u"B", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeTable(u"Syn", {{u"IdOjca", dao::dbLong}, {u"C", dao::dbLong}}, {{u"Własny", {u"IdOjca"}}});
  MakeRelation(u"R", u"Ojciec", u"Syn", 0, {{u"Id", u"IdOjca"}});
  auto parent = database->TableDefs()->Item(u"Ojciec"), child = database->TableDefs()->Item(u"Syn");
  EXPECT_EQ(ErrorOf([&] { parent->Indexes()->Delete(u"PK"); }), kErrUsedInRelation);
  EXPECT_EQ(ErrorOf([&] { child->Indexes()->Delete(u"R"); }), kErrUsedInRelation);
  EXPECT_EQ(ErrorOf([&] { parent->Fields()->Delete(u"Id"); }), kErrFieldInRelation);
  EXPECT_EQ(ErrorOf([&] { child->Fields()->Delete(u"IdOjca"); }), kErrFieldInRelation);
  child->Indexes()->Delete(u"Własny");  // shares the relation's tree, which stays
  Reopen();
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Syn (IdOjca) VALUES (9)"), kErrRelatedRecordRequired);
  database->Relations()->Delete(u"R");
  child = database->TableDefs()->Item(u"Syn");
  child->Fields()->Delete(u"IdOjca");
  EXPECT_EQ(ErrorOf([&] { child->Fields()->Delete(u"C"); }), kErrNoFieldDefined);
}

TEST_F(DaoStructure, SystemTablesAndOverlongRowsAreRefused) {
  Create();
  auto objects = database->TableDefs()->Item(u"MSysObjects");
  const Numbers refusal = {kErrReadOnly, kNoReadPermission, 3033, 3109, kErrDesignReadOnly, kErrTableInUse, 3211};
  ExpectOneOf("field of a system table", refusal, [&] { MakeField(*objects, {u"Obce", dao::dbLong}); });
  ExpectOneOf("DELETE in a system table", refusal, [&] { Run(u"DELETE FROM MSysObjects"); });
  ExpectOneOf("Edit in a system table", refusal, [&] { database->OpenRecordset(u"MSysACEs")->Edit(); });
  ExpectOneOf("SELECT from a system table", {0, kNoReadPermission}, [&] {
    EXPECT_EQ(CountRows(u"SELECT * FROM MSysObjects WHERE Type = 1"), 4u);
  });
  std::vector<FieldPlan> wide;
  for (int i = 0; i < 9; ++i) wide.push_back({u"P" + DecimalText(i), dao::dbText, 255, dao::dbFixedField});
  ExpectOneOf("fixed fields too long for a row", {kErrRecordTooLarge, 0}, [&] { MakeTable(u"U", wide); });
  for (FieldPlan& plan : wide) plan.attributes = 0;
  MakeTable(u"T", wide);
  std::u16string values;
  for (int i = 0; i < 9; ++i) values += (i > 0 ? u", '" : u"'") + std::u16string(255, u'ż') + u"'";
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T VALUES (" + values + u")"), kErrRecordTooLarge);
}

TEST_F(DaoStructure, ATableWithOpenRowsKeepsItsStructure) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  auto table = database->TableDefs()->Item(u"T");
  auto rows = database->OpenRecordset(u"SELECT * FROM T");
  const Numbers inUse = {kErrTableInUse, 3211, 3422};
  ExpectOneOf("field of a table in use", inUse, [&] { MakeField(*table, {u"B", dao::dbLong}); });
  ExpectOneOf("Delete of a table in use", inUse, [&] { database->TableDefs()->Delete(u"T"); });
  rows->Close();
  database->TableDefs()->Delete(u"T");
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Delete(u"T"); }), kErrItemNotFound);
  EXPECT_EQ(ErrorOf([&] { table->Fields()->Count(); }), kErrObjectInvalid);
}

}  // namespace zimbrat::tests

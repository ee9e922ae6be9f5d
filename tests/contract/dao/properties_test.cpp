// Properties of objects: before the append, on the live object, and where they are refused.
#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;
using DaoProperties = DaoBench;

TEST_F(DaoProperties, OfAFieldBeforeTheAppend) {
  Create();
  auto table = database->CreateTableDef(u"Robocza");
  table->SetName(u"Inna");
  table->SetName(u"T");
  EXPECT_EQ(table->Name(), u"T");
  EXPECT_TRUE(table->Updatable());
  EXPECT_EQ(table->RecordCount(), 0);
  EXPECT_EQ(table->Fields()->Count() + table->Indexes()->Count(), 0);
  auto field = table->CreateField(u"Robocze", Long(dao::dbText), Long(0));
  field->SetName(u"A");
  EXPECT_EQ(field->Size(), 255);
  EXPECT_EQ(field->DefaultValue(), u"");
  EXPECT_FALSE(field->Required() || field->AllowZeroLength());
  field->SetRequired(true);
  field->SetAllowZeroLength(true);
  field->SetDefaultValue(u"\"x\"");
  field->SetValidationRule(u"Len([A]) < 3");
  field->SetValidationText(u"Za długie");
  field->SetAttributes(dao::dbFixedField);
  table->Fields()->Append(field);
  table->Fields()->Append(table->CreateField(u"Zbędne", Long(dao::dbLong), Long(4)));
  table->Fields()->Delete(u"ZBĘDNE");
  EXPECT_EQ(ErrorOf([&] { table->Fields()->Delete(u"Zbędne"); }), kErrItemNotFound);
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(u"T"); }), kErrItemNotFound) << "nothing is stored yet";
  database->TableDefs()->Append(table);
  Reopen();
  field = database->TableDefs()->Item(u"T")->Fields()->Item(0);
  EXPECT_EQ(field->Attributes() & (dao::dbFixedField | dao::dbVariableField), dao::dbFixedField);
  EXPECT_TRUE(field->Required() && field->AllowZeroLength());
  EXPECT_EQ(field->DefaultValue(), u"\"x\"");
  EXPECT_EQ(field->ValidationRule(), u"Len([A]) < 3");
  EXPECT_EQ(field->ValidationText(), u"Za długie");
}

TEST_F(DaoProperties, OfALiveFieldAreStoredAtOnce) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbText, 20}, {u"B", dao::dbLong}});
  Run(u"INSERT INTO T (B) VALUES (1)");
  auto field = database->TableDefs()->Item(u"T")->Fields()->Item(u"A");
  field->SetRequired(true);  // rows that are there do not matter
  field->SetAllowZeroLength(true);
  field->SetDefaultValue(u"\"nowe\"");
  field->SetValidationRule(u"<> \"złe\"");
  field->SetValidationText(u"Nie takie");
  field->SetDefaultValue(u"\"nowe\"");  // again, nothing changes
  Run(u"INSERT INTO T (B) VALUES (2)");
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (A) VALUES ('złe')"), kErrFieldRule);
  Reopen();
  field = database->TableDefs()->Item(u"T")->Fields()->Item(u"A");
  EXPECT_TRUE(field->Required() && field->AllowZeroLength());
  EXPECT_EQ(field->DefaultValue(), u"\"nowe\"");
  EXPECT_EQ(field->ValidationRule(), u"<> \"złe\"");
  EXPECT_EQ(field->ValidationText(), u"Nie takie");
  EXPECT_EQ(Column(u"T", u"A"), (std::vector<dao::Value>{{}, Text(u"nowe")}));
  field->SetRequired(false);
  field->SetDefaultValue(u"");
  field->SetValidationRule(u"");
  Run(u"INSERT INTO T (B) VALUES (3)");
  Run(u"INSERT INTO T (A) VALUES ('złe')");
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE A Is Null"), 2u);
}

TEST_F(DaoProperties, ExpressionsAreRefusedWhereTheyCannotServe) {
  Create();
  MakeTable(u"T", {{u"Licznik", dao::dbLong, 4, 17}, {u"Obiekt", dao::dbLongBinary}, {u"Tekst", dao::dbText, 20}});
  auto fields = database->TableDefs()->Item(u"T")->Fields();
  for (const std::u16string_view name : {u"Licznik", u"Obiekt"}) {
    auto field = fields->Item(name);
    const std::string where = " of " + Utf8FromUtf16(name);
    for (const std::u16string_view text : {u"", u"1"}) {
      const Numbers numbers = text.empty() ? 0 : kErrExpressionNotAllowed;
      const std::string point = (text.empty() ? "empty " : "") + std::string("default or rule") + where;
      ExpectOneOf(point, numbers, [&] { field->SetDefaultValue(text); });
      ExpectOneOf(point, numbers, [&] { field->SetValidationRule(text); });
      ExpectOneOf(point, numbers, [&] { field->SetValidationText(text); });
    }
  }
  ExpectOneOf("default of a counter in a new table", kErrExpressionNotAllowed,
              [&] { MakeTable(u"U", {{u"A", dao::dbLong, 4, 17, false, false, u"1"}}); });
  auto field = fields->Item(u"Tekst");
  const std::u16string longest = u"\"" + std::u16string(253, u'x') + u"\"";
  field->SetDefaultValue(longest);
  EXPECT_EQ(field->DefaultValue(), longest);
  const Numbers tooLong = {kErrPropertyTooLarge, kErrInvalidPropertyValue, 3382};
  ExpectOneOf("default of 256 characters", tooLong, [&] { field->SetDefaultValue(longest + u" "); });
  ExpectOneOf("validation text of 256 characters", tooLong,
              [&] { field->SetValidationText(std::u16string(256, u'x')); });
  EXPECT_EQ(field->DefaultValue(), longest);
}

TEST_F(DaoProperties, AttributesThatDoNotFitAreDropped) {
  Create();
  MakeTable(u"T", {{u"Tekst", dao::dbText, 9, 2 + dao::dbAutoIncrField},
                   {u"Liczba", dao::dbLong, 4, dao::dbVariableField + 8192},
                   {u"Nota", dao::dbMemo, 0, dao::dbVariableField + dao::dbHyperlinkField}});
  Reopen();
  auto fields = database->TableDefs()->Item(u"T")->Fields();
  EXPECT_EQ(fields->Item(u"Tekst")->Attributes(), 34);
  EXPECT_EQ(fields->Item(u"Liczba")->Attributes(), 33);
  EXPECT_EQ(fields->Item(u"Nota")->Attributes(), 34 + dao::dbHyperlinkField);
}

TEST_F(DaoProperties, MembersBelongToTheirCollection) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}}, {{u"PK", {u"A"}, true}});
  auto field = database->TableDefs()->Item(u"T")->Fields()->Item(u"A");
  EXPECT_EQ(ErrorOf([&] { field->Value(); }), kErrValueNeedsRecordset);
  EXPECT_EQ(ErrorOf([&] { field->SetValue(Long(1)); }), kErrValueNeedsRecordset);
  ExpectOneOf("ForeignName of a table's field", {kErrInvalidOperation, 3270}, [&] { field->SetForeignName(u"B"); });
  auto unused = database->CreateTableDef(u"U")->CreateField(u"A", Long(4), Long(4));
  EXPECT_EQ(ErrorOf([&] { unused->Value(); }), kErrValueNeedsRecordset);
  for (const char* text : {"0", "first", "-1"}) {
    const std::u16string name = Utf16FromUtf8(text);
    EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(name); }), kErrItemNotFound) << text << " is a name";
  }
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(-1); }), kErrItemNotFound);
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(99); }), kErrItemNotFound);
}

TEST_F(DaoProperties, OfAnIndex) {
  Create();
  auto table = database->CreateTableDef(u"T");
  for (const std::u16string_view name : {u"A", u"B"}) {
    table->Fields()->Append(table->CreateField(name, Long(dao::dbLong), Long(4)));
  }
  auto key = table->CreateIndex(u"Robocza");
  EXPECT_FALSE(key->Primary() || key->Unique() || key->Required() || key->IgnoreNulls() || key->Foreign());
  key->SetName(u"PK");
  key->SetPrimary(true);
  key->SetUnique(false);  // a primary key is unique all the same
  auto part = key->CreateField(u"A");
  part->SetAttributes(dao::dbDescending);
  key->Fields()->Append(part);
  table->Indexes()->Append(key);
  MakeIndex(*table, {u"NaB", {u"B", u"A"}, false, false, true, true});
  database->TableDefs()->Append(table);
  Reopen();
  auto indexes = database->TableDefs()->Item(u"T")->Indexes();
  key = indexes->Item(u"pk");
  EXPECT_TRUE(key->Primary() && key->Unique() && key->Required());
  EXPECT_EQ(key->Fields()->Item(u"a")->Attributes() & dao::dbDescending, dao::dbDescending);
  auto other = indexes->Item(u"NaB");
  EXPECT_TRUE(other->Required() && other->IgnoreNulls());
  EXPECT_FALSE(other->Primary() || other->Unique() || other->Foreign());
  EXPECT_EQ(other->Fields()->Item(0)->Name(), u"B");
  EXPECT_EQ(other->Fields()->Item(1)->Attributes() & dao::dbDescending, 0);
  EXPECT_EQ(ErrorOf([&] { other->Fields()->Item(2); }), kErrItemNotFound);
  EXPECT_EQ(ErrorOf([&] { other->SetName(u"PK"); }), kErrIndexExists);
  ExpectOneOf("put of Index.Primary after append", {kErrPropertyFixed, kErrInvalidOperation},
              [&] { other->SetPrimary(true); });
}

TEST_F(DaoProperties, OfARelationAreSettledByTheAppend) {
  Create();
  MakeTable(u"Ojciec", {{u"A", dao::dbLong}}, {{u"PK", {u"A"}, true}});
  MakeTable(u"Syn", {{u"B", dao::dbLong}});
  auto relation = database->CreateRelation(u"Robocza", u"Ojciec", u"Syn", Text(u"4096"));
  relation->SetName(u"R");
  auto field = relation->CreateField(u"X");
  field->SetName(u"A");
  field->SetForeignName(u"Z");
  relation->Fields()->Append(field);
  field->SetForeignName(u"B");
  database->Relations()->Append(relation);
  EXPECT_EQ(relation->Attributes(), 4096);
  EXPECT_EQ(database->Relations()->Item(u"r")->Fields()->Item(u"A")->ForeignName(), u"B");
  const Numbers fixed = {kErrInvalidOperation, kErrPropertyFixed};
  ExpectOneOf("put of Relation.Name after append", fixed, [&] { relation->SetName(u"S"); });
  ExpectOneOf("put of ForeignName after append", fixed, [&] { field->SetForeignName(u"Z"); });
  EXPECT_EQ(ErrorOf([&] { database->Relations()->Append(relation); }), kErrDuplicateName);
  for (const std::u16string_view bad : {u"", u"abc"}) {
    ExpectOneOf("attributes that are no number", {kErrDataConversion, kErrTypeMismatch},
                [&] { database->CreateRelation(u"S", u"Ojciec", u"Syn", Text(bad)); });
  }
}

TEST_F(DaoProperties, NamesKeepTheirSpelling) {
  Create();
  MakeTable(u"zupa", {{u"Łyżka", dao::dbLong}}, {{u"Na łyżkę", {u"Łyżka"}}});
  MakeTable(u"Ćma", {{u"A", dao::dbLong}});
  MakeTable(u"abc", {{u"A", dao::dbLong}});
  auto table = database->TableDefs()->Item(u"ZUPA");
  auto field = table->Fields()->Item(u"łyżka");
  auto index = table->Indexes()->Item(u"NA ŁYŻKĘ");
  const Numbers none = {0, kErrTableExists, kErrFieldDefinedTwice, kErrIndexExists};
  ExpectOneOf("rename of a table changing case only", none, [&] { table->SetName(u"Zupa"); });
  ExpectOneOf("rename of a field changing case only", none, [&] { field->SetName(u"łYŻKA"); });
  ExpectOneOf("rename of an index changing case only", none, [&] { index->SetName(u"NA łyżkę"); });
  field->SetName(field->Name());  // the same once more
  EXPECT_EQ(ErrorOf([&] { table->SetName(u"za.duzo"); }), kErrInvalidName);
  EXPECT_EQ(ErrorOf([&] { field->SetName(std::u16string(65, u'x')); }), kErrInvalidName);
  field->SetName(std::u16string(64, u'ż'));
  Reopen();
  std::string names;
  for (int i = 0; i < database->TableDefs()->Count(); ++i) {
    table = database->TableDefs()->Item(i);
    if ((table->Attributes() & dao::dbSystemObject) == 0) names += Utf8FromUtf16(table->Name()) + ' ';
  }
  ExpectSeen("order of tables and their spelling", names, "abc Zupa Ćma ");
  table = database->TableDefs()->Item(u"zupa");
  EXPECT_EQ(table->Fields()->Item(0)->Name(), std::u16string(64, u'ż'));
}

TEST_F(DaoProperties, UnknownTypesAreRefusedAtTheAppend) {
  Create();
  for (const int type : {0, 99}) {
    auto table = database->CreateTableDef(u"T");
    const std::int32_t atOnce =
        ErrorOf([&] { table->Fields()->Append(table->CreateField(u"A", Long(type), Long(0))); });
    ExpectSeen("type " + std::to_string(type), atOnce == 0 ? "at TableDefs.Append" : "at Fields.Append",
               "at Fields.Append");
    EXPECT_EQ(atOnce != 0 ? atOnce : ErrorOf([&] { database->TableDefs()->Append(table); }), kErrInvalidFieldType);
  }
}

// What SQL changes is there at the latest after a Refresh.
TEST_F(DaoProperties, CollectionsFollowStatements) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  auto tables = database->TableDefs();
  auto table = tables->Item(u"T");
  Run(u"CREATE TABLE U (A LONG CONSTRAINT PK PRIMARY KEY)");
  Run(u"ALTER TABLE T ADD COLUMN B LONG CONSTRAINT R REFERENCES U (A)");
  Run(u"CREATE INDEX NaA ON T (A)");
  tables->Refresh();
  table = tables->Item(u"T");
  table->Fields()->Refresh();
  table->Indexes()->Refresh();
  database->Relations()->Refresh();
  EXPECT_TRUE(tables->Item(u"U")->Indexes()->Item(u"PK")->Primary());
  EXPECT_EQ(table->Fields()->Item(1)->Name(), u"B");
  EXPECT_EQ(table->Indexes()->Item(u"NaA")->Fields()->Count(), 1);
  EXPECT_EQ(database->Relations()->Item(u"R")->Table(), u"U");
}

}  // namespace zimbrat::tests

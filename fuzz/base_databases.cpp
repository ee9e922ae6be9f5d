#include "base_databases.h"

#include <string>
#include <vector>

#include "jet/engine.h"
#include "platform/text.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::fuzz {

namespace {

using platform::DecimalText;

void AddTable(dao::Database& database) {
  auto table = database.CreateTableDef(u"Towar");
  struct FieldRow {
    std::u16string_view name;
    std::int16_t type;
    std::int32_t size, attributes;
    std::u16string_view rule, defaultValue;
  };
  constexpr FieldRow kFields[] = {
      {u"Id", dao::dbLong, 4, 17, u"", u""},           {u"Nazwa", dao::dbText, 200, 2, u"Not Like 'x*'", u"'brak'"},
      {u"Grupa", dao::dbInteger, 2, 1, u"", u"1"},     {u"Bajt", dao::dbByte, 1, 1, u"", u""},
      {u"Cena", dao::dbCurrency, 8, 1, u">=0", u"0"},  {u"Waga", dao::dbSingle, 4, 1, u"", u""},
      {u"Miara", dao::dbDouble, 8, 1, u"", u""},       {u"Data", dao::dbDate, 8, 1, u"", u"Date()"},
      {u"Jest", dao::dbBoolean, 1, 1, u"", u"True"},   {u"Kod", dao::dbBinary, 8, 2, u"", u""},
      {u"Obraz", dao::dbLongBinary, 0, 2, u"", u""},   {u"Uwagi", dao::dbMemo, 0, 2, u"", u""},
      {u"Klucz", dao::dbGUID, 16, 1, u"", u""},
  };
  for (const FieldRow& row : kFields) {
    auto field = table->CreateField(row.name, row.type, row.size);
    table->Fields()->Append(field);
    field->SetAttributes(row.attributes);
    if (!row.rule.empty()) field->SetValidationRule(row.rule);
    if (!row.defaultValue.empty()) field->SetDefaultValue(row.defaultValue);
  }
  database.TableDefs()->Append(table);
}

// Enough for a tree of two levels, long values in a page and in chains, and rows that moved.
void AddRows(dao::Database& database) {
  const auto run = [&](const std::u16string& statement) { database.Execute(statement, dao::dbFailOnError); };
  run(u"CREATE UNIQUE INDEX PrimaryKey ON Towar (Id) WITH PRIMARY");
  run(u"CREATE INDEX Nazwa ON Towar (Nazwa DESC, Grupa)");
  run(u"CREATE TABLE Grupa (Nr SHORT CONSTRAINT klucz PRIMARY KEY, Opis TEXT(20), Ile CURRENCY)");
  run(u"INSERT INTO Grupa VALUES (1, 'żółta', 1.5)");
  run(u"INSERT INTO Grupa VALUES (2, 'biała', Null)");
  run(u"ALTER TABLE Towar ADD CONSTRAINT grupa_towar FOREIGN KEY (Grupa) REFERENCES Grupa (Nr)");
  for (int i = 1; i <= 26; ++i) {
    run(u"INSERT INTO Towar (Nazwa, Grupa, Bajt, Cena, Waga, Miara, Kod, Uwagi) VALUES (String(" +
        DecimalText(i == 3 ? 5 : 160 + i) + u", Chr(" + DecimalText(97 + i % 4) + u")) & " + DecimalText(i) + u", " +
        DecimalText(1 + i % 2) + u", " + DecimalText(i) + u", " + DecimalText(i) + u".25, 0.5, -1.5, Null, " +
        (i % 6 == 0 ? u"String(" + DecimalText(i * 250) + u", 'ł')" : u"'uwaga'") + u")");
  }
  run(u"UPDATE Towar SET Nazwa = String(195, 'z') WHERE Id = 3");
  run(u"DELETE FROM Towar WHERE Id Mod 9 = 0");
}

tests::FileBytes MakeDatabase(std::int32_t options, bool isFilled) {
  tests::MemoryFiles files;
  tests::FakeClock clock;
  const auto engine = jet::MakeEngine(files, clock, {});
  const auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  const auto database = workspace->CreateDatabase(kDatabasePath, dao::dbLangGeneral, options);
  if (isFilled) {
    AddTable(*database);
    AddRows(*database);
  }
  if (options != 0) database->NewPassword(u"", u"haslo");
  database->Close();
  return files.BytesOf(kDatabasePath);
}

}  // namespace

std::span<const tests::FileBytes> BaseDatabases() {
  static const std::vector<tests::FileBytes> bases{MakeDatabase(0, true), MakeDatabase(0, false),
                                                   MakeDatabase(dao::dbEncrypt, false)};
  return bases;
}

}  // namespace zimbrat::fuzz

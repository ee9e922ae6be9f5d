// Work that is done again and changes nothing leaves the file as it was, byte for byte, whatever the
// clock says.
#include <gtest/gtest.h>

#include "jet/engine.h"
#include "platform/run_time_error.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {
namespace {

constexpr const char16_t* kPath = u"baza.mdb";

void Do(dao::Database& database, std::u16string_view statement) {
  database.Execute(statement, dao::dbFailOnError);
}

class RepeatedWork : public testing::Test {
 protected:
  // Texts of several pages, rows moved from their home pages, a relationship of a table with itself.
  void SetUp() override {
    Open([](dao::Database& database) {
      Do(database,
         u"CREATE TABLE Grupa (Id LONG CONSTRAINT PK PRIMARY KEY, Nad LONG, Nazwa TEXT(50) NOT NULL, "
          u"CONSTRAINT Drzewo FOREIGN KEY (Nad) REFERENCES Grupa (Id))");
      Do(database,
         u"CREATE TABLE Towar (Id COUNTER CONSTRAINT PK PRIMARY KEY, Grupa LONG, Nazwa TEXT(200), "
          u"Cena CURRENCY, Waga DOUBLE, Opis MEMO, Ma YESNO, Od DATETIME, "
          u"CONSTRAINT GT FOREIGN KEY (Grupa) REFERENCES Grupa (Id))");
      Do(database, u"INSERT INTO Grupa VALUES (1, 1, 'Wszystko')");
      Do(database, u"INSERT INTO Grupa VALUES (2, 1, 'Inne')");
      for (int i = 0; i < 100; ++i) {
        Do(database, u"INSERT INTO Towar (Grupa, Nazwa, Cena, Waga, Opis, Ma, Od) "
                      u"VALUES (2, 'a', 1.5, -0.25, String(3000, 'x'), True, #1/2/2003#)");
      }
      Do(database, u"INSERT INTO Towar (Nazwa) VALUES (Null)");
      Do(database, u"UPDATE Towar SET Nazwa = String(200, 'ą') WHERE Id Mod 2 = 0");
    });
  }
  void Open(const std::function<void(dao::Database&)>& work) {
    const auto workspace = MakeEngine(files, clock, {})->CreateWorkspace(u"", u"Admin", u"");
    const auto database = files.State(kPath)
                              ? workspace->OpenDatabase(kPath, true, false)
                              : workspace->CreateDatabase(kPath, dao::dbLangGeneral, dao::dbEncrypt);
    work(*database);
    database->Close();
  }
  // The page of the first byte that differs after the work; nothing when none does.
  std::string DifferenceAfter(const std::function<void(dao::Database&)>& work) {
    const tests::FileBytes before = files.BytesOf(kPath);
    clock.now += 1;
    Open(work);
    const tests::FileBytes& after = files.BytesOf(kPath);
    if (before == after) return {};
    const auto at = std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first;
    return "page " + std::to_string((at - before.begin()) / 4096) + " of " +
           std::to_string(before.size() / 4096) + ", now " + std::to_string(after.size() / 4096);
  }

  tests::MemoryFiles files;
  tests::FakeClock clock;
};

void EditAll(dao::Database& database) {
  const auto rows = database.OpenRecordset(u"Towar");
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    rows->Edit();
    for (int i = 1; i < rows->Fields()->Count(); ++i) {
      const auto field = rows->Fields()->Item(i);
      field->SetValue(field->Value());
    }
    rows->Update();
  }
  rows->Close();
}

void SetPropertiesAgain(dao::Database& database) {
  const auto table = database.TableDefs()->Item(u"Towar");
  table->SetName(table->Name());
  for (int i = 0; i < table->Fields()->Count(); ++i) {
    const auto field = table->Fields()->Item(i);
    field->SetName(field->Name());
    field->SetRequired(field->Required());
    field->SetAllowZeroLength(field->AllowZeroLength());
    field->SetDefaultValue(field->DefaultValue());
    field->SetValidationRule(field->ValidationRule());
    field->SetValidationText(field->ValidationText());
  }
  const auto index = table->Indexes()->Item(u"PK");
  index->SetName(index->Name());
}

void AbandonRow(dao::Database& database) {
  const auto rows = database.OpenRecordset(u"Towar");
  rows->AddNew();
  rows->Fields()->Item(u"Opis")->SetValue(std::u16string(9000, u'y'));
  rows->CancelUpdate();
  rows->Close();
}

struct Work {
  const char* name;
  std::function<void(dao::Database&)> work;
  std::int32_t affected = -1;  // rows, where it is asked
};

std::function<void(dao::Database&)> Statement(const char16_t* text, std::int32_t options = 0) {
  return [=](dao::Database& database) { database.Execute(text, options); };
}

// A whole script of a kind that a structure file may hold.
void RunScript(dao::Database& database) {
  Do(database, u"DELETE FROM Grupa WHERE Id = 4");
  Do(database, u"DELETE FROM Grupa WHERE Id = 3");
  Do(database, u"INSERT INTO Grupa VALUES (3, 1, 'Usługi')");
  Do(database, u"INSERT INTO Grupa VALUES (4, 3, 'Transport')");
  Do(database, u"UPDATE Towar SET Opis = 'na nowo'");
  Do(database, u"UPDATE Towar SET Opis = String(5000, 'o') WHERE Id < 10");
}

TEST_F(RepeatedWork, ThatChangesNothingWritesNothing) {
  Open(SetPropertiesAgain);  // what was only implied is written down now
  const Work works[] = {
      {"open and close", [](dao::Database&) {}},
      {"equal constants", Statement(u"UPDATE Towar SET Grupa = 2, Cena = 1.5, Ma = True WHERE Grupa = 2"), 100},
      {"each field itself",
       Statement(u"UPDATE Towar SET Grupa = Grupa, Nazwa = Nazwa, Cena = Cena, Waga = Waga, Opis = Opis, "
                 u"Ma = Ma, Od = Od"), 101},
      {"a key that others refer to", Statement(u"UPDATE Grupa SET Id = Id, Nad = Nad"), 2},
      {"no row", Statement(u"UPDATE Towar SET Nazwa = 'b' WHERE Id = 1000"), 0},
      {"over a join", Statement(u"UPDATE Towar INNER JOIN Grupa ON Towar.Grupa = Grupa.Id "
                                u"SET Towar.Opis = Towar.Opis, Grupa.Nazwa = 'Inne'"), 100},
      {"edit", EditAll},
      {"delete nothing", Statement(u"DELETE FROM Towar WHERE Cena > 100"), 0},
      {"rows that others refer to stay", Statement(u"DELETE FROM Grupa"), 0},
      {"rows that are there already",
       Statement(u"INSERT INTO Towar (Id, Opis) SELECT Id, String(9000, 'z') FROM Towar"), 0},
      {"a new row given up", AbandonRow},
      {"properties", SetPropertiesAgain},
      {"undone", [](dao::Database& database) {
         EXPECT_ANY_THROW(Do(database, u"UPDATE Towar SET Opis = 'q', Grupa = 5"));
       }},
  };
  for (const Work& work : works) {
    EXPECT_EQ("", DifferenceAfter([&](dao::Database& database) {
      work.work(database);
      if (work.affected >= 0) {
        EXPECT_EQ(work.affected, database.RecordsAffected()) << work.name;
      }
    })) << work.name;
  }
}

// Rows taken away and put back get new places, but no more room.
TEST_F(RepeatedWork, OfAScriptTakesNoMoreRoom) {
  Open(RunScript);
  Open(RunScript);
  const std::size_t size = files.BytesOf(kPath).size();
  for (int i = 0; i < 20; ++i) Open(RunScript);
  EXPECT_EQ(size, files.BytesOf(kPath).size());
}

}  // namespace
}  // namespace zimbrat::jet

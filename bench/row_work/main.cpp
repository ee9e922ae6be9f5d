// row_work KIND FILE ROWS: one piece of work of the embedded engine, a process of its own so that its time and
// memory can be told. Prints the milliseconds from opening to closing, and the longest time without a pulse.
//   create  a new database with the table T: counter, text with an index, number with an index, memo
//   insert  ROWS rows through a recordset
//   sql     ROWS rows through INSERT statements
//   alter   three fields and two indexes onto T
//   update  UPDATE of every row, indexed fields among them
//   select  a query with a condition, ordered by a text
//   repair  check and repair
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

#include "jet/engine.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"

namespace {

using namespace zimbrat;
using platform::DecimalText;

void AddField(dao::TableDef& table, std::u16string_view name, int type, int size, int attributes = 0) {
  const auto field = table.CreateField(name, std::int32_t{type}, std::int32_t{size});
  if (attributes != 0) field->SetAttributes(attributes);
  table.Fields()->Append(field);
}

void AddIndex(dao::TableDef& table, std::u16string_view name, std::u16string_view field, bool primary = false) {
  const auto index = table.CreateIndex(name);
  index->SetPrimary(primary);
  index->Fields()->Append(index->CreateField(field));
  table.Indexes()->Append(index);
}

// The longest time between two signs of life.
class Silence {
 public:
  void Break() {
    const Clock::time_point now = Clock::now();
    longest_ = std::max(longest_, now - since_);
    since_ = now;
  }
  double Milliseconds() const {
    return std::chrono::duration<double, std::milli>(longest_).count();
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point since_ = Clock::now();
  Clock::duration longest_{};
};

class Work {
 public:
  Work(platform::System& system, std::u16string path, int rows, Silence& silence)
      : engine_(jet::MakeEngine(*system.files, *system.clock, [&silence] { silence.Break(); })),
        workspace_(engine_->CreateWorkspace(u"", u"Admin", u"")),
        path_(std::move(path)),
        rows_(rows) {}

  void Create() {
    const auto database = workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0);
    const auto table = database->CreateTableDef(u"T");
    AddField(*table, u"Id", dao::dbLong, 4, dao::dbAutoIncrField | dao::dbFixedField);
    AddField(*table, u"Nazwa", dao::dbText, 50);
    AddField(*table, u"Liczba", dao::dbLong, 4);
    AddField(*table, u"Nota", dao::dbMemo, 0);
    AddIndex(*table, u"PK", u"Id", true);
    AddIndex(*table, u"NaNazwe", u"Nazwa");
    AddIndex(*table, u"NaLiczbe", u"Liczba");
    database->TableDefs()->Append(table);
    database->Close();
  }
  void Insert() {
    const auto database = Open();
    const auto rows = database->OpenRecordset(u"T", dao::dbOpenTable);
    const auto name = rows->Fields()->Item(u"Nazwa"), number = rows->Fields()->Item(u"Liczba"),
               memo = rows->Fields()->Item(u"Nota");
    for (int i = 0; i < rows_; ++i) {
      rows->AddNew();
      name->SetValue(NameOf(i));
      number->SetValue(NumberOf(i));
      memo->SetValue(u"Uwaga do pozycji " + DecimalText(i) + u": zapłacono gotówką, reszta przelewem.");
      rows->Update();
    }
    rows->Close();
    database->Close();
  }
  void Sql() {
    const auto database = Open();
    for (int i = 0; i < rows_; ++i) {
      database->Execute(u"INSERT INTO T (Nazwa, Liczba, Nota) VALUES ('" + NameOf(i) + u"', " +
                            DecimalText(NumberOf(i)) + u", 'Uwaga do pozycji')",
                        dao::dbFailOnError);
    }
    database->Close();
  }
  void Alter() {
    const auto database = Open();
    const auto table = database->TableDefs()->Item(u"T");
    AddField(*table, u"Kwota", dao::dbCurrency, 8);
    AddField(*table, u"Opis", dao::dbText, 100);
    AddField(*table, u"Data", dao::dbDate, 8);
    AddIndex(*table, u"NaOpis", u"Opis");
    AddIndex(*table, u"NaNazweDrugi", u"Nazwa");
    database->Close();
  }
  void Update() {
    const auto database = Open();
    database->Execute(u"UPDATE T SET Nazwa = 'zm ' & Nazwa, Liczba = Liczba + 1 WHERE Id > 0", dao::dbFailOnError);
    if (database->RecordsAffected() != rows_) std::exit(2);
    database->Close();
  }
  void Select() {
    const auto database = Open();
    const auto rows = database->OpenRecordset(u"SELECT Id, Nazwa, Liczba FROM T WHERE Liczba >= 0 ORDER BY Nazwa",
                                              dao::dbOpenSnapshot);
    int count = 0;
    for (; !rows->EndOfFile(); rows->MoveNext()) ++count;
    if (count != rows_) std::exit(2);
    database->Close();
  }
  void Repair() { engine_->RepairDatabase(path_); }

 private:
  std::shared_ptr<dao::Database> Open() { return workspace_->OpenDatabase(path_, true, false, u""); }
  // Neither ascending nor descending.
  std::int32_t NumberOf(int i) const { return static_cast<std::int32_t>(i * 7919LL % rows_); }
  std::u16string NameOf(int i) const { return u"Kontrahent łódzki nr " + DecimalText(NumberOf(i)); }

  std::shared_ptr<dao::Engine> engine_;
  std::shared_ptr<dao::Workspace> workspace_;
  std::u16string path_;
  int rows_;
};

}  // namespace

int main(int argc, char** argv) {
  platform::System system = platform::MakeSystem(argc, argv);
  const auto words = system.console->Arguments();
  const std::map<std::u16string, void (Work::*)()> kinds = {
      {u"create", &Work::Create}, {u"insert", &Work::Insert}, {u"sql", &Work::Sql},
      {u"alter", &Work::Alter},   {u"update", &Work::Update}, {u"select", &Work::Select},
      {u"repair", &Work::Repair}};
  const auto kind = words.size() == 3 ? kinds.find(words[0]) : kinds.end();
  if (kind == kinds.end()) return 2;
  try {
    const auto start = std::chrono::steady_clock::now();
    Silence silence;
    {
      Work work(system, words[1], std::atoi(argv[3]), silence);
      (work.*kind->second)();
    }
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    silence.Break();
    std::printf("%.1f %.1f\n", taken.count(), silence.Milliseconds());
    return 0;
  } catch (const std::exception&) {
    const auto error = platform::CurrentRunTimeError();
    system.console->WriteError(DecimalText(error.Number()) + u" " + error.Description() + u"\n");
    return 1;
  }
}

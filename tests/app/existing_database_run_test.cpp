// The tasks on an existing database, page by page.
#include "app/existing_database_run.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

using suite::Task;

class ExistingDatabase : public testing::Test {
 protected:
  ExistingDatabase() {
    platform::ProgressBar bar;
    EXPECT_TRUE(generator::GenerujNowaBaze(
        bench_.state, bench_.folder.Path(), u"Firma",
        Program("AB") + u"," + Program("CD") + u"," + Program("EF"), {1, 2025, 1, 2025}, bar));
  }
  std::u16string Program(const std::string& symbol) {
    return bench_.WriteStructure(platform::Utf16FromUtf8(symbol + ".stb"), SmallProgram(symbol));
  }
  bool Prepare(Task task) {
    return bool(app::PrepareDatabase(bench_.state, task, bench_.PathOf(u"Firma.mdb"),
                                     suite::StructureFiles(bench_.state), programs_));
  }
  std::string LastMessage() const {
    return bench_.host.messages.empty() ? "" : Utf8(bench_.host.messages.back());
  }

  DatabaseBench bench_;
  platform::OrvListCheck programs_{u';'};
  app::Selection selection_;
};

TEST_F(ExistingDatabase, CheckTakesEveryProgramThatTheDatabaseHolds) {
  Program("GH");  // not in the database
  ASSERT_TRUE(Prepare(Task::Sprawdz)) << LastMessage();
  ASSERT_TRUE(app::TakeSelection(bench_.state, Task::Sprawdz, programs_, selection_));
  EXPECT_EQ(Utf8(selection_.files),
            Utf8(bench_.PathOf(u"AB.stb") + u";" + bench_.PathOf(u"CD.stb") + u";" +
                 bench_.PathOf(u"EF.stb")));
  platform::ProgressBar bar;
  const app::RunResult result = app::RunExtension(
      bench_.state, Task::Sprawdz, bench_.PathOf(u"Firma.mdb"), selection_, bar);
  EXPECT_TRUE(result.done) << Utf8(result.text);
  EXPECT_NE(Utf8(result.text).find("posiadają poprawną strukturę"), std::string::npos);
  EXPECT_EQ(bar.Fraction(), 1.0);
}

TEST_F(ExistingDatabase, AddTakesWhatIsNotUpToDate) {
  ASSERT_TRUE(Prepare(Task::Dodaj));
  for (int i = 0; i < programs_.Count(); ++i) EXPECT_TRUE(programs_.IsChecked(i));
  EXPECT_FALSE(app::TakeSelection(bench_.state, Task::Dodaj, programs_, selection_));
  EXPECT_EQ(LastMessage().rfind("Zaznacz programy i spróbuj ponownie.", 0), 0u) << LastMessage();
  Program("GH");
  ASSERT_TRUE(Prepare(Task::Dodaj));
  EXPECT_FALSE(programs_.IsChecked(3)) << "an absent program is the user's to choose";
  programs_.SetChecked(3, true);
  ASSERT_TRUE(app::TakeSelection(bench_.state, Task::Dodaj, programs_, selection_));
  EXPECT_EQ(Utf8(selection_.files), Utf8(bench_.PathOf(u"GH.stb") + u";"));
  EXPECT_EQ(Utf8(selection_.names), "Próba GH;");
}

// A run killed when its work was done: the next one has nothing to do that would clear up after it.
TEST_F(ExistingDatabase, WorkingNamesOfEndedRunsGoAlsoWhenNothingIsToBeDone) {
  bench_.folder.Write(u"Firma.mdb.zimbrat-nowa", "płace");
  ASSERT_TRUE(Prepare(Task::Dodaj));
  EXPECT_FALSE(app::TakeSelection(bench_.state, Task::Dodaj, programs_, selection_));
  EXPECT_FALSE(bench_.files.State(bench_.PathOf(u"Firma.mdb.zimbrat-nowa")));
}

TEST_F(ExistingDatabase, CheckSaysThatNothingIsThereToCheck) {
  bench_.state.structureFolder = bench_.PathOf(u"puste");
  ASSERT_TRUE(app::PrepareDatabase(bench_.state, Task::Sprawdz, bench_.PathOf(u"Firma.mdb"), {},
                                   programs_));
  EXPECT_FALSE(app::TakeSelection(bench_.state, Task::Sprawdz, programs_, selection_));
  EXPECT_EQ(LastMessage().rfind("Zaznacz programy, dla których rozbudowana", 0), 0u);
}

TEST_F(ExistingDatabase, StaysWhereTheDatabaseCannotBeUsed) {
  bench_.folder.Write(u"tekst.mdb", "to nie jest baza");
  const std::tuple<Task, std::u16string, const char*> rows[] = {
      {Task::Sprawdz, u"", "Wskaż bazę danych i spróbuj ponownie."},
      {Task::Sprawdz, bench_.PathOf(u"tekst.mdb"), "Sprawdzenie, naprawa bazy nie powiodły się."},
      {Task::Sprawdz, bench_.PathOf(u"brak.mdb"), "Sprawdzenie, naprawa bazy nie powiodły się."},
      {Task::Dodaj, bench_.PathOf(u"tekst.mdb"), "Baza nie może zostać otwarta. Błąd Nr 3343 - "},
      {Task::Dodaj, u"", "Baza nie może zostać otwarta. Błąd Nr "},
      {Task::Wzorzec, bench_.PathOf(u"brak.mdb"), "Baza nie może zostać otwarta. Błąd Nr 3024 - "},
  };
  for (const auto& [task, path, message] : rows) {
    bench_.host.messages.clear();
    EXPECT_FALSE(app::PrepareDatabase(bench_.state, task, path, {}, programs_)) << message;
    ASSERT_EQ(bench_.host.messages.size(), 1u) << message;
    EXPECT_EQ(LastMessage().rfind(message, 0), 0u) << LastMessage();
  }
  EXPECT_EQ(bench_.folder.Read(u"tekst.mdb"), "to nie jest baza");
}

TEST_F(ExistingDatabase, RepairTellsWhatItCouldNotSave) {
  dao::Database& database = bench_.Open(u"Firma.mdb");
  for (int i = 0; i < 300; ++i) {
    database.Execute(u"INSERT INTO ABDok (Numer) VALUES ('faktura numer " +
                     platform::DecimalText(i) + u"')");
  }
  bench_.Close();
  const std::string damaged = [&] {
    std::string bytes = bench_.folder.Read(u"Firma.mdb");
    return bytes.replace(bytes.size() - 4096, 4096, 4096, '\0');  // the last page: rows
  }();
  bench_.folder.Write(u"Firma.mdb", damaged);
  ASSERT_TRUE(Prepare(Task::Sprawdz)) << LastMessage();
  ASSERT_EQ(bench_.host.messages.size(), 1u);
  EXPECT_NE(LastMessage().find("ABDok"), std::string::npos) << LastMessage();
  EXPECT_NE(LastMessage().find(Utf8(bench_.PathOf(u"Firma.mdb.uszkodzona"))), std::string::npos)
      << LastMessage();
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb.uszkodzona"), damaged);
}

// Repairs nothing without the right password.
class LockedEngine : public dao::Engine {
 public:
  LockedEngine(dao::Engine& real, suite::PasswordOf password) : real_(real), password_(std::move(password)) {}
  std::u16string Name() override { return real_.Name(); }
  std::u16string Version() override { return real_.Version(); }
  std::shared_ptr<dao::Workspace> CreateWorkspace(std::u16string_view name, std::u16string_view user,
                                                  std::u16string_view password) override {
    return real_.CreateWorkspace(name, user, password);
  }
  dao::RepairOutcome RepairDatabase(std::u16string_view path) override {
    for (const bool isTyped : {false, true}) {
      const auto password = password_(path, isTyped);
      if (password && password->View() == u"tajne") return {};
    }
    throw platform::RunTimeError(3031, u"DAO.DbEngine", u"Złe hasło");
  }

 private:
  dao::Engine& real_;
  suite::PasswordOf password_;
};

TEST_F(ExistingDatabase, RepairTakesThePasswordThatIsHeldOrTyped) {
  auto& state = bench_.state;
  suite::ProgramState fresh(state.on);
  fresh.on.makeEngine = [&](const suite::PasswordOf& password) {
    return std::make_shared<LockedEngine>(state.Engine(), password);
  };
  const auto repair = [&] { return app::NaprawBaze(fresh, bench_.PathOf(u"Firma.mdb")); };
  EXPECT_FALSE(repair()) << "nobody answers";
  bench_.host.password = u"tajne";
  fresh.databasePassword = u"innej bazy";
  EXPECT_TRUE(repair()) << "the one of another database is refused";
  bench_.host.password.reset();
  EXPECT_TRUE(repair()) << "it is held from then on";
  fresh.databasePassword = u"znów innej";
  EXPECT_FALSE(repair());
  EXPECT_TRUE(fresh.databasePassword.IsEmpty()) << "a refused one is not held";
}

TEST_F(ExistingDatabase, RunWithoutADatabaseSaysSo) {
  platform::ProgressBar bar;
  EXPECT_FALSE(app::RunExtension(bench_.state, Task::Dodaj, u"", {}, bar).done);
  EXPECT_EQ(LastMessage(), "Wskaż bazę danych i spróbuj ponownie.");
}

// What a structure file asks for beyond the limits of a database is refused by name, and the database is as it was.
TEST_F(ExistingDatabase, CheckRefusesStructuresBeyondTheLimits) {
  const auto times = [](int count, const auto& line) {
    std::string lines;
    for (int i = 1; i <= count; ++i) lines += line(std::to_string(i));
    return lines;
  };
  const auto field = [](const std::string& name) { return "Field=" + name + ",4,4,,False,False,1,\n"; };
  const std::string index = "Index=Razem,False,0,False,False\n";
  const std::tuple<const char*, std::string, std::string> rows[] = {
      {"name of 65 letters", field("ą" + std::string(64, 'a')), "3125"},
      {"text of 256", "Field=Opis,10,256,,False,False,2,\n", "3382; (Rozmiar pola „Opis” jest zbyt duży."},
      {"default value of 256", "Field=Opis,10,9,\"" + std::string(254, 'x') + "\",False,False,2,\n", "3309"},
      {"eleven fields in an index",
       times(11, [&](const std::string& i) { return field("P" + i); }) + index +
           times(11, [](const std::string& i) { return "IndexField=P" + i + ",0\n"; }),
       "3277; (Indeks „Razem” nie może mieć więcej niż 10 pól."},
      {"33 indexes", times(33, [](const std::string& i) {
         return "Index=I" + i + ",False,0,False,False\nIndexField=Id,0\n";
       }), "3626; (Zbyt wiele indeksów w tabeli „ABPoz”."},
  };
  const std::string before = bench_.folder.Read(u"Firma.mdb");
  for (const auto& [name, lines, told] : rows) {
    std::string program = SmallProgram("AB");
    const std::string section = "[ABPoz]\n";
    program.insert(program.find(section) + section.size(), lines);
    bench_.WriteStructure(u"AB.stb", program);
    ASSERT_TRUE(Prepare(Task::Sprawdz)) << LastMessage();
    ASSERT_TRUE(app::TakeSelection(bench_.state, Task::Sprawdz, programs_, selection_));
    platform::ProgressBar bar;
    const app::RunResult result = app::RunExtension(
        bench_.state, Task::Sprawdz, bench_.PathOf(u"Firma.mdb"), selection_, bar);
    EXPECT_FALSE(result.done) << name;
    EXPECT_NE(Utf8(result.text).find(told), std::string::npos) << name << ": " << Utf8(result.text);
    EXPECT_TRUE(bench_.folder.Read(u"Firma.mdb") == before) << name << ": the database has changed";
  }
}

TEST_F(ExistingDatabase, FailureIsTheSummaryOfItsTask) {
  platform::ProgressBar bar;
  const auto result =
      app::RunExtension(bench_.state, Task::Sprawdz, bench_.PathOf(u"Firma.mdb"),
                        {bench_.PathOf(u"brak.stb"), u""}, bar);
  EXPECT_FALSE(result.done);
  EXPECT_EQ(Utf8(result.text).rfind("Wystąpił bląd podczas sprawdzania bazy danych. Baza nie może "
                                    "zostać naprawiona.\r\nSzczegóły:\r\n", 0), 0u);
  EXPECT_EQ(bar.Fraction(), 0.0);
}

}  // namespace
}  // namespace zimbrat::tests

#include "tests/adversity/tasks.h"

#include "app/existing_database_run.h"
#include "app/new_database_run.h"
#include "tests/product/wizard_bench.h"
#include "tests/support/small_volume.h"

#include <stdexcept>

namespace zimbrat::tests {
namespace {

using suite::Task::Dodaj;
using suite::Task::Sprawdz;

constexpr std::string_view kOldVersions = "AB|3 FA|3";
constexpr std::u16string_view kVersions = u"SELECT Indprg, VerMinor FROM dbprg ORDER BY Indprg";
constexpr std::u16string_view kOldNumbers = u"SELECT Numer FROM ABDok ORDER BY Id";
constexpr std::string_view kNumbers = "1/25 2/25 3/25";

// What the user was told, and the engine's reason where that gives none.
app::RunResult NotReady(const DatabaseBench& bench,
                        const std::optional<platform::RunTimeError>& comparison = {}) {
  std::u16string text;
  for (const std::u16string& message : bench.host.messages) text += message + u"\r\n";
  const suite::KontekstBledu& error = bench.state.context;
  if (error.Number != 0) text += platform::DecimalText(error.Number) + u" " + error.Description;
  if (comparison) {
    text += platform::DecimalText(comparison->Number()) + u" " + comparison->Description();
  }
  return {false, text, {}};
}

app::NewDatabaseOrder OrderOf(const DatabaseBench& bench, std::int16_t month, std::int16_t year) {
  app::NewDatabaseOrder order;
  order.name = u"Firma";
  order.folder = bench.PathOf(u"baza");
  order.periods = {month, year, month, year};
  return order;
}

app::RunResult RunNowa(DatabaseBench& bench) {
  app::NewDatabaseOrder order = OrderOf(bench, 1, 2025);
  order.structureFiles = bench.PathOf(u"struktury/c.stb");
  platform::ProgressBar bar;
  return app::RunNewDatabase(bench.state, order, bar);
}

app::RunResult RunWzorzec(DatabaseBench& bench) {
  app::NewDatabaseOrder order = OrderOf(bench, 2, 2026);
  order.templateDatabase = bench.PathOf(kTemplate);
  if (!app::OpenTemplate(bench.state, order.templateDatabase)) return NotReady(bench);
  platform::ProgressBar bar;
  return app::RunFromTemplate(bench.state, order, bar);
}

app::RunResult RunOnExisting(DatabaseBench& bench, suite::Task task,
                             const std::vector<std::u16string>& files) {
  const std::u16string database = bench.PathOf(kTarget);
  platform::OrvListCheck programs(u';');
  app::Selection selection;
  const app::Prepared prepared =
      app::PrepareDatabase(bench.state, task, database, files, programs);
  if (!prepared || prepared.comparison.error) return NotReady(bench, prepared.comparison.error);
  if (task == Dodaj) {
    for (int i = 0; i < programs.Count(); ++i) programs.SetChecked(i, true);
  }
  if (!app::TakeSelection(bench.state, task, programs, selection)) {
    return NotReady(bench);
  }
  platform::ProgressBar bar;
  return app::RunExtension(bench.state, task, database, selection, bar);
}

app::RunResult RunDodaj(DatabaseBench& bench) {
  return RunOnExisting(bench, Dodaj,
                       {bench.PathOf(u"struktury/a.stb"), bench.PathOf(u"struktury/c.stb")});
}

app::RunResult RunSprawdz(DatabaseBench& bench) {
  return RunOnExisting(bench, Sprawdz,
                       {bench.PathOf(u"struktury/a.stb"), bench.PathOf(u"struktury/f.stb")});
}

// The wizard's form by itself, which shows and asks nothing whatever fails.
app::RunResult RunAuto(DatabaseBench& bench) {
  WizardProgram program(bench, bench.host);
  program.state.structureFolder = bench.PathOf(u"struktury");
  app::Main(program.state, program.form, u"auto|" + bench.PathOf(kTarget), [] {});
  EXPECT_TRUE(bench.host.messages.empty()) << Utf8(bench.host.messages.front());
  EXPECT_TRUE(bench.host.reports.empty()) << Utf8(bench.host.reports.front());
  EXPECT_EQ(bench.host.busyDepth, 0);
  EXPECT_FALSE(program.form.IsRunning());
  const bool isThrough = program.form.akt_plansza == u"Koniec";
  return {isThrough, program.host.Suppressed() + std::u16string(program.form.txtOpisGen.Text()), {}};
}

std::string StructureBytes(const std::string& utf8) {
  return platform::Ansi1250FromUtf16(
      platform::ReplaceAll(platform::Utf16FromUtf8(utf8), u"\n", u"\r\n"));
}

// The program one version further: a renamed field, and a statement on the rows.
std::string NextVersion(const std::string& symbol, const std::string& amount) {
  std::string text = SmallProgram(symbol, "[UPGRADE]\nRENFIELD=1.4," + symbol +
                                              "Dok,Numer,NumerDok\n[UPDATE]\nEXECUTE=1.4,UPDATE " +
                                              symbol + "Poz SET [Ilość] = " + amount + "\n");
  const auto replace = [&text](std::string_view from, std::string_view to) {
    text.replace(text.find(from), from.size(), to);
  };
  replace("VerMinor=3", "VerMinor=4");
  replace("Field=Numer,", "Field=NumerDok,");
  return text;
}

std::string MakeDatabase() {
  SmallVolume volume;
  DatabaseBench bench(&volume);
  volume.CreateFolder(bench.folder.Path());
  std::u16string files;
  for (const std::string symbol : {"AB", "FA"}) {
    const std::u16string path = bench.PathOf(platform::Utf16FromUtf8(symbol + ".stb"));
    volume.Put(path, StructureBytes(SmallProgram(symbol)));
    files += path + u",";
  }
  platform::ProgressBar bar;
  if (!generator::GenerujNowaBaze(bench.state, bench.folder.Path(), u"Firma", files,
                                  {1, 2025, 12, 2025}, bar)) {
    ADD_FAILURE() << bench.Summary();
  }
  dao::Database& database = bench.Open(u"Firma.mdb");
  for (const std::u16string symbol : {u"AB", u"FA"}) {
    for (const std::u16string number : {u"1", u"2", u"3"}) {
      database.Execute(u"INSERT INTO " + symbol + u"Dok (Numer) VALUES ('" + number + u"/25')");
    }
    for (const std::u16string row : {u"1", u"1", u"2", u"3"}) {
      database.Execute(u"INSERT INTO " + symbol + u"Poz (Id, [Ilość]) VALUES (" + row + u", 1.5)");
    }
  }
  bench.Close();
  return volume.Get(bench.PathOf(u"Firma.mdb"));
}

// With one bit changed, so that a repair has work and saves everything.
std::string Damaged(const std::string& database) {
  constexpr std::size_t kPage = 4096, kInPage = 40;
  SmallVolume volume;
  DatabaseBench bench(&volume);
  volume.CreateFolder(bench.folder.Path());
  const std::u16string path = bench.PathOf(u"Firma.mdb");
  for (std::size_t at = database.size() - kPage + kInPage; at > kPage; at -= kPage) {
    std::string damaged = database;
    damaged[at] = static_cast<char>(damaged[at] ^ 1);
    volume.Put(path, damaged);
    const dao::RepairOutcome outcome = bench.state.Engine().RepairDatabase(path);
    if (outcome.wasDamaged && outcome.losses.empty()) return damaged;
  }
  ADD_FAILURE() << "no page whose damage can be mended";
  return database;
}

Seed MakeSeed() {
  const std::string database = MakeDatabase();
  return {{std::u16string(kTarget), database},
          {std::u16string(kDamaged), Damaged(database)},
          {std::u16string(kTemplate), database},
          {u"struktury/a.stb", StructureBytes(NextVersion("AB", "7"))},
          {u"struktury/f.stb", StructureBytes(NextVersion("FA", "9"))},
          {u"struktury/c.stb", StructureBytes(SmallProgram("CD"))}};
}

}  // namespace

const Seed& SeedFiles() {
  static const Seed seed = MakeSeed();
  return seed;
}

const std::string& SeedFile(std::u16string_view name) {
  for (const auto& [file, content] : SeedFiles()) {
    if (file == name) return content;
  }
  throw std::logic_error("no such file");
}

const std::vector<Task>& AllTasks() {
  static const std::vector<Answer> kChecked = {
      {kVersions, "AB|4 FA|4"},
      {u"SELECT NumerDok FROM ABDok ORDER BY Id", kNumbers},
      {u"SELECT NumerDok FROM FADok ORDER BY Id", kNumbers},
      {u"SELECT [Ilość] FROM ABPoz", "7 7 7 7"},
      {u"SELECT [Ilość] FROM FAPoz", "9 9 9 9"}};
  static const std::vector<Task> tasks = {
      {.name = "nowa",
       .run = RunNowa,
       .effect = {{kVersions, "CD|3"}, {u"SELECT Miesiac, Rok FROM dboko", "1|2025"}},
       .mayLeaveAnother = true},
      {.name = "dodaj",
       .run = RunDodaj,
       .effect = {{kVersions, "AB|4 CD|3 FA|3"},
                  {u"SELECT NumerDok FROM ABDok ORDER BY Id", kNumbers},
                  {u"SELECT [Ilość] FROM ABPoz", "7 7 7 7"},
                  {u"SELECT Numer FROM FADok ORDER BY Id", kNumbers},
                  {u"SELECT Count(*) FROM CDDok", "0"}},
       .isOnce = true,
       .asksForRoom = true,
       .usesCopy = true},
      {.name = "wzorzec",
       .run = RunWzorzec,
       .effect = {{kVersions, kOldVersions},
                  {kOldNumbers, kNumbers},
                  {u"SELECT Count(*) FROM FADok", "0"},
                  {u"SELECT Count(*) FROM FAPoz", "0"},
                  {u"SELECT Miesiac, Rok FROM dboko", "2|2026"}},
       .asksForRoom = true,
       .usesCopy = true},
      {.name = "sprawdz", .run = RunSprawdz, .effect = kChecked, .usesCopy = true},
      {.name = "sprawdzUszkodzona",
       .run = RunSprawdz,
       .effect = kChecked,
       .mayLeaveAnother = true,
       .kept = {{kVersions, kOldVersions},
                {kOldNumbers, kNumbers},
                {u"SELECT [Ilość] FROM FAPoz", "1,5 1,5 1,5 1,5"}},
       .usesCopy = true,
       .isDamaged = true},
      {.name = "auto",
       .run = RunAuto,
       .effect = kChecked,
       .partOfEffect = {{kVersions, "AB|4 FA|3"},
                        {u"SELECT NumerDok FROM ABDok ORDER BY Id", kNumbers},
                        {u"SELECT [Ilość] FROM ABPoz", "7 7 7 7"},
                        {u"SELECT Numer FROM FADok ORDER BY Id", kNumbers}},
       .usesCopy = true},
  };
  return tasks;
}

std::vector<Task> TellingTasks() {
  std::vector<Task> tasks = AllTasks();
  std::erase_if(tasks, [](const Task& task) { return task.run == RunAuto; });
  return tasks;
}

const std::string& Task::OldContent() const { return SeedFile(isDamaged ? kDamaged : kTarget); }

std::string NameOfTask(const Task& task) { return task.name; }

std::ostream& operator<<(std::ostream& out, const Task& task) { return out << task.name; }

}  // namespace zimbrat::tests

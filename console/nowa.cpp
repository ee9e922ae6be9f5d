// The command that creates a new database.
#include "commands.h"

#include "progress_line.h"
#include "console/nearest.h"
#include "app/ModFolder.h"
#include "app/database_list.h"
#include "app/name_rules.h"
#include "app/new_database_run.h"
#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"
#include "platform/dates.h"
#include "platform/text.h"

#include <algorithm>

namespace zimbrat::console {
namespace {

// A hundred years of periods: more is a slip, and would take long.
constexpr int kMostMonths = 1200;

// The options as an order, or the outcome that refuses them.
struct Reading {
  app::NewDatabaseOrder order;
  std::optional<Outcome> refusal;
};

std::optional<MonthAndYear> ReadPeriod(const CommandContext& context, std::u16string_view option,
                                       int month, int year, Reading& reading) {
  if (!context.arguments.Has(option)) return MonthAndYear{month, year};
  const std::u16string text = context.arguments.Value(option);
  const auto period = FindMonthAndYear(text);
  if (!period) {
    reading.refusal =
        WrongUsage(u"Wartość „" + text + u"” opcji " + std::u16string(option) +
                   u" nie jest okresem M/RRRR (lata od 1900 do 2999). Podaj na przykład " +
                   platform::DecimalText(month) + u"/" + platform::DecimalText(year) + u".");
  }
  return period;
}

void ReadPeriods(const CommandContext& context, Reading& reading) {
  const int year = platform::PartsOfDate(context.state.on.clock.Now()).year;
  const auto from = ReadPeriod(context, u"--od", 1, year, reading);
  if (!from) return;
  const auto to = ReadPeriod(context, u"--do", 12, year, reading);
  if (!to) return;
  if (12 * (to->year - from->year) + to->month - from->month >= kMostMonths) {
    reading.refusal =
        WrongUsage(u"Zakres okresów obejmuje ponad 100 lat. Popraw wartość --od lub --do.");
    return;
  }
  reading.order.periods = {
      static_cast<std::int16_t>(from->month), static_cast<std::int16_t>(from->year),
      static_cast<std::int16_t>(to->month), static_cast<std::int16_t>(to->year)};
}

// A file of the current folder, else of the structure folder.
std::u16string ResolveStructureFile(suite::ProgramState& state, std::u16string_view name) {
  if (!state.on.files.IsFile(name)) {
    const std::u16string beside = platform::JoinPath(suite::StructureFolder(state), name);
    if (state.on.files.IsFile(beside)) return state.on.files.RealPath(beside);
  }
  return state.on.files.RealPath(name);
}

// The text of the run itself for a missing file, before anything is touched, and the nearest file
// there is.
Outcome MissingStructureFile(suite::ProgramState& state, const std::u16string& path) {
  state.context.Clear();
  state.context.Detail = u"Brak pliku struktury: " + path;
  std::u16string text = generator::OpisBleduGenerowania(state);
  std::vector<std::u16string> names = state.on.files.List(platform::FolderOfPath(path), u"*.stb");
  if (names.empty()) names = state.on.files.List(suite::StructureFolder(state), u"*.stb");
  const std::u16string nearest = NearestWord(platform::NameOfPath(path), names);
  if (!nearest.empty()) text.append(u"Czy chodziło o " + nearest + u"?").append(suite::kCrLf);
  return Failed(std::move(text));
}

void ReadStructures(const CommandContext& context, Reading& reading) {
  std::vector<std::u16string> paths;
  for (const std::u16string& name : SplitNames(context.arguments.Value(u"--struktury"))) {
    const std::u16string path = ResolveStructureFile(context.state, name);
    if (platform::Contains(path, u",")) {
      reading.refusal = WrongUsage(u"Ścieżka pliku struktury zawiera przecinek: " + path +
                                   u". Umieść plik w innym folderze.");
      return;
    }
    if (!context.state.on.files.IsFile(path)) {
      reading.refusal = MissingStructureFile(context.state, path);
      return;
    }
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
  }
  if (paths.empty()) {
    reading.refusal = WrongUsage(u"Opcja --struktury nie podaje żadnego pliku *.stb.");
  }
  for (const std::u16string& path : paths) {
    if (!reading.order.structureFiles.empty()) reading.order.structureFiles += u',';
    reading.order.structureFiles += path;
  }
}

void ReadNameAndFolder(const CommandContext& context, Reading& reading) {
  const std::u16string name = context.arguments.Value(u"--nazwa");
  const std::u16string folder = context.arguments.Value(u"--folder");
  reading.order.name = app::WithoutExtension(name);
  if (!reading.order.name.empty()) {
    if (const auto fault = app::FindNameFault(reading.order.name)) {
      reading.refusal = WrongUsage(*fault);
      return;
    }
  }
  if (!app::ValidateNameAndFolder(context.state, reading.order.name, folder)) {
    reading.refusal = Failed(context.host.Messages());
    if (reading.order.name.empty()) reading.refusal->status = kStatusUsage;
    return;
  }
  reading.order.folder = context.state.on.files.RealPath(folder);
}

Reading ReadOrder(const CommandContext& context) {
  Reading reading;
  for (const auto& step : {ReadPeriods, ReadNameAndFolder, ReadStructures}) {
    step(context, reading);
    if (reading.refusal) break;
  }
  return reading;
}

// Whether the list now holds the database: the registry's operations say nothing of their failures.
bool IsRecorded(suite::ProgramState& state, const std::u16string& path) {
  platform::OrvCombo list;
  suite::RegBaseListLoad(state, list);
  return list.FindValue(path) >= 0;
}

}  // namespace

Outcome RunNowa(const CommandContext& context) {
  const Reading reading = ReadOrder(context);
  if (reading.refusal) return *reading.refusal;
  context.host.SetAnswersYes(context.arguments.Has(u"--nadpisz"));

  platform::ProgressBar bar;
  app::RunResult result;
  {
    const ProgressLine line(context.console, bar,
                            !context.arguments.isQuiet && context.console.IsErrorTerminal());
    result = app::RunNewDatabase(context.state, reading.order, bar);
  }
  if (!result.done) return Failed(context.host.Messages() + result.text);

  Outcome outcome;
  outcome.text = result.text;
  outcome.database = result.akt_baza + u".mdb";
  if (!context.arguments.Has(u"--do-listy")) return outcome;
  app::DodajDoListy(context.state, result.akt_baza);
  if (IsRecorded(context.state, result.akt_baza)) return outcome;
  outcome.status = kStatusFailed;
  outcome.text = context.host.Messages() +
                 u"Bazy nie udało się dodać do listy baz pakietu. "
                 u"Plik bazy jest gotowy: " +
                 outcome.database;
  return outcome;
}

}  // namespace zimbrat::console

#include "reading.h"

#include "console/nearest.h"
#include "app/ModFolder.h"
#include "app/name_rules.h"
#include "app/period_rules.h"
#include "suite/ModPrgFun.h"
#include "platform/dates.h"
#include "platform/text.h"

#include <algorithm>

namespace zimbrat::console {
namespace {

std::optional<Outcome> ReadPeriod(const CommandContext& context, std::u16string_view option,
                                  MonthAndYear& period) {
  if (!context.arguments.Has(option)) return std::nullopt;
  const std::u16string text = context.arguments.Value(option);
  if (const auto given = FindMonthAndYear(text)) {
    period = *given;
    return std::nullopt;
  }
  return WrongUsage(u"Wartość „" + text + u"” opcji " + std::u16string(option) +
                    u" nie jest okresem M/RRRR (lata od 1900 do 2999). Podaj na przykład " +
                    platform::DecimalText(period.month) + u"/" +
                    platform::DecimalText(period.year) + u".");
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

}  // namespace

std::optional<Outcome> ReadPeriods(const CommandContext& context, generator::Periods& periods) {
  const int year = platform::PartsOfDate(context.state.on.clock.Now()).year;
  MonthAndYear from{1, year}, to{12, year};
  if (auto refusal = ReadPeriod(context, u"--od", from)) return refusal;
  if (auto refusal = ReadPeriod(context, u"--do", to)) return refusal;
  periods = {static_cast<std::int16_t>(from.month), static_cast<std::int16_t>(from.year),
             static_cast<std::int16_t>(to.month), static_cast<std::int16_t>(to.year)};
  if (const auto fault = app::FindPeriodFault(periods)) return WrongUsage(*fault);
  return std::nullopt;
}

std::optional<Outcome> ReadNameAndFolder(const CommandContext& context, std::u16string& name,
                                         std::u16string& folder) {
  const std::u16string givenName = context.arguments.Value(u"--nazwa");
  const std::u16string givenFolder = context.arguments.Value(u"--folder");
  name = app::WithoutExtension(givenName);
  if (!name.empty()) {
    if (const auto fault = app::FindNameFault(name)) return WrongUsage(*fault);
  }
  if (!app::ValidateNameAndFolder(context.state, name, givenFolder)) {
    Outcome refusal = Failed(context.host.Messages());
    if (name.empty()) refusal.status = kStatusUsage;
    return refusal;
  }
  folder = context.state.on.files.RealPath(givenFolder);
  return std::nullopt;
}

std::optional<Outcome> ReadStructures(const CommandContext& context, char16_t separator,
                                      std::vector<std::u16string>& paths) {
  for (const std::u16string& name : SplitNames(context.arguments.Value(u"--struktury"))) {
    const std::u16string path = ResolveStructureFile(context.state, name);
    if (!context.state.on.files.IsFile(path)) return MissingStructureFile(context.state, path);
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
  }
  if (paths.empty()) return WrongUsage(u"Opcja --struktury nie podaje żadnego pliku *.stb.");
  return FindSeparator(paths, separator);
}

std::optional<Outcome> FindSeparator(const std::vector<std::u16string>& paths, char16_t separator) {
  if (const auto fault = app::FindListFault(paths, separator)) return WrongUsage(*fault);
  return std::nullopt;
}

platform::Secret TakePassword(const CommandContext& context) {
  if (context.arguments.Has(kPasswordOption)) {
    return platform::Secret(context.arguments.View(kPasswordOption));
  }
  std::u16string value = context.state.on.environment.Variable(u"ZIMBRAT_HASLO");
  platform::Secret password(value);
  platform::Wipe(value);
  return password;
}

std::u16string TakeDatabase(const CommandContext& context, std::u16string_view option) {
  context.state.databasePassword = TakePassword(context);
  const std::u16string path = context.arguments.Value(option);
  // Nothing, and a filter where nothing was chosen, are told by those who open it.
  if (path.empty() || platform::Contains(path, u"*")) return path;
  return context.state.on.files.RealPath(path);
}

}  // namespace zimbrat::console

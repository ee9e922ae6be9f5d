#include "suite/ModPrgFun.h"

#include "suite/manners.h"
#include "suite/value_text.h"
#include "platform/dao_connect.h"
#include "platform/error_numbers.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::suite {
namespace {

constexpr std::u16string_view kPresent = u"struktura obecna";

double VersionOfFile(const ProgramHeader& header) {
  return platform::Val(header.verMajor) * kMajorWeight + platform::Val(header.verMinor);
}

std::u16string Versioned(std::u16string_view program, std::u16string_view major,
                         std::u16string_view minor) {
  return std::u16string(program) + u" v." + std::u16string(major) + u"." + std::u16string(minor);
}

// The item for a program whose row stands in the database.
std::u16string PresentItemText(const ProgramHeader& header, dao::Recordset& row) {
  const dao::Value major = row.Fields()->Item(u"VerMajor")->Value();
  const dao::Value minor = row.Fields()->Item(u"VerMinor")->Value();
  const double inDatabase = DoubleFromValue(major) * kMajorWeight + DoubleFromValue(minor);
  if (inDatabase < VersionOfFile(header)) {
    return Versioned(header.program, TextFromValue(major), TextFromValue(minor)) +
           u" (aktualizacja do wersji " + header.verMajor + u"." + header.verMinor + u")";
  }
  return Versioned(header.program, header.verMajor, header.verMinor) + u" (" +
         std::u16string(kPresent) + u")";
}

void CompareFile(dao::Database& database, const std::u16string& path, const ProgramHeader& header,
                 platform::OrvListCheck& list, bool leaveOutAbsent, bool& lookedUp) {
  // Kept: the symbol goes in as it stands, quotes included.
  const auto row = database.OpenRecordset(
      u"SELECT * FROM dbprg WHERE indprg = '" + header.symbol + u"'", dao::dbOpenSnapshot);
  lookedUp = true;
  if (!row->EndOfFile()) {
    list.Add(PresentItemText(header, *row), path);
    list.SetPresentValues(list.PresentValues() + path + u";");
  } else if (!leaveOutAbsent) {
    list.Add(header.program + u" (brak)", path);
  }
  row->Close();
}

}  // namespace

ProgramHeader ReadProgramHeader(platform::Profile& profile, std::u16string_view path) {
  return {ReadHeaderText(profile, "Program", kHeaderBuffer, path),
          ReadHeaderText(profile, "Symbol", kSymbolBuffer, path),
          ReadHeaderText(profile, "VerMajor", kHeaderBuffer, path),
          ReadHeaderText(profile, "VerMinor", kHeaderBuffer, path)};
}

std::u16string StructureFolder(ProgramState& state) {
  if (!state.structureFolder.empty() &&
      !state.on.files.List(state.structureFolder, u"*.stb").empty()) {
    return state.structureFolder;
  }
  return state.on.environment.ProgramFolder();
}

std::vector<std::u16string> StructureFiles(ProgramState& state) {
  const std::u16string folder = StructureFolder(state);
  std::vector<std::u16string> paths;
  for (const std::u16string& name : state.on.files.List(folder, u"*.stb")) {
    std::u16string path = platform::JoinPath(folder, name);
    if (state.on.files.IsFile(path)) paths.push_back(std::move(path));
  }
  return paths;
}

void LoadProgramList(ProgramState& state, platform::OrvListCheck& list) {
  for (const std::u16string& path : StructureFiles(state)) {
    const ProgramHeader header = ReadProgramHeader(state.on.profile, path);
    if (header.program.empty()) continue;
    list.Add(Versioned(header.program, header.verMajor, header.verMinor), path);
  }
}

Comparison CompareWithDatabase(ProgramState& state, std::u16string_view databasePath,
                               const std::vector<std::u16string>& structureFiles,
                               platform::OrvListCheck& list, bool leaveOutAbsent) {
  Comparison result;
  result.error = Attempt([&] {
    std::optional<Hourglass> busy(state.on.host);
    list.Clear();
    if (databasePath.empty()) {
      busy.reset();
      state.on.host.ShowMessage(u"Wybierz bazę danych z listy lub wskaż lokalizację bazy.",
                                platform::kMsgInformation, u"");
      return;
    }
    DatabaseSession session(state, databasePath, dao::ConnectText(state.databasePassword));
    for (const std::u16string& path : structureFiles) {
      result.stoppedAt = path;
      const ProgramHeader header = ReadProgramHeader(state.on.profile, path);
      if (header.verMajor.empty() || header.program.empty()) continue;
      CompareFile(session.Database(), path, header, list, leaveOutAbsent, result.lookedUp);
    }
    result.stoppedAt.clear();
    session.Close();
  });
  return result;
}

bool CollectSelection(platform::OrvListCheck& list, std::u16string& values, std::u16string& names) {
  bool taken = false;
  for (int i = 0; i < list.Count(); ++i) {
    list.SetCurrent(i);
    if (platform::Contains(list.Text(), kPresent) || !list.IsChecked(i)) continue;
    values.append(list.Value()) += u';';
    names.append(list.Text()) += u';';
    names = platform::ReplaceAll(names, u"obecna starsza wersja", u"podniesienie wersji");
    names = platform::ReplaceAll(names, u"(brak)", u"");
    names = platform::ReplaceAll(names, u" ;", u";");
    taken = true;
  }
  return taken;
}

void SplitPath(std::u16string_view path, std::u16string& folder, std::u16string& name) {
  const std::size_t last = path.rfind(platform::kPathSeparator);
  const bool hasFolder = last != std::u16string_view::npos;
  // Through temporaries: the path may be one of the two texts.
  std::u16string folderPart(hasFolder ? path.substr(0, last) : std::u16string_view());
  std::u16string namePart(hasFolder ? path.substr(last + 1) : path);
  folder = std::move(folderPart);
  name = std::move(namePart);
}

void ListDatabases(ProgramState& state, platform::OrvList& list, std::u16string_view folder) {
  constexpr std::size_t kExtensionLength = 4;
  Attempt([&] {
    list.Clear();
    if (folder.empty()) return;
    for (const std::u16string& name : state.on.files.List(folder, u"*.mdb")) {
      list.Add(std::u16string_view(name).substr(0, name.size() - kExtensionLength),
               std::u16string(folder) + platform::kPathSeparator + name);
    }
  });
}

}  // namespace zimbrat::suite

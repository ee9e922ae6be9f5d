// The commands that only show: programs, recorded databases, the state of a database.
#include "console/explanations.h"
#include "reading.h"

#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"
#include "platform/text.h"

namespace zimbrat::console {
namespace {

constexpr std::u16string_view kFolderOption = u"--folder-struktur";

// The structure folder of the options; a text when it is no folder.
std::optional<std::u16string> TakeStructureFolder(const CommandContext& context) {
  if (!context.arguments.Has(kFolderOption)) return std::nullopt;
  const std::u16string folder = context.arguments.Value(kFolderOption);
  if (!context.state.on.files.IsFolder(folder)) {
    return u"Folder: " + folder + u" nie istnieje. Wprowadź nazwę istniejącego folderu.";
  }
  context.state.structureFolder = context.state.on.files.RealPath(folder);
  return std::nullopt;
}

// Rows, and a line for each; or that there is nothing.
void ShowPrograms(const CommandContext& context, const platform::OrvListCheck& list,
                  Outcome& outcome) {
  TakePrograms(context, list, outcome);
  for (const auto& item : list.Items()) outcome.text.append(item.text).append(suite::kCrLf);
  if (list.Count() > 0) return;
  outcome.text = u"Brak plików struktur *.stb w folderze: " + suite::StructureFolder(context.state);
}

}  // namespace

void TakePrograms(const CommandContext& context, const platform::OrvListCheck& list,
                  Outcome& outcome) {
  for (const auto& item : list.Items()) {
    const auto header = suite::ReadProgramHeader(context.state.on.profile, item.value);
    outcome.programs.push_back({header.program, header.symbol,
                                header.verMajor + u"." + header.verMinor, item.value, item.text});
  }
}

Outcome RunProgramy(const CommandContext& context) {
  if (const auto fault = TakeStructureFolder(context)) return Failed(*fault);
  platform::OrvListCheck list(u',');
  suite::LoadProgramList(context.state, list);
  Outcome outcome;
  ShowPrograms(context, list, outcome);
  return outcome;
}

Outcome RunLista(const CommandContext& context) {
  platform::OrvCombo list;
  suite::RegBaseListLoad(context.state, list);
  Outcome outcome;
  for (const auto& item : list.Items()) {
    if (item.value.empty()) continue;
    outcome.databases.push_back({item.text, item.value});
    outcome.text.append(item.text).append(u": ").append(item.value).append(suite::kCrLf);
  }
  if (outcome.databases.empty()) outcome.text = u"Lista baz pakietu jest pusta.";
  return outcome;
}

Outcome RunSilnik(const CommandContext& context) {
  Outcome outcome;
  outcome.text = context.state.EngineText();
  return outcome;
}

Outcome RunStan(const CommandContext& context) {
  if (const auto fault = TakeStructureFolder(context)) return Failed(*fault);
  suite::ProgramState& state = context.state;
  const std::u16string path = TakeDatabase(context, u"--baza");
  if (!suite::OpenAndIdentify(state, path)) return Failed(context.host.Messages() + Explanation(state));
  platform::OrvListCheck list(u';');
  const auto compared =
      suite::CompareWithDatabase(state, path, suite::StructureFiles(state), list, false);
  Outcome outcome;
  outcome.database = path;
  ShowPrograms(context, list, outcome);
  if (!compared && list.Count() == 0 && !suite::StructureFiles(state).empty()) {
    return Failed(NotComparedText(state, path, compared));
  }
  return outcome;
}

}  // namespace zimbrat::console

// The drivers: what the wizard runs when the user confirms the summary page.
#include "generator/ModGeneruj.h"

#include "drivers.h"
#include "suite/product.h"
#include "suite/manners.h"
#include "platform/text.h"

#include <memory>

namespace zimbrat::generator {
namespace {


void CreateEmptyDatabase(ProgramState& state, const std::u16string& path) {
  const auto workspace = state.Engine().CreateWorkspace(u"", u"Admin", u"");
  workspace->CreateDatabase(path, dao::dbLangGeneral, dao::dbEncrypt)->Close();
  workspace->Close();
}

// One file of a new database: the structure, then the catalogue records and the periods, again
// after every file.
bool ApplyFileToNewDatabase(ProgramState& state, std::u16string_view structureFile,
                            std::u16string_view database, const Periods& periods,
                            platform::ProgressBar& progress) {
  StructureHeader header;
  return GenerujStrukture(state, structureFile, database, header, progress) &&
         ZapiszAdministratora(state, database) && ZapiszProgram(state, database, header) &&
         ZapiszFirme(state, database) && ZapiszOkresy(state, database, periods);
}

bool ApplyFilesToNewDatabase(ProgramState& state, const std::vector<std::u16string>& files,
                             std::u16string_view database, const Periods& periods,
                             platform::ProgressBar& progress) {
  int index = 0;
  for (const std::u16string& file : files) {
    progress.SetSegment(index++, static_cast<int>(files.size()));
    if (!ApplyFileToNewDatabase(state, file, database, periods, progress)) return false;
  }
  return true;
}

}  // namespace

std::u16string DatabasePath(std::u16string_view folder, std::u16string_view name) {
  const std::u16string separator(1, platform::kPathSeparator);
  return platform::ReplaceAll(std::u16string(folder) + separator + std::u16string(name) + u".mdb",
                              separator + separator, separator);
}

bool MayTakePlace(ProgramState& state, const std::u16string& path) {
  return !state.on.files.State(path) ||
         state.on.host.ShowMessage(u"Plik bazy: " + path +
                                       u" istnieje. Wskazany plik może zawierać dane. Usunąć plik "
                                       u"i utworzyć nowy plik bazy?",
                                   platform::kMsgQuestionYesNoDefaultNo,
                                   suite::MessageTitle()) == platform::kAnswerYes;
}

std::vector<std::u16string> SplitFileList(std::u16string_view list, char16_t separator) {
  std::vector<std::u16string> files;
  std::u16string_view rest = platform::TrimBlanks(list);
  std::u16string file;
  while (TakeItem(rest, separator, file)) files.push_back(file);
  if (rest.size() > 1) files.emplace_back(rest);
  return files;
}

bool UtworzPlikBazy(ProgramState& state, std::u16string_view folder, std::u16string_view name,
                    NewDatabaseFile& file) {
  return suite::Record(state.context, [&] {
    const std::u16string path = DatabasePath(folder, name);
    if (!MayTakePlace(state, path)) return false;
    file.Begin(path);
    CreateEmptyDatabase(state, file.WorkingPath());
    return true;
  });
}

bool GenerujNowaBaze(ProgramState& state, std::u16string_view folder, std::u16string_view name,
                     std::u16string_view structureFiles, const Periods& periods,
                     platform::ProgressBar& progress) {
  state.context.Clear();
  state.databasePassword.Clear();
  NewDatabaseFile file(state.on);
  if (!UtworzPlikBazy(state, folder, name, file)) return false;
  if (!ApplyFilesToNewDatabase(state, SplitFileList(structureFiles, u','), file.WorkingPath(),
                               periods, progress)) {
    // What was written stays at the database's place; the context keeps the failure of the work.
    suite::Attempt([&] {
      state.on.host.Pulse();  // not when the user stopped it
      file.PutInPlace({});
    });
    return false;
  }
  return suite::Record(state.context, [&] {
    file.PutInPlace({});
    return true;
  });
}

}  // namespace zimbrat::generator

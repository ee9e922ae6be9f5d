// One structure file applied to one database, from the header to the data statements.
#include "generator/ModGeneruj.h"

#include "patience.h"
#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "platform/dao_connect.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/numbers.h"

namespace zimbrat::generator {
namespace {

struct Place {
  std::u16string_view structureFile;
  std::u16string_view database;
};

void Step(ProgramState& state, platform::ProgressBar& progress) {
  progress.Advance();
  state.on.host.Pulse();
}

bool CreateTables(ProgramState& state, dao::Database& database, std::u16string_view structureFile,
                  const std::vector<suite::SectionEntry>& tables, platform::ProgressBar& progress) {
  for (const suite::SectionEntry& table : tables) {
    if (!UtwórzTablice(state, database, table.key, structureFile)) return false;
    Step(state, progress);
  }
  return true;
}

bool CreateRelations(ProgramState& state, dao::Database& database,
                     std::u16string_view structureFile, platform::ProgressBar& progress) {
  const auto relations = suite::ReadSection(state.on.profile, u"RELATIONS", structureFile);
  if (relations.empty()) return false;
  for (const suite::SectionEntry& relation : relations) {
    if (!UtwórzRelacje(state, database, relation.key, relation.value, structureFile)) return false;
    Step(state, progress);
  }
  return true;
}

// A file that could no longer be read looks like one without the sections that may be absent: in the
// end it has to say of itself what it said at the beginning.
void RequireReadable(ProgramState& state, std::u16string_view structureFile,
                     const StructureHeader& header) {
  if (ReadStructureHeader(state.on.profile, structureFile) == header) return;
  throw platform::FileError(platform::kErrDeviceIo, u"odczyt pliku struktury", structureFile);
}

bool ApplyStructure(ProgramState& state, const Place& place, StructureHeader& header,
                    platform::ProgressBar& progress) {
  if (!state.on.files.IsFile(place.structureFile)) {
    state.context.Detail = u"Brak pliku struktury: " + std::u16string(place.structureFile);
    return false;
  }
  header = ReadStructureHeader(state.on.profile, place.structureFile);
  progress.SetMaximum(platform::AddIntegers(header.tabCount, header.relCount));
  const auto tables = suite::ReadSection(state.on.profile, u"TABLES", place.structureFile);
  if (tables.empty()) return false;

  const auto session =
      OpenPatiently(state, place.database, dao::ConnectText(state.databasePassword));
  dao::Database& database = session->Database();
  const bool done = AktualizujStrukture(state, database, place.structureFile, header.symbol) &&
                    CreateTables(state, database, place.structureFile, tables, progress) &&
                    CreateRelations(state, database, place.structureFile, progress) &&
                    WpiszDane(state, database, place.structureFile, header.symbol);
  if (!done) return false;
  RequireReadable(state, place.structureFile, header);
  session->Close();
  return true;
}

}  // namespace

bool GenerujStrukture(ProgramState& state, std::u16string_view structureFilePath,
                      std::u16string_view databasePath, StructureHeader& header,
                      platform::ProgressBar& progress) {
  return suite::Record(state.context, [&] {
    return ApplyStructure(state, {structureFilePath, databasePath}, header, progress);
  });
}

}  // namespace zimbrat::generator

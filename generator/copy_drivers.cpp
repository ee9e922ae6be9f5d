// The drivers that work on a copy of an existing database: structures added to it, a new database
// with it as template.
#include "generator/ModGeneruj.h"

#include "drivers.h"
#include "room.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/files.h"
#include "platform/run_time_error.h"

namespace zimbrat::generator {
namespace {

// What can stop the work is asked before it begins: another run, writers, rights, room.
bool BeginWork(ProgramState& state, std::u16string_view source, std::u16string_view target,
               WorkingCopy& copy, NewDatabaseFile& file) {
  return suite::Record(state.context,
                       [&] {
                         file.Begin(target);
                         const auto found = state.on.files.State(source);
                         RequireRoom(state.on.files, WorkingFolder(state),
                                     platform::FolderOfPath(file.TargetPath()),
                                     found ? found->size : 0);
                         return true;
                       }) &&
         KopiaRobocza(state, source, copy);
}

bool ApplyFiles(ProgramState& state, const std::vector<std::u16string>& files,
                std::u16string_view database, platform::ProgressBar& progress) {
  int index = 0;
  for (const std::u16string& file : files) {
    progress.SetSegment(index++, static_cast<int>(files.size()));
    StructureHeader header;
    if (!GenerujStrukture(state, file, database, header, progress)) return false;
    if (!ZapiszProgram(state, database, header)) return false;
  }
  return true;
}

bool IsSameFile(ProgramState& state, std::u16string_view a, std::u16string_view b) {
  const auto first = state.on.files.State(a), second = state.on.files.State(b);
  return first && second && first->IsSameFile(*second);
}

}  // namespace

bool KopiaRobocza(ProgramState& state, std::u16string_view source, WorkingCopy& copy) {
  return suite::Record(state.context, [&] {
    copy.Begin(source, WorkingFolder(state));
    return true;
  });
}

bool PrzywrocKopie(ProgramState& state, WorkingCopy& copy, NewDatabaseFile& target) {
  return suite::Record(state.context, [&] {
    if (!copy.Exists()) {
      state.context.Description = u"Brak pliku: " + copy.Path();
      return false;
    }
    const HeldFile& source = copy.Source();
    const bool isSameDatabase = source.Path() == target.TargetPath();
    const bool isUnchanged = isSameDatabase && copy.EqualsSource();
    if (!isUnchanged) {
      target.TakeFrom(*copy.OpenForReading(), source.State().isPrivate.value_or(false));
    }
    // Before the new file is in place: a run killed behind that point might find no next one.
    copy.LetGoOfSource();
    copy.Remove();
    // What a database had before may stay; a new one must be sound.
    if (!isUnchanged) target.PutInPlace(isSameDatabase ? source.Path() : std::u16string());
    return true;
  });
}

bool RozbudujBaze(ProgramState& state, std::u16string_view databasePath,
                  std::u16string_view structureFiles, platform::ProgressBar& progress) {
  state.context.Clear();
  NewDatabaseFile file(state.on);
  WorkingCopy copy(state.on);
  // Once for both: a link that is turned round meanwhile must not mix two databases.
  std::u16string path;
  return suite::Record(state.context,
                       [&] {
                         path = state.on.files.RealPath(databasePath);
                         return true;
                       }) &&
         BeginWork(state, path, path, copy, file) &&
         ApplyFiles(state, SplitFileList(structureFiles, u';'), copy.Path(), progress) &&
         PrzywrocKopie(state, copy, file);
}

bool UtworzZWzorca(ProgramState& state, std::u16string_view templatePath,
                   std::u16string_view folder, std::u16string_view name, const Periods& periods,
                   platform::ProgressBar& progress) {
  state.context.Clear();
  const std::u16string target = DatabasePath(folder, name);
  NewDatabaseFile file(state.on);
  WorkingCopy copy(state.on);
  const bool mayBegin = suite::Record(state.context, [&] {
    if (IsSameFile(state, templatePath, target)) {
      throw platform::RunTimeError(platform::kErrPermissionDenied, platform::kOwnErrorSource,
                                   u"Nowa baza nie może zająć miejsca swojego wzorca: " + target);
    }
    return MayTakePlace(state, target);
  });
  return mayBegin && BeginWork(state, templatePath, target, copy, file) &&
         WyczyscWzorzec(state, copy.Path(), progress) &&
         ZapiszOkresy(state, copy.Path(), periods) && PrzywrocKopie(state, copy, file);
}

}  // namespace zimbrat::generator

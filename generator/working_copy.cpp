#include "generator/working_copy.h"

#include "patience.h"
#include "room.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/file_contents.h"
#include "platform/run_time_error.h"

namespace zimbrat::generator {

using platform::OpenMode;
using platform::Sharing;

std::u16string WorkingFolder(suite::ProgramState& state) {
  std::u16string folder = state.workFolder;
  if (folder.empty()) folder = state.on.environment.TemporaryFolder();
  if (folder.empty()) folder = state.on.environment.ProgramFolder();
  if (state.on.files.IsFolder(folder)) return folder;
  throw platform::RunTimeError(platform::kErrPathNotFound, platform::kOwnErrorSource,
                               u"Nie ma folderu roboczego, wskazanego zmienną TEMP: " + folder);
}

WorkingCopy::~WorkingCopy() {
  if (isOurs_) suite::Abandon([&] { Remove(); });
}

void WorkingCopy::Begin(std::u16string_view source, std::u16string_view folder) {
  path_ = platform::JoinPath(folder, u"Robocza " + std::u16string(platform::NameOfPath(source)));
  hold_ = on_.files.TryHold(path_);
  if (!hold_) {
    throw platform::RunTimeError(platform::kErrPermissionDenied, platform::kOwnErrorSource,
                                 u"Inny zimbrat pracuje właśnie na bazie o tej samej nazwie, w "
                                 u"kopii roboczej: " + path_);
  }
  source_.emplace(on_.files, on_.files.RealPath(source));
  RequireOwnLeftover();
  std::unique_ptr<platform::File> copy;
  Patiently(on_, [&] {
    RemoveName(on_.files, path_);
    copy = on_.files.Open(path_, OpenMode::CreatePrivate, Sharing::None);
  });
  isOurs_ = true;
  platform::CopyContents(source_->Content(), *copy, [&] { on_.host.Pulse(); });
}

// What a killed run left is open to its owner alone; another file of that name is somebody's.
void WorkingCopy::RequireOwnLeftover() {
  const std::optional<platform::FileState> found = on_.files.State(path_);
  if (!found || found->isPrivate.value_or(true)) return;
  throw platform::RunTimeError(
      platform::kErrFileExists, platform::kOwnErrorSource,
      u"Miejsce kopii roboczej zajmuje plik, który nią nie jest. Przenieś go lub usuń: " + path_);
}

std::unique_ptr<platform::File> WorkingCopy::OpenForReading() const {
  std::unique_ptr<platform::File> file;
  Patiently(on_, [&] { file = on_.files.Open(path_, OpenMode::Read, Sharing::Readers); });
  return file;
}

bool WorkingCopy::EqualsSource() {
  return platform::HaveSameContents(*OpenForReading(), source_->Content(),
                                    [&] { on_.host.Pulse(); });
}

void WorkingCopy::Remove() {
  Patiently(on_, [&] { RemoveName(on_.files, path_); });
  isOurs_ = false;
  hold_.reset();
}

}  // namespace zimbrat::generator

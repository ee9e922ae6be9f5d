#include "generator/working_copy.h"

#include "copying.h"
#include "patience.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::generator {

using platform::OpenMode;
using platform::Sharing;

std::u16string WorkingFolder(suite::ProgramState& state) {
  if (!state.workFolder.empty()) return state.workFolder;
  std::u16string folder = state.on.environment.TemporaryFolder();
  return folder.empty() ? state.on.environment.ProgramFolder() : folder;
}

WorkingCopy::~WorkingCopy() {
  if (hold_) suite::Attempt([&] { Remove(); });
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
  RemoveName(on_.files, path_);
  const auto copy = on_.files.Open(path_, OpenMode::CreatePrivate, Sharing::None);
  CopyContents(source_->Content(), *copy, on_.host);
}

std::unique_ptr<platform::File> WorkingCopy::OpenForReading() const {
  return on_.files.Open(path_, OpenMode::Read, Sharing::None);
}

bool WorkingCopy::EqualsSource() {
  return HaveSameContents(*OpenForReading(), source_->Content(), on_.host);
}

void WorkingCopy::Remove() {
  Patiently(on_, [&] { RemoveName(on_.files, path_); });
  hold_.reset();
}

}  // namespace zimbrat::generator

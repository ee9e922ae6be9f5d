#include "platform/working_file.h"

#include <optional>
#include <utility>

#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {

WorkingFile::WorkingFile(Files& files, const std::u16string& target, std::u16string_view suffix)
    : files_(files), path_(target + std::u16string(suffix)), hold_(files.TryHold(path_)) {
  if (!hold_) throw RunTimeError(kErrFileInUse, {}, dao::ErrorText(kErrFileInUse, target));
  if (files_.State(path_)) files_.Delete(path_);
}

WorkingFile::~WorkingFile() {
  try {
    if (!isInPlace_ && files_.State(path_)) files_.Delete(path_);
  } catch (const std::exception&) {
    // The next one of that name removes it.
  }
}

void WorkingFile::PutInPlaceOf(const std::u16string& target, std::unique_ptr<File> source) {
  const std::optional<FileState> state = files_.State(target);
  if (state && state->isReadOnly) throw FileError(kErrPathAccess, u"plik tylko do odczytu", target);
  files_.CopyAttributes(target, path_);
  files_.ReplaceHeld(path_, target, std::move(source));
  isInPlace_ = true;
}

}  // namespace zimbrat::platform

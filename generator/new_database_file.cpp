#include "generator/new_database_file.h"

#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::generator {

using platform::OpenMode;
using platform::Sharing;

NewDatabaseFile::~NewDatabaseFile() {
  if (!hold_) return;
  suite::Attempt([&] {
    if (files_.State(workingPath_)) files_.Delete(workingPath_);
  });
}

void NewDatabaseFile::Begin(std::u16string_view targetPath) {
  const bool exists = files_.State(targetPath).has_value();
  // Behind a link it is the file itself that is replaced.
  targetPath_ = exists ? files_.RealPath(targetPath) : std::u16string(targetPath);
  workingPath_ = targetPath_ + std::u16string(kWorkingSuffix);
  const std::u16string folder(platform::FolderOfPath(targetPath_));
  RemoveLeftovers(folder);
  auto hold = files_.TryHold(workingPath_);
  if (!hold) {
    throw platform::RunTimeError(platform::kErrPermissionDenied, u"Zimbrat",
                                 u"Bazę danych tworzy właśnie inny program: " + targetPath_);
  }
  if (files_.State(workingPath_)) files_.Delete(workingPath_);
  if (exists) oldFile_ = files_.Open(targetPath_, OpenMode::ReadWrite, Sharing::None);
  hold_ = std::move(hold);
}

// Working names that no running process holds: the file, and what the system kept beside it for the hold,
// which goes with a hold that ends properly.
void NewDatabaseFile::RemoveLeftovers(std::u16string_view folder) {
  const std::u16string ending = u".mdb" + std::u16string(kWorkingSuffix);
  for (const std::u16string& name : files_.List(folder, u"*" + ending + u"*")) {
    const std::size_t at = name.rfind(ending);
    if (at == std::u16string::npos) continue;  // written in another case: not ours
    suite::Attempt([&] {
      const std::u16string path = platform::JoinPath(folder, name.substr(0, at + ending.size()));
      const auto hold = files_.TryHold(path);
      if (hold && files_.State(path)) files_.Delete(path);
    });
  }
}

void NewDatabaseFile::PutInPlace() {
  host_.VerifyCopy(workingPath_, {});
  files_.Open(workingPath_, OpenMode::ReadWrite, Sharing::None)->Flush();
  const bool replaces = oldFile_ != nullptr;
  oldFile_.reset();
  // Who might read the old file may read the new one, and nobody else.
  if (replaces) files_.CopyAttributes(targetPath_, workingPath_);
  files_.Replace(workingPath_, targetPath_);
  hold_.reset();
}

}  // namespace zimbrat::generator

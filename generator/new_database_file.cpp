#include "generator/new_database_file.h"

#include "patience.h"
#include "room.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/file_contents.h"
#include "platform/file_errors.h"
#include "platform/text.h"

namespace zimbrat::generator {

using platform::OpenMode;
using platform::Sharing;

// The file, and what the system kept beside it for the hold, which goes with a hold that ends properly.
void RemoveLeftovers(const suite::Surroundings& on, std::u16string_view folder) {
  const std::u16string ending = u".mdb" + std::u16string(kWorkingSuffix);
  for (const std::u16string& name : on.files.List(folder, u"*" + ending + u"*")) {
    const std::size_t at = name.rfind(ending);
    if (at == std::u16string::npos) continue;  // written in another case: not ours
    suite::Attempt([&] {
      const std::u16string path = platform::JoinPath(folder, name.substr(0, at + ending.size()));
      const auto hold = on.files.TryHold(path);
      if (hold) RemoveName(on.files, path);
    });
  }
}

NewDatabaseFile::~NewDatabaseFile() {
  if (!hold_) return;
  suite::Abandon([&] { RemoveName(on_.files, workingPath_); });
}

void NewDatabaseFile::Begin(std::u16string_view targetPath) {
  const std::optional<platform::FileState> old = on_.files.State(targetPath);
  // Behind a link it is the file itself that is replaced.
  targetPath_ = old ? on_.files.RealPath(targetPath) : std::u16string(targetPath);
  workingPath_ = targetPath_ + std::u16string(kWorkingSuffix);
  RemoveLeftovers(on_, platform::FolderOfPath(targetPath_));
  auto hold = on_.files.TryHold(workingPath_);
  if (!hold) {
    throw platform::RunTimeError(platform::kErrPermissionDenied, platform::kOwnErrorSource,
                                 u"Na tej bazie pracuje właśnie inny zimbrat: " + targetPath_);
  }
  RemoveName(on_.files, workingPath_);
  if (old && old->isReadOnly) {
    throw platform::FileError(platform::kErrPathAccess, u"plik tylko do odczytu", targetPath_);
  }
  if (old) oldFile_.emplace(on_.files, targetPath_);
  hold_ = std::move(hold);
}

void NewDatabaseFile::TakeFrom(platform::File& content, bool isPrivate) {
  const OpenMode mode = isPrivate || oldFile_ ? OpenMode::CreatePrivate : OpenMode::CreateNew;
  const auto file = on_.files.Open(workingPath_, mode, Sharing::None);
  platform::CopyContents(content, *file, [&] { on_.host.Pulse(); });
}

void NewDatabaseFile::PutInPlace(std::u16string_view original) {
  on_.host.Pulse();  // the last moment to stop
  Patiently(on_, [&] { on_.host.VerifyCopy(workingPath_, original); });
  Patiently(on_, [&] { on_.files.Open(workingPath_, OpenMode::ReadWrite, Sharing::None)->Flush(); });
  bool isInPlace = false;
  Patiently(on_, [&] { isInPlace = IsTargetAsFound() && TakePlace(); });
  if (!isInPlace) PutBeside();
  hold_.reset();
}

// The hold, which a rename that failed has taken, is taken again first.
bool NewDatabaseFile::IsTargetAsFound() {
  const bool isThere = on_.files.State(targetPath_).has_value();
  if (!oldFile_ || !isThere) return oldFile_.has_value() == isThere;
  oldFile_->Renew();
  return oldFile_->IsUnchanged();
}

// False when a place that was free is taken by now.
bool NewDatabaseFile::TakePlace() {
  if (!oldFile_) return TryMove(targetPath_);
  // Who might read the old file may read the new one, and nobody else.
  on_.files.CopyAttributes(targetPath_, workingPath_);
  on_.files.ReplaceHeld(workingPath_, targetPath_, oldFile_->HandOver());
  return true;
}

bool NewDatabaseFile::TryMove(std::u16string_view to) {
  const auto error = suite::Attempt([&] { on_.files.Move(workingPath_, to); });
  if (error && error->Number() != platform::kErrFileExists) throw *error;
  return !error;
}

void NewDatabaseFile::PutBeside() {
  std::u16string stem = targetPath_;
  if (platform::UpperCase(stem).ends_with(u".MDB")) stem.resize(stem.size() - 4);
  std::u16string beside = stem + u" (zimbrat).mdb";
  for (int i = 2; !TryMove(beside); ++i) {
    beside = stem + u" (zimbrat " + platform::DecimalText(i) + u").mdb";
  }
  hold_.reset();
  throw platform::RunTimeError(
      platform::kErrFileExists, platform::kOwnErrorSource,
      u"Plik bazy zmienił się w czasie pracy zimbrata i nie został zastąpiony: " + targetPath_ +
          u". Wynik pracy zapisano w pliku: " + beside);
}

}  // namespace zimbrat::generator

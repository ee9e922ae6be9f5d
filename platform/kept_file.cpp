#include "platform/kept_file.h"

#include <utility>

#include "platform/file_contents.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::platform {

namespace {

constexpr std::u16string_view kUnfinishedSuffix = u".zimbrat-uszkodzona";
constexpr std::u16string_view kKeptSuffix = u".uszkodzona";

}  // namespace

KeptFile::KeptFile(Files& files, std::u16string original, std::u16string workingPath)
    : files_(files),
      original_(std::move(original)),
      workingPath_(std::move(workingPath)),
      unfinished_(original_ + std::u16string(kUnfinishedSuffix)) {
  try {
    RemoveUnfinished();
  } catch (const RunTimeError&) {
    // Another user's: it is in the way only of those who need a copy.
  }
}

KeptFile::~KeptFile() {
  try {
    RemoveUnfinished();
    if (isOurs_ && files_.State(workingPath_) && files_.State(path_)) files_.Delete(path_);
  } catch (const std::exception&) {
    // Nothing is lost by a copy too many.
  }
}

void KeptFile::RemoveUnfinished() {
  if (files_.State(unfinished_)) files_.Delete(unfinished_);
}

bool KeptFile::IsCopyOf(const std::u16string& path, File& source) {
  try {
    return HaveSameContents(*files_.Open(path, OpenMode::Read, Sharing::All), source, {});
  } catch (const RunTimeError&) {
    return false;  // a file that cannot be read is none to rely on
  }
}

void KeptFile::Write(File& source, const std::function<void()>& pulse) {
  RemoveUnfinished();  // of an attempt before
  const auto copy = files_.Open(unfinished_, OpenMode::CreatePrivate, Sharing::None);
  CopyContents(source, *copy, pulse);
  copy->Flush();
}

void KeptFile::Make(File& source, const std::function<void()>& pulse) {
  const std::u16string first = original_ + std::u16string(kKeptSuffix);
  std::u16string name = first;
  for (int number = 2; files_.State(name); ++number) {
    if (IsCopyOf(name, source)) {
      path_ = name;
      return;
    }
    name = first + u"-" + DecimalText(number);
  }
  Write(source, pulse);
  files_.CopyAttributes(original_, unfinished_);
  files_.Move(unfinished_, name);
  path_ = name;
  isOurs_ = true;
}

}  // namespace zimbrat::platform

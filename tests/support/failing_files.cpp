#include "tests/support/failing_files.h"

#include <cstdlib>
#include <utility>

#include "platform/file_errors.h"
#include "platform/text.h"

namespace zimbrat::tests {

using namespace platform;

class FailingFile : public File {
 public:
  FailingFile(FailingFiles& owner, std::unique_ptr<File> inner, std::u16string path, bool hasName)
      : owner_(owner), inner_(std::move(inner)), path_(std::move(path)), hasName_(hasName) {}

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    if (!owner_.IsFaulty("ReadAt", false, path_)) return inner_->ReadAt(offset, bytes);
    if (owner_.plan.how != Fault::Half) owner_.Raise(path_);
    return inner_->ReadAt(offset, bytes.first(bytes.size() / 2));
  }

  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    const bool isFaulty = owner_.IsFaulty("WriteAt", true, path_);
    if (isFaulty && owner_.GoesHalf()) {
      Put(offset, bytes.first(bytes.size() / 2));
      if (owner_.plan.how == Fault::EndHalfway) std::_Exit(kEndedByFault);
    }
    if (isFaulty) owner_.Raise(path_);
    Put(offset, bytes);
  }

  std::uint64_t Size() override {
    owner_.Pass("Size", false, path_);
    return inner_->Size();
  }

  void Resize(std::uint64_t size) override {
    owner_.Pass("Resize", true, path_);
    if (hasName_) owner_.IfTracked([&] { owner_.unsynced_.BeforeResize(path_, size); });
    inner_->Resize(size);
  }

  void Flush() override {
    owner_.Pass("Flush", true, path_);
    inner_->Flush();
    if (hasName_) owner_.IfTracked([&] { owner_.unsynced_.Flushed(path_); });
  }

  std::optional<std::uint64_t> FindLock(std::uint64_t offset, std::uint64_t size) override {
    owner_.Pass("FindLock", false, path_);
    return inner_->FindLock(offset, size);
  }

 private:
  void Put(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (hasName_) owner_.IfTracked([&] { owner_.unsynced_.BeforeWrite(path_, offset, bytes); });
    inner_->WriteAt(offset, bytes);
  }

  FailingFiles& owner_;
  std::unique_ptr<File> inner_;
  std::u16string path_;
  bool hasName_;
};

bool FailingFiles::IsFaulty(const char* name, bool isChange, std::u16string_view path) {
  if (plan.changesOnly && !isChange) return false;
  ++calls_;
  if (onCall) onCall(name);
  if (plan.call == 0 || calls_ < plan.call || (calls_ > plan.call && !plan.forGood)) return false;
  if (failedCall_ == nullptr) {
    failedCall_ = name;
    failedPath_ = path;
  }
  const bool isWrite = std::string_view(name) == "WriteAt";
  if (plan.how == Fault::EndProcess || (plan.how == Fault::EndHalfway && !isWrite)) {
    std::_Exit(kEndedByFault);
  }
  return true;
}

void FailingFiles::Raise(std::u16string_view path) const {
  throw FileError(plan.error, Utf16FromUtf8(failedCall_), path);
}

void FailingFiles::Pass(const char* name, bool isChange, std::u16string_view path) {
  if (IsFaulty(name, isChange, path)) Raise(path);
}

std::unique_ptr<File> FailingFiles::Open(std::u16string_view path, OpenMode mode, Sharing sharing) {
  const bool creates = mode == OpenMode::CreateNew || mode == OpenMode::CreatePrivate;
  Pass("Open", creates, path);
  std::unique_ptr<File> file = inner_.Open(path, mode, sharing);
  if (creates) IfTracked([&] { unsynced_.Created(path); });
  return std::make_unique<FailingFile>(*this, std::move(file), std::u16string(path), true);
}

std::unique_ptr<File> FailingFiles::OpenTemporary(std::u16string_view folder) {
  Pass("OpenTemporary", true, folder);
  return std::make_unique<FailingFile>(*this, inner_.OpenTemporary(folder), std::u16string(folder),
                                       false);
}

std::optional<FileState> FailingFiles::State(std::u16string_view path) {
  Pass("State", false, path);
  return inner_.State(path);
}

void FailingFiles::Delete(std::u16string_view path) {
  Pass("Delete", true, path);
  IfTracked([&] { if (inner_.IsFile(path)) unsynced_.BeforeDelete(path); });
  inner_.Delete(path);
}

void FailingFiles::ReplaceHeld(std::u16string_view from, std::u16string_view to,
                               std::unique_ptr<File> held) {
  Pass("Replace", true, to);
  inner_.ReplaceHeld(from, to, std::move(held));
  IfTracked([&] { unsynced_.Replaced(from, to); });
}

void FailingFiles::Move(std::u16string_view from, std::u16string_view to) {
  Pass("Move", true, to);
  inner_.Move(from, to);
  IfTracked([&] { unsynced_.Replaced(from, to); });
}

void FailingFiles::CopyAttributes(std::u16string_view from, std::u16string_view to) {
  Pass("CopyAttributes", true, to);
  inner_.CopyAttributes(from, to);
}

void FailingFiles::CreateFolder(std::u16string_view path) {
  Pass("CreateFolder", true, path);
  inner_.CreateFolder(path);
}

std::vector<std::u16string> FailingFiles::List(std::u16string_view folder,
                                               std::u16string_view pattern) {
  if (IsFaulty("List", false, folder)) return {};
  return inner_.List(folder, pattern);
}

void FailingFiles::FlushFolder(std::u16string_view folder) {
  Pass("FlushFolder", true, folder);
  inner_.FlushFolder(folder);
  IfTracked([&] { unsynced_.FolderFlushed(folder); });
}

std::u16string FailingFiles::RealPath(std::u16string_view path) {
  Pass("RealPath", false, path);
  return inner_.RealPath(path);
}

std::uint64_t FailingFiles::FreeSpace(std::u16string_view folder) {
  Pass("FreeSpace", false, folder);
  return inner_.FreeSpace(folder);
}

std::unique_ptr<Hold> FailingFiles::TryHold(std::u16string_view path) {
  if (IsFaulty("TryHold", true, path)) return nullptr;
  return inner_.TryHold(path);
}

}  // namespace zimbrat::tests

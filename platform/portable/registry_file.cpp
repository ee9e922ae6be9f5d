#include "registry_file.h"

#include <chrono>
#include <thread>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "registry_text.h"

namespace zimbrat::platform {
namespace {

constexpr std::uint64_t kMostBytes = 16u << 20;
constexpr int kHoldAttempts = 200;
constexpr std::chrono::milliseconds kHoldPause{5};

std::int32_t ResultOf(const RunTimeError& error) {
  switch (error.Number()) {
    case kErrPathAccess:
    case kErrPermissionDenied:
      return kRegistryAccessDenied;
    default:
      return kRegistryWriteFault;
  }
}

}  // namespace

std::int32_t RegistryFile::Guarded(const std::function<std::int32_t()>& work) {
  try {
    return work();
  } catch (const RunTimeError& error) {
    return ResultOf(error);
  }
}

std::int32_t RegistryFile::Load() {
  const bool exists = files_.State(path_).has_value();
  std::string bytes = exists ? files_.ReadAll(path_, kMostBytes) : EncodeRegistryText({});
  if (isLoaded_ && bytes == bytes_) return kRegistrySuccess;
  std::optional<RegistryTree> tree = FindRegistryTree(bytes);
  if (!tree) return kRegistryCorrupt;
  tree_ = std::move(*tree);
  bytes_ = std::move(bytes);
  isLoaded_ = true;
  return kRegistrySuccess;
}

std::int32_t RegistryFile::Read(const std::function<std::int32_t(RegistryTree&)>& use) {
  return Guarded([&] {
    const std::int32_t result = Load();
    return result == kRegistrySuccess ? use(tree_) : result;
  });
}

std::int32_t RegistryFile::Change(const std::function<std::int32_t(RegistryTree&)>& change) {
  return Guarded([&] {
    MakeFolder(FolderOfPath(path_));
    const std::unique_ptr<Hold> hold = WaitForHold();
    if (!hold) return kRegistryWriteFault;
    std::int32_t result = Load();
    if (result != kRegistrySuccess) return result;
    isLoaded_ = false;  // until the changed tree is in the file, it is nobody's truth
    result = change(tree_);
    if (result != kRegistrySuccess) return result;
    std::string bytes = EncodeRegistryText(tree_);
    if (bytes.size() > kMostBytes) return kRegistryWriteFault;
    if (bytes != bytes_ || !files_.State(path_)) Save(bytes);
    bytes_ = std::move(bytes);
    isLoaded_ = true;
    return kRegistrySuccess;
  });
}

// A registry file that is a link stays one: the file behind it is replaced.
void RegistryFile::Save(const std::string& bytes) {
  const std::u16string target = files_.RealPath(path_);
  const std::u16string beside = target + u".new";
  if (files_.State(beside)) files_.Delete(beside);
  {
    const std::unique_ptr<File> file = files_.Open(beside, OpenMode::CreateNew, Sharing::None);
    file->WriteAt(0, std::as_bytes(std::span<const char>(bytes)));
    file->Flush();
  }
  if (files_.State(target)) files_.CopyAttributes(target, beside);
  files_.Replace(beside, target);
}

void RegistryFile::MakeFolder(std::u16string_view folder) {
  if (folder.empty() || files_.State(folder)) return;
  // A root has no folder above it: without the disk there is nothing to make.
  if (const std::u16string_view above = FolderOfPath(folder); above != folder) MakeFolder(above);
  files_.CreateFolder(folder);
}

std::unique_ptr<Hold> RegistryFile::WaitForHold() {
  for (int attempt = 1;; ++attempt) {
    if (std::unique_ptr<Hold> hold = files_.TryHold(path_)) return hold;
    if (attempt == kHoldAttempts) return nullptr;
    std::this_thread::sleep_for(kHoldPause);
  }
}

}  // namespace zimbrat::platform

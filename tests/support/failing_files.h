// Files whose n-th call goes wrong. Calls of the Files and of every File that it opened are counted
// together, from 1. A fault test is a loop:
//
//   for (std::uint64_t n = 1;; ++n) {
//     FailingFiles files(real);
//     files.plan = {.call = n, .how = Fault::Error, .error = kErrDiskFull};
//     ... the work, then the checks ...
//     if (!files.HasFailed()) break;
//   }
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/error_numbers.h"
#include "platform/files.h"
#include "tests/support/unsynced_writes.h"

namespace zimbrat::tests {

enum class Fault {
  Error,       // the call does nothing and raises `error`; List gives an empty list, TryHold none
  Half,        // a read gives half of what there is, a write puts half and raises `error`; else as Error
  EndProcess,  // the process ends with kEndedByFault before the call
  EndHalfway,  // as EndProcess, but a write puts its first half before
};

inline constexpr int kEndedByFault = 86;

struct FaultPlan {
  std::uint64_t call = 0;   // 0: never
  Fault how = Fault::Error;
  std::int32_t error = platform::kErrDeviceIo;
  bool forGood = false;     // every later call goes wrong too
  bool changesOnly = false; // count only what changes the disk or makes changes durable
};

class FailingFiles : public platform::Files {
 public:
  // `inner` must outlive the object and its files.
  explicit FailingFiles(platform::Files& inner) : inner_(inner), unsynced_(inner) {}

  FaultPlan plan;
  // Whether LosePower will be called; set before the work. Reads files that are open, which only POSIX
  // systems allow.
  bool tracksUnsynced = false;
  // Called before each counted call with its name, for instance "WriteAt".
  std::function<void(const char* name)> onCall;

  std::uint64_t Calls() const { return calls_; }
  // Whether the planned call was reached, and its name.
  bool HasFailed() const { return failedCall_ != nullptr; }
  const char* FailedCall() const { return failedCall_ == nullptr ? "" : failedCall_; }
  // The file that it was about.
  const std::u16string& FailedPath() const { return failedPath_; }

  // What the disk may hold when the power goes now: to be called after the work stopped, usually on a
  // plan with `forGood`. See UnsyncedWrites.
  void LosePower(PowerLoss loss, std::uint32_t seed = 1) { unsynced_.LosePower(loss, seed); }

  std::unique_ptr<platform::File> Open(std::u16string_view path, platform::OpenMode mode,
                                       platform::Sharing sharing) override;
  std::unique_ptr<platform::File> OpenTemporary(std::u16string_view folder) override;
  std::optional<platform::FileState> State(std::u16string_view path) override;
  void Delete(std::u16string_view path) override;
  void ReplaceHeld(std::u16string_view from, std::u16string_view to,
                   std::unique_ptr<platform::File> held) override;
  void Move(std::u16string_view from, std::u16string_view to) override;
  void CopyAttributes(std::u16string_view from, std::u16string_view to) override;
  void CreateFolder(std::u16string_view path) override;
  std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern) override;
  void FlushFolder(std::u16string_view folder) override;
  std::u16string RealPath(std::u16string_view path) override;
  std::uint64_t FreeSpace(std::u16string_view folder) override;
  std::unique_ptr<platform::Hold> TryHold(std::u16string_view path) override;

 private:
  friend class FailingFile;

  // Counts the call; true when it is to go wrong. Does not return when the process is to end.
  bool IsFaulty(const char* name, bool isChange, std::u16string_view path);
  bool GoesHalf() const { return plan.how == Fault::Half || plan.how == Fault::EndHalfway; }
  // Counts the call and raises the planned error when it is to go wrong.
  void Pass(const char* name, bool isChange, std::u16string_view path);
  // Takes no memory: the call that it follows has been made.
  template <class Note>
  void IfTracked(const Note& note) const {
    if (tracksUnsynced) note();
  }
  [[noreturn]] void Raise(std::u16string_view path) const;

  platform::Files& inner_;
  UnsyncedWrites unsynced_;
  std::uint64_t calls_ = 0;
  const char* failedCall_ = nullptr;
  std::u16string failedPath_;
};

}  // namespace zimbrat::tests

// A new version of a database, or its first, on the way to its place. It is written under a name of its own beside the target, so
// that whatever ends the program leaves the old file or the new one:
//
//   Begin        takes the working name for this process, removes what ended runs left in the
//                folder, and holds an old file of the target's name against writers
//   (the work)   the engine creates and fills the file under WorkingPath, or TakeFrom brings a
//                finished one
//   PutInPlace   verifies and flushes it, then one atomic rename to TargetPath
//   destructor   without PutInPlace: removes the working file; an old file stays
#pragma once

#include "generator/held_file.h"
#include "suite/program_state.h"
#include "platform/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::generator {

// Behind the target's name while the work lasts.
inline constexpr std::u16string_view kWorkingSuffix = u".zimbrat-nowa";

// Removes the working names in the folder that no running process holds.
void RemoveLeftovers(const suite::Surroundings& on, std::u16string_view folder);

class NewDatabaseFile {
 public:
  explicit NewDatabaseFile(const suite::Surroundings& on) : on_(on) {}
  ~NewDatabaseFile();
  NewDatabaseFile(const NewDatabaseFile&) = delete;
  NewDatabaseFile& operator=(const NewDatabaseFile&) = delete;

  // Error 70 when another run works on the same database or somebody writes to the old file, 75
  // when that is read-only.
  void Begin(std::u16string_view targetPath);
  // A copy of `content` under the working name, open to nobody but its owner until it gets the
  // rights of an old file, and for good when `isPrivate`.
  void TakeFrom(platform::File& content, bool isPrivate);
  // A fault that the file at `original` has too does not count against the new one; empty for a
  // database made from nothing. Waits for who holds the old file for a moment. When by now another
  // file stands at the target (58), it stays there, and the new one is put beside it.
  void PutInPlace(std::u16string_view original);

  const std::u16string& WorkingPath() const { return workingPath_; }
  const std::u16string& TargetPath() const { return targetPath_; }

 private:
  bool IsTargetAsFound();
  bool TakePlace();
  bool TryMove(std::u16string_view to);
  [[noreturn]] void PutBeside();

  const suite::Surroundings& on_;
  std::u16string targetPath_;
  std::u16string workingPath_;
  std::unique_ptr<platform::Hold> hold_;
  std::optional<HeldFile> oldFile_;
};

}  // namespace zimbrat::generator

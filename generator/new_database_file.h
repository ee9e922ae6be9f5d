// A new database on its way to its place. It is written under a name of its own beside the target,
// so that whatever ends the program leaves the old file or none:
//
//   Begin        takes the working name for this process, removes what ended runs left in the
//   folder,
//                and keeps others from opening an old file of the target's name
//   (the work)   creates and fills the file under WorkingPath
//   PutInPlace   verifies and flushes it, then one atomic rename to TargetPath
//   destructor   without PutInPlace: removes the working file; an old file stays
#pragma once

#include "platform/files.h"
#include "platform/host.h"

#include <memory>
#include <string>
#include <string_view>

namespace zimbrat::generator {

// Behind the target's name while the work lasts.
inline constexpr std::u16string_view kWorkingSuffix = u".zimbrat-nowa";

class NewDatabaseFile {
 public:
  NewDatabaseFile(platform::Files& files, platform::Host& host) : files_(files), host_(host) {}
  ~NewDatabaseFile();
  NewDatabaseFile(const NewDatabaseFile&) = delete;
  NewDatabaseFile& operator=(const NewDatabaseFile&) = delete;

  // Error 70 when another run is writing the same database or somebody holds the old file.
  void Begin(std::u16string_view targetPath);
  void PutInPlace();

  const std::u16string& WorkingPath() const { return workingPath_; }
  const std::u16string& TargetPath() const { return targetPath_; }

 private:
  void RemoveLeftovers(std::u16string_view folder);

  platform::Files& files_;
  platform::Host& host_;
  std::u16string targetPath_;
  std::u16string workingPath_;
  std::unique_ptr<platform::Hold> hold_;
  std::unique_ptr<platform::File> oldFile_;
};

}  // namespace zimbrat::generator

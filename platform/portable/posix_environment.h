// Environment variables and folders of a POSIX process.
#pragma once

#include <string>

#include "platform/environment.h"

namespace zimbrat::platform {

class PosixEnvironment : public Environment {
 public:
  std::u16string Variable(std::u16string_view name) override;
  std::u16string ProgramFolder() override;
  std::u16string CurrentFolder() override;
  void SetCurrentFolder(std::u16string_view folder) override;
  std::u16string TemporaryFolder() override;
};

// The folder "zimbrat-<user's number>" in `parent`, which is open to all: made if it is missing, for its
// owner alone. `parent` itself where that name is a link's, another user's, or open to others' writing.
std::string OwnFolderIn(const std::string& parent);

}  // namespace zimbrat::platform

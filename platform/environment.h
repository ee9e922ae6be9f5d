// What the process knows of its surroundings.
#pragma once

#include <string>
#include <string_view>

namespace zimbrat::platform {

class Environment {
 public:
  virtual ~Environment() = default;
  // The value of an environment variable; empty when it is not set.
  virtual std::u16string Variable(std::u16string_view name) = 0;
  // The folder of the running program, without a separator at its end.
  virtual std::u16string ProgramFolder() = 0;
  virtual std::u16string CurrentFolder() = 0;
  // Makes it the current folder; one that is not there changes nothing.
  virtual void SetCurrentFolder(std::u16string_view folder) = 0;
  // Where working copies go: TEMP; elsewhere than on Windows TEMP, TMPDIR, then a folder of
  // this user's in the system's own. Empty when there is none.
  virtual std::u16string TemporaryFolder() = 0;
};

}  // namespace zimbrat::platform

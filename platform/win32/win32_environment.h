// Environment variables and folders of a Windows process.
#pragma once

#include "platform/environment.h"

namespace zimbrat::platform {

class Win32Environment : public Environment {
 public:
  std::u16string Variable(std::u16string_view name) override;
  std::u16string ProgramFolder() override;
  std::u16string CurrentFolder() override;
  void SetCurrentFolder(std::u16string_view folder) override;
  std::u16string TemporaryFolder() override;
};

}  // namespace zimbrat::platform

// Automation by IDispatch, in the process or in a program of its own.
//
// An error that the object raises keeps its source and description; its number is the lower half of a code
// 0x800Axxxx, else the whole code. Its description is the system's where the object gives none.
#pragma once

#include "platform/automation.h"

namespace zimbrat::platform {

class Win32Automation : public Automation {
 public:
  std::unique_ptr<AutomationObject> Create(std::u16string_view programId) override;
};

}  // namespace zimbrat::platform

// Rights for a new file that let in the user of this process, the system and nobody else.
#pragma once

#include <windows.h>

#include "handles.h"

namespace zimbrat::platform {

class OwnersRights {
 public:
  OwnersRights();
  // For CreateFile; null where the system gives no such rights, and the folder's own apply.
  SECURITY_ATTRIBUTES* Attributes() { return descriptor_.IsOpen() ? &attributes_ : nullptr; }

 private:
  LocalHandle descriptor_;
  SECURITY_ATTRIBUTES attributes_{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

}  // namespace zimbrat::platform

// The registry of Windows. Names and texts go through the wide calls, so that they keep their letters on
// systems of any code page; REG_SZ data is UTF-16 in the registry whichever call wrote it.
#pragma once

#include "platform/registry.h"

namespace zimbrat::platform {

class Win32Registry : public Registry {
 public:
  std::int32_t CreateKey(RegistryRoot root, std::u16string_view path,
                         std::unique_ptr<RegistryKey>& key) override;
  std::int32_t OpenKey(RegistryRoot root, std::u16string_view path, RegistryAccess access,
                       std::unique_ptr<RegistryKey>& key) override;
};

}  // namespace zimbrat::platform

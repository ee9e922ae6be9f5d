// One write and one reading of a value, through a registry opened for it alone.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/portable/registry.h"
#include "tests/support/registry_values.h"

namespace zimbrat::platform {

inline std::int32_t Write(Files& files, const std::u16string& path, std::u16string_view text) {
  PortableRegistry registry(files, path);
  std::unique_ptr<RegistryKey> key;
  const std::int32_t created = registry.CreateKey(RegistryRoot::CurrentUser, u"K\\L", key);
  return key ? key->Set(u"v", tests::TextValue(text)) : created;
}

inline std::u16string Read(Files& files, const std::u16string& path) {
  PortableRegistry registry(files, path);
  std::unique_ptr<RegistryKey> key;
  RegistryValue value;
  if (registry.OpenKey(RegistryRoot::CurrentUser, u"K\\L", RegistryAccess::Read, key) != 0) {
    return u"<no key>";
  }
  return key->Query(u"v", value) == 0 ? tests::TextOf(value) : u"<no value>";
}

}  // namespace zimbrat::platform

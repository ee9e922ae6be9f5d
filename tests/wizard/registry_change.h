// A text in the machine's branch of the registry while in scope; what was there before comes back.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace zimbrat::tests {

class RegistryChange {
 public:
  // An empty `name` is the key's own value.
  RegistryChange(std::wstring key, std::wstring name, const std::wstring& text);
  ~RegistryChange();
  RegistryChange(const RegistryChange&) = delete;
  RegistryChange& operator=(const RegistryChange&) = delete;

 private:
  void Set(const std::wstring& text) const;

  std::wstring key_;
  std::wstring name_;
  std::optional<std::wstring> former_;
};

}  // namespace zimbrat::tests

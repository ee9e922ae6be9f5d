// The keys and values of a registry in memory. Names keep their spelling and compare without regard to
// case; subkeys are ordered by upper-cased name, as Windows enumerates them.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace zimbrat::platform {

// Windows' own limits.
inline constexpr std::size_t kLongestKeyName = 255;
inline constexpr std::size_t kLongestValueName = 16383;
inline constexpr std::size_t kDeepestKey = 512;

struct RegistryNode {
  struct NamedValue {
    std::u16string name;
    RegistryValue value;
  };
  std::u16string name;
  std::map<std::u16string, NamedValue> values;                      // by upper-cased name
  std::map<std::u16string, std::unique_ptr<RegistryNode>> subkeys;  // likewise

  // Null when there is no such key.
  const RegistryNode* Find(const std::vector<std::u16string>& path) const;
  RegistryNode* Find(const std::vector<std::u16string>& path);
  // Makes what is missing on the way.
  RegistryNode& Make(const std::vector<std::u16string>& path);
  void Set(std::u16string_view valueName, RegistryValue value);
};

struct RegistryTree {
  RegistryNode currentUser{u"HKEY_CURRENT_USER", {}, {}};
  RegistryNode localMachine{u"HKEY_LOCAL_MACHINE", {}, {}};

  RegistryNode& Root(RegistryRoot root) {
    return root == RegistryRoot::CurrentUser ? currentUser : localMachine;
  }
};

// The names between the `\`, empty ones left out. Nothing when the path begins with `\`, is too deep, or
// holds a name that is too long or has characters that a line of text cannot carry.
std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path);
bool IsValueName(std::u16string_view name);

}  // namespace zimbrat::platform

// A registry as text that the registry editor of Windows imports:
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_CURRENT_USER\SOFTWARE\Name]
//   "text"="with \\ and \" escaped"
//   "number"=dword:0000001f
//   @=hex(1):41,00,0a,00,00,00
//
// A text (type 1) stands in quotes when it ends with its one NUL and has no control characters, otherwise
// as bytes. Other types are kept as bytes (hex for type 3, hex(n) for type n).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "registry_tree.h"

namespace zimbrat::platform {

// UTF-16LE with its mark, as Windows exports.
std::string EncodeRegistryText(const RegistryTree& tree);

// Also takes UTF-8, so that the file can be edited anywhere. Nothing when any line is not understood:
// half a registry must not pass for a whole one.
std::optional<RegistryTree> FindRegistryTree(std::string_view bytes);

}  // namespace zimbrat::platform

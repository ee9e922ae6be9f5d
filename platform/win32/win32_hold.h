// A name held through a named mutex of the system, which ends with its last handle.
#pragma once

#include <memory>
#include <string_view>

#include "platform/files.h"

namespace zimbrat::platform {

// `path` is absolute; two spellings that differ in case only are one name.
std::unique_ptr<Hold> TryWin32Hold(std::u16string_view path);

}  // namespace zimbrat::platform

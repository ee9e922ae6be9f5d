// Permissions, attributes and creation time from one file onto another.
#pragma once

#include <string_view>

namespace zimbrat::platform {

void CopyWin32Attributes(std::u16string_view from, std::u16string_view to);

}  // namespace zimbrat::platform

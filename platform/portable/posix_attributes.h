// Owner, permissions, access lists and other extended attributes from one file onto another. POSIX
// systems keep no creation time that a program could set.
#pragma once

#include <string_view>

namespace zimbrat::platform {

void CopyPosixAttributes(std::u16string_view from, std::u16string_view to);

}  // namespace zimbrat::platform

// A name held through a file "<path>.lock" beside the path that nobody else may open: a mutex would end at
// the machine, and the folder may be shared by several. The system removes the file with its last handle,
// so also with the process.
#pragma once

#include <memory>
#include <string_view>

#include "platform/files.h"

namespace zimbrat::platform {

std::unique_ptr<Hold> TryWin32Hold(std::u16string_view path);

}  // namespace zimbrat::platform

// A name held through a locked file "<path>.lock" beside the path. The file goes with the hold; one left
// by a killed process is unlocked and is taken over by the next hold.
#pragma once

#include <memory>
#include <string_view>

#include "platform/files.h"

namespace zimbrat::platform {

std::unique_ptr<Hold> TryPosixHold(std::u16string_view path);

}  // namespace zimbrat::platform

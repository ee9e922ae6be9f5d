// The border where errno becomes a run-time error.
#pragma once

#include <string>
#include <string_view>

#include "platform/run_time_error.h"

namespace zimbrat::platform {

// ENOENT is 53 where the folder of `path` exists, else 76.
RunTimeError ErrnoError(int error, std::u16string_view operation, std::u16string_view path);

// The path as system calls take it. Error 52 when it holds a NUL, which would silently cut it.
std::string SystemPath(std::u16string_view path);

}  // namespace zimbrat::platform

// The border where error codes of Windows become run-time errors.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/run_time_error.h"

namespace zimbrat::platform {

RunTimeError SystemError(DWORD code, std::u16string_view operation, std::u16string_view path);

// What a refused change of a name means: the system says "access denied" also of a plain file that is open
// elsewhere and of one that is being deleted, which are worth another attempt (a sharing violation). `name`
// is as SystemPath gives it.
DWORD CodeOfRefusal(DWORD code, const std::u16string& name);

// The path as system calls take it: one near the old limit of 260 units is made absolute and prefixed so
// that the limit does not hold. Error 52 when it holds a NUL.
std::u16string SystemPath(std::u16string_view path);

}  // namespace zimbrat::platform

// Whole contents of open files, with the pulse of long work (none if empty).
#pragma once

#include "platform/files.h"

#include <functional>

namespace zimbrat::platform {

// The whole of `from` into the empty file `to`. Error 57 when `from` ends before its size.
void CopyContents(File& from, File& to, const std::function<void()>& pulse);
bool HaveSameContents(File& a, File& b, const std::function<void()>& pulse);

}  // namespace zimbrat::platform

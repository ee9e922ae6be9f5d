// How a failed file operation is told, the same words on every system.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/run_time_error.h"

namespace zimbrat::platform {

// "<text of the number>: <operation>: <path>", for example "Dysk jest pełny: zapis: /tmp/a.mdb".
RunTimeError FileError(std::int32_t number, std::u16string_view operation, std::u16string_view path);

}  // namespace zimbrat::platform

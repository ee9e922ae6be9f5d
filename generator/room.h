// Room for new files, and names made free for them.
#pragma once

#include "platform/files.h"

#include <cstdint>
#include <string_view>

namespace zimbrat::generator {

// Deletes what has that name, a link itself and not what it leads to. Nothing there is no failure.
void RemoveName(platform::Files& files, std::u16string_view path);

// Error 61 unless the folders have room for a copy of so many bytes each, and for what the work
// adds to it. Folders of one volume share its room.
void RequireRoom(platform::Files& files, std::u16string_view firstFolder,
                 std::u16string_view secondFolder, std::uint64_t bytes);

}  // namespace zimbrat::generator

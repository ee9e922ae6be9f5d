// Contents of files, from one open file to another, with the pulse of long work.
#pragma once

#include "platform/files.h"
#include "platform/host.h"

#include <cstdint>
#include <string_view>

namespace zimbrat::generator {

// The whole of `from` into the empty file `to`. Error 57 when `from` ends before its size.
void CopyContents(platform::File& from, platform::File& to, platform::Host& host);
bool HaveSameContents(platform::File& a, platform::File& b, platform::Host& host);

// Deletes what has that name, a link itself and not what it leads to. Nothing there is no failure.
void RemoveName(platform::Files& files, std::u16string_view path);

// Error 61 unless the folders have room for a copy of so many bytes each, and for what the work
// adds to it. Folders of one volume share its room.
void RequireRoom(platform::Files& files, std::u16string_view firstFolder,
                 std::u16string_view secondFolder, std::uint64_t bytes);

}  // namespace zimbrat::generator

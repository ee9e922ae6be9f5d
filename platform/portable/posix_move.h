// Ways to give a file a name that must be free, each for file systems that know no better one. They return
// 0 or the system's error: EEXIST when the name is taken.
#pragma once

#include <string>

namespace zimbrat::platform {

// Not on NFS, for one (EINVAL).
int MoveByRename(const std::string& from, const std::string& to);
// Not where a file has one name only, as on FAT (EPERM).
int MoveByLink(const std::string& from, const std::string& to);
// Everywhere; for a moment the name is an empty file's.
int MoveOverClaim(const std::string& from, const std::string& to);

// The first of them that the file system knows.
int MoveToFreeName(const std::string& from, const std::string& to);

}  // namespace zimbrat::platform

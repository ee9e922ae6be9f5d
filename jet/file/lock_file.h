// The lock file (.ldb) that programs sharing a database keep beside it. This engine writes none and reads it
// for one purpose: to name who has the database.
//
//   offset  size  meaning
//   64 * n  32    computer of user n + 1, ANSI, NUL, blanks
//           32    name of the user
//
// User k holds a lock of the system on byte 0x10000000 + k while the database is open. Slots of users that
// left stay as they are, and so may the file: only the locks tell who is there.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zimbrat::jet {

struct DatabaseUser {
  std::u16string computer;
  std::u16string name;
  bool isPresent = false;  // holds a lock; otherwise merely the last one known

  bool operator==(const DatabaseUser&) const = default;
};

// Nothing when there is no lock file, or it cannot be read.
std::optional<DatabaseUser> FindDatabaseUser(platform::Files& files, std::u16string_view database);

// Error 3045.
[[noreturn]] void RaiseInUse(std::u16string_view database, const std::optional<DatabaseUser>& user);

}  // namespace zimbrat::jet

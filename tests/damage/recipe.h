// New databases with something of everything in them.
#pragma once

#include <cstdint>
#include <string>

#include "tests/support/memory_files.h"

namespace zimbrat::tests {

inline constexpr const char16_t* kPath = u"baza.mdb";

struct Recipe {
  std::string name;
  std::uint32_t seed = 1;
  std::size_t rows = 10;      // of each table, about; without any no table is made
  std::size_t longest = 300;  // characters of a memo
  bool encode = false;
};

// Tables with all types and all kinds of indexes, long values, relationships with and without cascades, moved and
// deleted rows, a table that is gone. The same recipe makes the same file.
FileBytes BytesOfNewDatabase(const Recipe& recipe);

}  // namespace zimbrat::tests

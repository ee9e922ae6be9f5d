// What a repair must not lose, as an engine sees it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::platform {

struct StoredTables {
  std::map<std::u16string, std::int32_t> rows;  // of each user's table, by its name; -1: linked
  std::int32_t losses = 0;  // that engines listed: now, or at a compaction long ago
};

// Without the engines' own tables and the remains of deleted ones.
StoredTables TablesOf(dao::Database& database);

// Of some of the losses, short.
std::u16string TextOfLosses(dao::Database& database);

// The tables with fewer rows than before, a line each for people; `missing` gets the name of one
// that is not there.
std::vector<std::u16string> ShorterTables(const StoredTables& before, const StoredTables& now,
                                          std::u16string& missing);

}  // namespace zimbrat::platform

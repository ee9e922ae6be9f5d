// What a repair must not lose, as an engine sees it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::platform {

struct StoredTables {
  std::map<std::u16string, std::int32_t> rows;  // of each user's table, by its name; -1: linked
  std::multiset<std::u16string> losses;  // that engines listed: now, or at a compaction long ago
};

// Without the engines' own tables and the remains of deleted ones.
StoredTables TablesOf(dao::Database& database);

// Some of the losses that were not there before, short; empty when there are none.
std::u16string TextOfNewLosses(const StoredTables& before, const StoredTables& now);

// The tables with fewer rows than before, a line each for people; `missing` gets the name of one
// that is not there.
std::vector<std::u16string> ShorterTables(const StoredTables& before, const StoredTables& now,
                                          std::u16string& missing);

}  // namespace zimbrat::platform

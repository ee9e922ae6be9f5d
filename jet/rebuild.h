// A new database from what a rescue finds in a former one.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "jet/repair.h"
#include "jet/catalog/database_file.h"
#include "jet/check/rescue.h"

namespace zimbrat::jet {

struct RebuildResult {
  std::vector<RepairedTable> tables;         // user tables first, system tables last
  std::map<PageNumber, std::uint64_t> rows;  // that the new file must have, by definition page
};

// `target` has its header and empty system tables; its catalogue must not have been used yet. Error
// 3056 when nothing of the source is readable.
RebuildResult RebuildDatabase(check::Rescue& source, DatabaseFile& target);

}  // namespace zimbrat::jet

// The contents of an empty database, built from tables: pages 1 to 15 as the real engine lays them out.
//
//   1         map of free pages (row 0) and an empty second map
//   2 to 5    definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//   6         the usage maps of all four
//   7 to 13   roots of their indexes
//   14, 15    rows of MSysObjects and MSysACEs
#pragma once

#include "jet/file/storage.h"

namespace zimbrat::jet {

// On a file that has page 0 only. `now` goes into the rows' dates.
void BuildSystemTables(const Storage& storage, double now);

}  // namespace zimbrat::jet

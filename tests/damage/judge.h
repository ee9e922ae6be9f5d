// What a repair must have saved of a sound database some of whose pages were damaged.
//
// A page that was not touched must not cost anything: every row that lies on one is there, whole, and its table under
// its name, whatever became of indexes and maps; a row whose long values alone are touched is there with its other
// values. Each table that lacks rows or values is named with what it lacks. Rows that were not there are
// only made by damage: no more than the touched pages have slots.
//
// The exceptions, which nothing can save:
//   a definition's first page     its rows have no columns: the table is named, with their number
//   its other pages               columns without names, and no indexes; the rows are there
//   the catalogue's rows          the tables are there, called "Odzyskana_" and their former page
//   page 0                        the file is no database any more: refused, and left as it is
#pragma once

#include <set>
#include <string>
#include <vector>

#include "jet/repair.h"
#include "subjects.h"

namespace zimbrat::tests {

struct Touched {
  std::set<jet::PageNumber> pages;
  // Whether these pages can have been lost as a whole only: then numbers must be right too.
  bool isLost = false;
};

// Complaints, a line each. `damaged` is the file before the repair, decoded.
std::string JudgeRepair(const Subject& before, const Touched& touched, const FileBytes& damaged,
                        const jet::RepairReport& report, const Anatomy& after);

}  // namespace zimbrat::tests

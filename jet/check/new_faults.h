// The faults of a changed copy that the database it was made of did not have.
#pragma once

#include <vector>

#include "jet/check/check.h"

namespace zimbrat::jet {

// The errors of `faults` that none of `former` accounts for, in their order; warnings do not count. A change moves
// pages, counts anew and renames, so errors are paired one to one in three rounds: of the same words;
// of the same words but for numbers; of the same words but for numbers and the names in quotes. What is
// left over is new: of one kind of error there may be no more than there were.
std::vector<Fault> NewFaults(const std::vector<Fault>& faults, const std::vector<Fault>& former);

}  // namespace zimbrat::jet

// Ways to damage a database: pages lost, swapped, overwritten; files cut; bits; and lies where numbers lead from one
// place to another.
#pragma once

#include <string>

#include "round.h"
#include "subjects.h"

namespace zimbrat::tests {

// Damages the file, decoded, in a way that chance chooses; tells what was done. The file may come out as it was.
std::string PlantDamage(const Subject& subject, FileBytes& plain, Round& round);

}  // namespace zimbrat::tests

// Usage maps as the check reads them.
#pragma once

#include <functional>
#include <string>

#include "checking.h"

namespace zimbrat::jet::check {

// Visits every page of the map that is in the file, ascending; claims the map's row and its pages
// of bits. Faults are reported; what is readable is visited all the same.
void ReadUsageMap(Checking& check, const std::u16string& place, RowPointer map,
                  const std::function<void(PageNumber)>& visit);

// Claims and reports nothing; pages outside the file are visited too. False when the map cannot be
// read whole.
bool PeekUsageMap(Checking& check, RowPointer map, const std::function<void(PageNumber)>& visit);

// The map of free pages, from which the census learns them, and the empty map beside it.
void ReadGlobalMaps(Checking& check, RowPointer freePages, RowPointer second);

}  // namespace zimbrat::jet::check

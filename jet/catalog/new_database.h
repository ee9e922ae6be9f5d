// The contents of an empty database, built from tables: pages 1 to 15 as the real engine lays them out.
//
//   1         map of free pages (row 0) and an empty second map
//   2 to 5    definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//   6         the usage maps of all four
//   7 to 13   roots of their indexes
//   14, 15    rows of MSysObjects and MSysACEs
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/catalog/catalog.h"
#include "jet/file/storage.h"

namespace zimbrat::jet {

// On a file that has page 0 only. `now` goes into the rows' dates.
void BuildSystemTables(const Storage& storage, double now);

// The same in two steps, for a file that gets the rows of another one. First pages 1 to 13.
void BuildEmptySystemTables(const Storage& storage);
// Then, of the rows that every database has, those whose objects are missing in MSysObjects, and the
// access entries of those that have none. `sidMask`: what the file's two-byte SIDs are masked with.
void AddMissingSystemRows(const Storage& storage, double now, const std::array<std::uint8_t, 2>& sidMask);

// An object of MSysObjects that every database has.
struct StandardObject {
  std::int32_t id, parent;
  ObjectType type;
  std::u16string_view name;
  bool isOwnedByAdmin;  // else by the engine
};
// Null when no such object has this id.
const StandardObject* FindStandardObject(std::int32_t id);

// The definitions of the four system tables, encoded as they lie in every file but for the places of
// their maps and trees.
std::array<std::vector<std::byte>, 4> StandardSystemDefinitions();

}  // namespace zimbrat::jet

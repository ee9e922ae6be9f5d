// The tables of a repair: what they were called and where they lay, and where they lie now.
#pragma once

#include <map>

#include "jet/repair.h"
#include "jet/file/format.h"

namespace zimbrat::jet {

struct RebuiltTable {
  RepairedTable report;
  PageNumber page = 0;        // of the new definition; 0: the former one cannot be read
  bool isCatalogued = false;  // the former catalogue named it
};

// By the page of the former definition. Without the system tables, which keep their pages.
using RebuiltTables = std::map<PageNumber, RebuiltTable>;

inline bool IsSystemTablePage(std::uint32_t page) {
  return page >= kObjectsPage && page <= kRelationshipsPage;
}

}  // namespace zimbrat::jet

// All that a database holds, as texts that can be compared: pages have other numbers after a
// repair, so tables are named instead.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "jet/catalog/database_file.h"

namespace zimbrat::tests {

struct TableContents {
  std::vector<std::string> definition;  // columns, indexes, ends of relationships, counter
  std::vector<std::string> rows;        // byte for byte, long values whole; sorted

  bool operator==(const TableContents&) const = default;
};

// By name, system tables included.
using Contents = std::map<std::string, TableContents>;

Contents ReadContents(jet::DatabaseFile& database);

// The lines of which only one has them, the first few; empty when they are equal.
std::string DifferenceOf(const Contents& before, const Contents& after);

}  // namespace zimbrat::tests

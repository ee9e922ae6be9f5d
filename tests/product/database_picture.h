// Everything that the object model of DAO tells of a database, as lines of text that can be compared.
#pragma once

#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::tests {

// One line an object with all its properties, one a row with its values and their types; a property that the
// engine refuses shows the number of its error. Fields stand in their order; tables, indexes, relations and
// rows, whose order means nothing, are sorted. Rows of system tables and the path are left out.
std::vector<std::string> PictureOf(dao::Database& database);

// Of the file, opened through that engine.
std::vector<std::string> PictureOf(dao::Engine& engine, std::u16string_view path);

}  // namespace zimbrat::tests

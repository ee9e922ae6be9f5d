// What every page of a sound database is for, and on which pages each of its rows rests: read through the engine,
// so that the checker and the rescue are judged by somebody else.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "jet/catalog/database_file.h"

namespace zimbrat::tests {

enum class PageKind { Unused, Header, Definition, Data, LongValues, Index, MapRows, MapBits };
enum class MapKind { Free, Second, Owned, Room, Index, ValuesOwned, ValuesRoom };

struct PageAnatomy {
  PageKind kind = PageKind::Unused;
  jet::PageNumber table = 0;
  bool isFirst = false;  // of a definition
};

struct MapAnatomy {
  MapKind kind = MapKind::Free;
  jet::RowPointer place;
  jet::PageNumber table = 0;
};

// Of a column: what it holds, long values whole, and the pages of such a value.
struct FieldAnatomy {
  bool isLongValue = false;
  std::string text;
  std::set<jet::PageNumber> pages;
};

struct RowAnatomy {
  std::vector<FieldAnatomy> fields;
  jet::PageNumber home = 0;
  jet::PageNumber place = 0;  // where it was moved to, or its home

  // With the long values, or with an asterisk in place of each.
  std::string Text() const;
  std::string TextWithoutValues() const;
};

struct TableAnatomy {
  jet::PageNumber page = 0;
  std::string name;
  std::vector<RowAnatomy> rows;

  bool IsOfTheEngine() const { return page <= jet::kRelationshipsPage; }
};

struct Anatomy {
  std::vector<PageAnatomy> pages;
  std::vector<MapAnatomy> maps;
  std::map<jet::PageNumber, TableAnatomy> tables;
  std::set<jet::RowPointer> valueRows;  // the rows of long values that something refers to

  const TableAnatomy* FindTable(const std::string& name) const;
};

Anatomy DissectDatabase(jet::DatabaseFile& database);

}  // namespace zimbrat::tests

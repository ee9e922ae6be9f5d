// Reading a database file that may be damaged, so that a new one can be made of what is left.
//
// It believes neither indexes nor the catalogue, and maps only where pages do not speak for
// themselves: every page of the file is looked at once, rows are found by what their pages say.
// Pages that are marked free hold remains of what was deleted, and stay unread.
//
// Memory: some 40 bytes for each page of the file, one row, and one long value.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/check/rescued_row.h"
#include "jet/check/table_layout.h"
#include "platform/files.h"

namespace zimbrat::jet::check {

struct RescuedTable {
  TableLayout layout;                 // such that a new definition can be made of it
  std::vector<std::u16string> notes;  // what had to be changed for that
};

// The definitions of MSysObjects, MSysACEs, MSysQueries and MSysRelationships as every file has
// them.
using StandardDefinitions = std::array<std::vector<std::byte>, 4>;

class Rescue {
 public:
  // `file` and `standard` must outlive the object. Error 3343 for what is no Jet 4 file; `path`
  // goes into its text.
  Rescue(platform::File& file, std::u16string_view path, const StandardDefinitions& standard,
         std::function<void()> pulse);
  ~Rescue();
  Rescue(const Rescue&) = delete;
  Rescue& operator=(const Rescue&) = delete;

  // Page 0 as it lies in the file.
  ConstBytes Header() const;
  // Nothing when the definition cannot be read. The system tables are always as they must be.
  std::optional<RescuedTable> ReadTable(PageNumber page);
  // Where definitions may begin that are not free: some may not be readable.
  std::vector<PageNumber> Definitions();
  RowCounts ReadRows(const TableLayout& table, const RescuedRowVisit& visit);
  // Rows that seem to belong to a table whose definition is lost.
  std::uint64_t CountRows(PageNumber table);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Fields of a rescued row by the column's name: its bytes, a Long or Integer, a text. Nothing, or
// what is empty, when they are not there.
ConstBytes BytesIn(const TableLayout& table, const RescuedRow& row, std::u16string_view column);
std::optional<std::int32_t> NumberIn(const TableLayout& table, const RescuedRow& row,
                                     std::u16string_view column);
std::u16string TextIn(const TableLayout& table, const RescuedRow& row, std::u16string_view column);

}  // namespace zimbrat::jet::check

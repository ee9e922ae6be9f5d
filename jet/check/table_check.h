// One table: its maps, data pages, rows and long values, then its indexes.
#pragma once

#include <functional>
#include <vector>

#include "checking.h"
#include "index_columns.h"
#include "layout.h"
#include "rows.h"

namespace zimbrat::jet::check {

// Called for each sound row.
using RowVisit = std::function<void(const RowParts&)>;

class TableCheck {
 public:
  TableCheck(Checking& check, const TableLayout& table) : check_(check), table_(table) {}

  void Run(const RowVisit& visit = {});

 private:
  void ReadMaps();
  void ReadLongValueMaps();
  void CheckRoom(std::vector<PageNumber> withRoom);
  void CheckPage(PageNumber page, const RowVisit& visit);
  void CheckHome(RowPointer home, std::uint16_t flags, const RowVisit& visit);
  void CheckRow(RowPointer home, ConstBytes row, const RowVisit& visit);
  bool FollowMove(RowPointer home, ConstBytes pointer);
  void CheckHiddenRows();
  void CheckRowCount();
  void CheckIndexes();
  void RowError(RowPointer row, std::u16string text);

  Checking& check_;
  const TableLayout& table_;
  std::vector<PageNumber> pages_;
  std::vector<PageNumber> valuePages_;
  std::uint64_t rows_ = 0;
  // For each index what its entries are made of, how many there must be, and those of sound rows.
  std::vector<IndexColumns> indexColumns_;
  std::vector<std::uint64_t> entriesExpected_;
  std::vector<EntrySum> entrySums_;
};

}  // namespace zimbrat::jet::check

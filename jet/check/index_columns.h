// The columns of an index: as its definition names them, and as keys are made of them.
#pragma once

#include <vector>

#include "checking.h"
#include "entry_sum.h"
#include "layout.h"
#include "rows.h"
#include "jet/index/key.h"

namespace zimbrat::jet::check {

struct IndexColumns {
  IndexColumns(const TableLayout& table, const IndexLayout& index);

  // Each column is there and can be indexed; what else, the definition's fault was reported.
  bool IsWhole() const { return isWhole_; }
  // Keys can be made anew of values.
  bool AreComparable() const { return areComparable_; }
  // The entry of a sound row, as the engine makes it.
  void AddEntry(Checking& check, const RowParts& row, RowPointer home, EntrySum& sum);

  std::vector<KeyColumn> keys;
  std::vector<const ColumnLayout*> columns;

 private:
  bool isWhole_;
  bool areComparable_;
  std::vector<std::byte> scratch_;
};

// Whether an index must have an entry of this row: always, but for rows of nulls where those are ignored.
bool NeedsEntry(const TableLayout& table, const IndexLayout& index, const RowParts& row);

}  // namespace zimbrat::jet::check

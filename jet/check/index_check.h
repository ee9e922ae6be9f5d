// One index: its tree from the root to the chain of leaves, and its entries against the table's
// rows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "checking.h"
#include "entry_sum.h"
#include "index_columns.h"
#include "index_page.h"
#include "layout.h"
#include "rows.h"
#include "jet/index/key.h"

namespace zimbrat::jet::check {

class IndexCheck {
 public:
  IndexCheck(Checking& check, const TableLayout& table, std::size_t position, std::u16string place);

  // `rows` are the entries that the table's rows make.
  void Run(const EntrySum& rows);
  std::uint64_t Entries() const { return count_; }
  // Reports the rows of a data page that have no entry. After Run.
  void NameMissing(PageNumber dataPage);

 private:
  using Entry = std::vector<std::byte>;
  // Pages of one level, from left to right.
  struct Level {
    PageNumber last = 0;
    PageNumber next = 0;  // what the last one names as its neighbour
  };

  void ReadMap();
  std::optional<std::size_t> Walk(PageNumber page, std::size_t depth);
  std::optional<std::size_t> WalkNode(const IndexPage& node, std::size_t depth);
  bool WalkChild(PageNumber page, std::size_t depth, std::optional<std::size_t>& height);
  void CheckAgainstSeparator(PageNumber page, const Entry& separator);
  void CheckLinks(const IndexPage& page, std::size_t height);
  void WalkLeaf(const IndexPage& leaf);
  void CheckEntry(PageNumber leaf, const Entry& entry);
  void CheckKey(PageNumber leaf, ConstBytes key, RowPointer row);
  void CompareWithRows();
  void CompareWithRow(PageNumber leaf, ConstBytes key, RowPointer row);
  bool TakePart(std::size_t i, ConstBytes& key, const dao::Value& value);
  bool HasNull(ConstBytes key, RowPointer row);
  void Fault(PageNumber page, std::u16string text) {
    check_.PageError(place_, page, std::move(text));
  }

  Checking& check_;
  const TableLayout& table_;
  const IndexLayout& index_;
  std::u16string place_;
  PageOwner owner_;
  IndexColumns columns_;
  EntrySum entries_;
  std::vector<PageNumber> leaves_;  // whose entries are to be compared with their rows, if they must be
  std::uint64_t mapped_ = 0;  // pages of the map
  std::uint64_t walked_ = 0;  // pages of the tree
  std::uint64_t count_ = 0;
  std::vector<Level> levels_;
  Entry previous_;   // the last entry that was met in a leaf
  Entry separator_;  // the next one must be greater than this
  Entry scratch_;
};

}  // namespace zimbrat::jet::check

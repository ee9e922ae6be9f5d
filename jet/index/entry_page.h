// One index page: a header, a mask of bits that says where entries end, the entries one after
// another.
//
//   offset  size  meaning
//   0       2     03 01 node (entries lead to pages) or 04 01 leaf (entries lead to rows)
//   2       2     free bytes = 3616 - length of the entries as stored
//   4       4     owner: the table's definition page
//   12, 16  4     previous and next page of the same level
//   20      4     tail: the rightmost child of a node, which has no entry
//   24      2     prefix: bytes of the first entry that all others lack
//   26      1     level above the leaves
//   27      453   mask: bit i = an entry ends before 480 + i
//   480     3616  entries: key, page (3 bytes) and slot of the row; on a node then the child page
//   (4), all
//                 big-endian
//
// Entries ascend as bytes over key and row. The entry of a node is the last one of its child.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "jet/file/pager.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet {

// Key and row pointer of one entry, without the child page. A place on the stack: trees are changed
// row by row, and no row should cost an allocation.
class EntryBuffer {
 public:
  EntryBuffer() = default;
  // The key must be no longer than a page has room for.
  EntryBuffer(ConstBytes key, RowPointer row);

  operator ConstBytes() const { return ConstBytes(bytes_).first(size_); }
  std::size_t Size() const { return size_; }
  void Append(ConstBytes bytes);
  void Clear() { size_ = 0; }

 private:
  std::array<std::byte, kSizeEntries> bytes_;
  std::size_t size_ = 0;
};

RowPointer RowOfEntry(ConstBytes entry);
inline ConstBytes KeyOfEntry(ConstBytes entry) {
  return entry.first(entry.size() - kSizeLeafPointer);
}

// Length of the common beginning.
std::size_t CommonLength(ConstBytes a, ConstBytes b);

// A pinned page, read in place: every search comes through several, so nothing is taken apart before it is
// asked for. Entries are always meant without their child page.
class EntryPage {
 public:
  // Where an entry begins among the stored ones; 0 is the first, End() is behind the last.
  using Spot = std::size_t;

  // Error 3049 unless it is an index page of this owner, as is any entry whose length cannot be.
  EntryPage(PageRef page, PageNumber owner);

  PageNumber Number() const { return page_.Number(); }
  bool IsLeaf() const { return pointerSize_ == kSizeLeafPointer; }
  PageNumber Previous() const { return Get32(page_.Read(), kOffsetPreviousLeaf); }
  PageNumber Next() const { return Get32(page_.Read(), kOffsetNextLeaf); }

  bool IsEmpty() const { return used_ == 0; }
  Spot End() const { return used_; }
  Spot After(Spot spot) const { return spot + Suffix(spot).size() + (spot == 0 ? prefix_ : 0); }
  // Of a page that is not empty.
  Spot Last() const { return Before(used_); }
  Spot Before(Spot spot) const;

  // The rightmost child of a node, if it has no entry; else 0.
  PageNumber Tail() const { return IsLeaf() ? 0 : Get32(page_.Read(), kOffsetTail); }
  // Of a node; the tail stands at the end.
  PageNumber Child(Spot spot) const;
  Spot LastChild() const { return Tail() != 0 ? used_ : Last(); }

  // Replaces `out`.
  void CopyEntry(Spot spot, EntryBuffer& out) const;
  bool IsEqual(Spot spot, ConstBytes entry) const;
  // Of a leaf: whether the entry is of this key, whatever its row.
  bool HasKey(Spot spot, ConstBytes key) const;
  // The first entry >= target, which may also be the beginning of one; End() when there is none.
  Spot LowerBound(ConstBytes target) const;

  // False, and nothing is changed, when the entry finds no room or does not begin with the page's
  // prefix: then the page is to be written anew. `child` counts on nodes only.
  bool TryInsert(Spot spot, ConstBytes entry, PageNumber child = 0);
  bool TryReplace(Spot spot, ConstBytes entry, PageNumber child);
  void Erase(Spot spot);
  void SetPrevious(PageNumber page) { PutLink(kOffsetPreviousLeaf, page); }
  void SetNext(PageNumber page) { PutLink(kOffsetNextLeaf, page); }

 private:
  std::size_t ChildSize() const { return pointerSize_ - kSizeLeafPointer; }
  // What follows the prefix, child page included.
  ConstBytes Suffix(Spot spot) const;
  std::size_t SuffixStart(Spot spot) const { return spot == 0 ? prefix_ : spot; }
  ConstBytes Prefix() const { return page_.Read().subspan(kOffsetEntries, prefix_); }
  bool SharesPrefix(ConstBytes entry) const;
  bool Splice(Spot spot, std::size_t removed, ConstBytes suffix, PageNumber child);
  void PutLink(std::size_t offset, PageNumber page);

  PageRef page_;
  std::size_t pointerSize_ = kSizeLeafPointer;
  std::size_t prefix_ = 0;
  std::size_t used_ = 0;  // bytes of all entries as stored
};

// Entries of one page, or of what is to become one or two pages, with the children of a node.
class EntryList {
 public:
  struct Run {
    std::size_t first = 0;
    std::size_t last = 0;  // one after
    bool hasTail = false;  // the last child is stored without its entry
  };
  struct Layout {
    bool fits = false;
    std::size_t prefix = 0;
  };

  explicit EntryList(bool isLeaf) : childSize_(isLeaf ? 0 : sizeof(PageNumber)) {}

  bool IsLeaf() const { return childSize_ == 0; }
  // Bytes that a child page takes in an entry.
  std::size_t ChildSize() const { return childSize_; }
  std::size_t Size() const { return items_.size(); }
  ConstBytes Entry(std::size_t i) const {
    return ConstBytes(bytes_).subspan(items_[i].offset, items_[i].size);
  }
  PageNumber Child(std::size_t i) const { return items_[i].child; }
  void Insert(std::size_t i, ConstBytes entry, PageNumber child = 0);
  void Append(ConstBytes entry, PageNumber child = 0) { Insert(Size(), entry, child); }
  void Clear() {
    items_.clear();
    bytes_.clear();
  }
  void RemoveLast() { items_.pop_back(); }
  // Without prefix when there is room, else with the longest.
  Layout LayOut(const Run& run) const;
  // The cut nearest to the middle of the bytes whose both parts fit, or 0. `hasTail` is for the
  // upper part.
  std::size_t CutNearMiddle(bool hasTail) const;

 private:
  struct Item {
    std::size_t offset;
    std::size_t size;
    PageNumber child;
  };
  std::size_t StoredSize(std::size_t i) const { return items_[i].size + childSize_; }

  std::size_t childSize_;
  std::vector<std::byte> bytes_;
  std::vector<Item> items_;
};

struct EntryPageHeader {
  PageNumber owner = 0;
  PageNumber previous = 0;
  PageNumber next = 0;
  std::uint8_t level = 0;
};

// The whole page from a run. Error 3049 when the entries do not fit or do not ascend: damaged pages may hold such.
void WriteEntryPage(PageRef& page, const EntryPageHeader& header, const EntryList& list,
                    const EntryList::Run& run);

}  // namespace zimbrat::jet

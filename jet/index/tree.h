// The B-tree of one index. Keys are byte strings (key.h); an entry is a key with the pointer of its
// row, and entries ascend as bytes over both, so that equal keys stand in the order of their rows.
//
//   level 2              root                root never moves; it is a leaf in small trees
//   level 1    node     node      node       an entry of a node is the last entry of its child
//   level 0   leaf = leaf = leaf = leaf      the leaves form one chain
//
// The rightmost node of level 1 has its last child as tail, without an entry, so that rising keys
// fill the last leaf without touching the node.
//
// A change is made in the leaf; each page then answers its parent with what stands in its place:
// the same page with another last entry, two pages after a split, none when it was freed. The owner
// of the tree must not change it while a cursor is read.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "jet/file/pager.h"
#include "jet/file/usage_map.h"
#include "jet/index/entry_page.h"

namespace zimbrat::jet {

struct IndexEntry {
  ConstBytes key;
  RowPointer row;
};
// Entries in ascending order of their bytes; nothing at the end. The key need only last until the
// next call.
using EntrySource = std::function<std::optional<IndexEntry>()>;

class IndexTree {
 public:
  // Walks along the leaves. Valid() is false behind the last entry.
  class Cursor {
   public:
    bool Valid() const { return spot_ != page_.End(); }
    ConstBytes Entry() const { return entry_; }
    ConstBytes Key() const { return KeyOfEntry(entry_); }
    RowPointer Row() const { return RowOfEntry(entry_); }
    void Next();

   private:
    friend class IndexTree;
    Cursor(const IndexTree& tree, EntryPage leaf, ConstBytes target);
    void Settle();

    Pager* pager_;
    PageNumber owner_;
    PageNumber pagesRead_ = 0;
    EntryPage page_;
    EntryPage::Spot spot_;
    EntryBuffer entry_;
  };

  // `map` holds the tree's pages; `owner` is the table's definition page. Nothing is read yet.
  IndexTree(Pager& pager, PageAllocator& allocator, UsageMap map, PageNumber owner, PageNumber root)
      : pager_(&pager), allocator_(&allocator), map_(map), owner_(owner), root_(root) {}

  static void WriteEmptyLeaf(Pager& pager, PageNumber root, PageNumber owner);

  // Error 3047 for keys above kMaxKeyLength; an entry that is there already is damage (3049). Whether the key is
  // a new one, as far as the leaf tells: an equal one may stand alone on the leaf beside.
  bool Insert(ConstBytes key, RowPointer row);
  // False when there is no such entry.
  bool Erase(ConstBytes key, RowPointer row);
  // Whether any row has exactly this key.
  bool ContainsKey(ConstBytes key) const;
  // At the first entry that is not less than `start`: a key, the beginning of one, or nothing.
  Cursor Seek(ConstBytes start) const;

  // Fills an empty tree, each page to the brim.
  void Build(const EntrySource& next);
  // Gives back all pages of the map, the root too. The map's own row and pages stay.
  void FreePages();

 private:
  friend class TreeBuilder;

  // A tree of this height would exceed every file.
  static constexpr std::size_t kMaxHeight = 24;

  // The way from the root to a leaf: the nodes, and which child was taken.
  struct Step {
    PageNumber page = 0;
    EntryPage::Spot child = 0;
    bool isTail = false;  // the child has no entry
    bool isLast = false;
  };
  struct Path {
    std::array<Step, kMaxHeight> steps;
    std::size_t depth = 0;
    // Nothing lies to the right of the page at this depth.
    bool IsRightmost(std::size_t at) const;
    std::uint8_t LevelAt(std::size_t at) const { return static_cast<std::uint8_t>(depth - at); }
  };

  // What stands in the place of a page.
  struct Place {
    EntryBuffer last;
    PageNumber page = 0;

    void Set(ConstBytes lastEntry, PageNumber number) {
      last.Clear();
      last.Append(lastEntry);
      page = number;
    }
  };
  struct Answer {
    bool isDone = false;      // the parent is not concerned
    bool isAppended = false;  // the second place holds just the new last entry of the tree
    std::size_t count = 0;
    std::array<Place, 2> places;
  };

  EntryPage Open(PageNumber page) const { return EntryPage(pager_->Get(page), owner_); }
  EntryPage Descend(ConstBytes target, Path* path) const;
  PageNumber TakePage();
  void FreePage(PageNumber page);
  void Unlink(const EntryPage& leaf);

  void TellParents(const Path& path, Answer& answer);
  void ReplaceChild(const Path& path, std::size_t at, Answer& answer);
  void AppendChild(const EntryPage& node, EntryPage::Spot spot, EntryList& list) const;
  EntryList ReadNode(const EntryPage& node) const;
  void CopyLastEntry(PageNumber page, EntryBuffer& out) const;
  void Store(const Path& path, std::size_t at, PageNumber page, const EntryList& list,
             Answer& answer);
  std::size_t ChooseCut(const EntryList& list, PageNumber page, std::uint8_t level,
                        bool isRightmost, bool isAppended) const;
  void Split(const Path& path, std::size_t at, PageNumber page, const EntryList& list,
             Answer& answer);
  void GrowRoot(const Answer& answer, std::uint8_t level);
  static bool HasTail(std::uint8_t level, bool isRightmost, std::size_t children);
  void Write(PageNumber page, EntryPageHeader header, const EntryList& list,
             const EntryList::Run& run);
  void LinkChildren(const EntryList& list, const EntryList::Run& run);
  void GiveRightmostNodeItsTail();

  Pager* pager_;
  PageAllocator* allocator_;
  UsageMap map_;
  PageNumber owner_;
  PageNumber root_;
};

}  // namespace zimbrat::jet

// A tree from sorted entries: leaves are filled from left to right, their last entries fill the
// nodes above, and so on. One page of each level is held back until it is known whether it is the
// last one, because the last of the top level goes to the root page.
#include <cassert>
#include <vector>

#include "jet/file/errors.h"
#include "jet/index/tree.h"

namespace zimbrat::jet {

class TreeBuilder {
 public:
  explicit TreeBuilder(IndexTree& tree) : tree_(tree) {}

  void Add(std::size_t level, ConstBytes entry, PageNumber child);
  void Finish();

 private:
  struct Level {
    EntryList list;
    PageNumber page = 0;  // of a leaf, once the leaf before it had to know
    PageNumber previous = 0;
  };

  void WriteHeldBack(std::size_t level, bool isRightmost);

  IndexTree& tree_;
  std::vector<Level> levels_;
};

void TreeBuilder::Add(std::size_t level, ConstBytes entry, PageNumber child) {
  if (level == levels_.size()) levels_.push_back({EntryList(level == 0)});
  EntryList& list = levels_[level].list;
  list.Append(entry, child);
  if (list.LayOut({0, list.Size()}).fits) return;
  list.RemoveLast();
  WriteHeldBack(level, false);
  levels_[level].list.Append(entry, child);
}

void TreeBuilder::WriteHeldBack(std::size_t level, bool isRightmost) {
  Level& held = levels_[level];
  EntryPageHeader header{.level = static_cast<std::uint8_t>(level)};
  const PageNumber page = held.page == 0 ? tree_.TakePage() : held.page;
  if (level == 0) {
    header.previous = held.previous;
    header.next = isRightmost ? 0 : tree_.TakePage();
    held.previous = page;
    held.page = header.next;
  }
  const std::size_t size = held.list.Size();
  tree_.Write(page, header, held.list,
              {0, size, IndexTree::HasTail(header.level, isRightmost, size)});
  EntryBuffer last;
  last.Append(held.list.Entry(size - 1));
  held.list.Clear();
  Add(level + 1, last, page);
}

void TreeBuilder::Finish() {
  if (levels_.empty()) return;
  std::size_t level = 0;
  for (; level + 1 < levels_.size(); ++level) WriteHeldBack(level, true);
  const EntryList& list = levels_[level].list;
  const auto height = static_cast<std::uint8_t>(level);
  tree_.Write(tree_.root_, {.level = height}, list,
              {0, list.Size(), IndexTree::HasTail(height, true, list.Size())});
}

void IndexTree::Build(const EntrySource& next) {
  assert(Open(root_).IsLeaf() && Open(root_).IsEmpty());
  TreeBuilder builder(*this);
  while (const std::optional<IndexEntry> entry = next()) {
    if (entry->key.size() > kMaxKeyLength) Raise(platform::kErrRecordTooLarge);
    builder.Add(0, EntryBuffer(entry->key, entry->row), 0);
  }
  builder.Finish();
}

}  // namespace zimbrat::jet

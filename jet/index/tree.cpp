// Searching, and changes that stay within the pages that are there. What takes new pages or gives
// some back is in tree_pages.cpp.
#include "jet/index/tree.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "jet/file/errors.h"

namespace zimbrat::jet {

bool IndexTree::Path::IsRightmost(std::size_t at) const {
  return std::all_of(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(at),
                     [](const Step& step) { return step.isLast; });
}

void IndexTree::WriteEmptyLeaf(Pager& pager, PageNumber root, PageNumber owner) {
  PageRef page = pager.Get(root);
  WriteEntryPage(page, {.owner = owner}, EntryList(true), {});
}

// The leaf in which the first entry >= target stands or belongs.
EntryPage IndexTree::Descend(ConstBytes target, Path* path) const {
  PageNumber number = root_;
  for (std::size_t depth = 0; depth < kMaxHeight; ++depth) {
    EntryPage page = Open(number);
    if (path) path->depth = depth;
    if (page.IsLeaf()) return page;
    const EntryPage::Spot child = std::min(page.LowerBound(target), page.LastChild());
    if (path) path->steps[depth] = {number, child, child == page.End(), child == page.LastChild()};
    number = page.Child(child);
  }
  RaiseDamagedPage(root_, u"drzewo indeksu jest zbyt wysokie");
}

IndexTree::Cursor::Cursor(const IndexTree& tree, EntryPage leaf, ConstBytes target)
    : pager_(tree.pager_),
      owner_(tree.owner_),
      page_(std::move(leaf)),
      spot_(page_.LowerBound(target)) {
  Settle();
}

void IndexTree::Cursor::Next() {
  spot_ = page_.After(spot_);
  Settle();
}

// On to the next leaf when this one is through.
void IndexTree::Cursor::Settle() {
  while (spot_ == page_.End() && page_.Next() != 0) {
    if (++pagesRead_ > pager_->PageCount()) {
      RaiseDamagedPage(page_.Number(), u"łańcuch liści indeksu się zapętla");
    }
    page_ = EntryPage(pager_->Get(page_.Next()), owner_);
    if (!page_.IsLeaf()) RaiseDamagedPage(page_.Number(), u"nie jest liściem indeksu");
    spot_ = 0;
  }
  if (Valid()) page_.CopyEntry(spot_, entry_);
}

IndexTree::Cursor IndexTree::Seek(ConstBytes start) const {
  return Cursor(*this, Descend(start, nullptr), start);
}

bool IndexTree::ContainsKey(ConstBytes key) const {
  {
    // Mostly the leaf answers alone.
    const EntryPage leaf = Descend(key, nullptr);
    const EntryPage::Spot place = leaf.LowerBound(key);
    if (place == leaf.End() && leaf.Next() == 0) return false;
    if (place != leaf.End()) {
      EntryBuffer entry;
      leaf.CopyEntry(place, entry);
      const bool beginsWithKey = CommonLength(entry, key) == key.size();
      if (!beginsWithKey) return false;
      if (entry.Size() == key.size() + kSizeLeafPointer) return true;
    }
  }
  for (Cursor cursor = Seek(key); cursor.Valid(); cursor.Next()) {
    // A shorter key and the pointer of its row may begin as this key does.
    if (CommonLength(cursor.Entry(), key) < key.size()) return false;
    if (cursor.Key().size() == key.size()) return true;
  }
  return false;
}

bool IndexTree::Insert(ConstBytes key, RowPointer row) {
  if (key.size() > kMaxKeyLength) Raise(platform::kErrRecordTooLarge);
  const EntryBuffer entry(key, row);
  Path path;
  EntryPage leaf = Descend(entry, &path);
  const EntryPage::Spot place = leaf.LowerBound(entry);
  const bool isLast = place == leaf.End();
  if (!isLast && leaf.IsEqual(place, entry)) {
    RaiseDamagedPage(leaf.Number(), u"indeks zawiera już wpis tego wiersza");
  }
  const bool isNew = (place == 0 || !leaf.HasKey(leaf.Before(place), key)) && (isLast || !leaf.HasKey(place, key));
  Answer answer;
  if (leaf.TryInsert(place, entry)) {
    if (!isLast || path.depth == 0) return isNew;
    answer.count = 1;
    answer.places[0].Set(entry, leaf.Number());
  } else {
    EntryList list(true);
    EntryBuffer other;
    for (EntryPage::Spot spot = 0; spot != leaf.End(); spot = leaf.After(spot)) {
      if (spot == place) list.Append(entry);
      leaf.CopyEntry(spot, other);
      list.Append(other);
    }
    if (isLast) list.Append(entry);
    answer.isAppended = isLast && path.IsRightmost(path.depth);
    Store(path, path.depth, leaf.Number(), list, answer);
  }
  TellParents(path, answer);
  return isNew;
}

bool IndexTree::Erase(ConstBytes key, RowPointer row) {
  if (key.size() + kSizeLeafPointer > kSizeEntries) return false;
  const EntryBuffer entry(key, row);
  Path path;
  EntryPage leaf = Descend(entry, &path);
  const EntryPage::Spot place = leaf.LowerBound(entry);
  if (place == leaf.End() || !leaf.IsEqual(place, entry)) return false;
  Answer answer;
  if (leaf.Last() != 0 || path.depth == 0) {
    const bool isLast = place == leaf.Last();
    leaf.Erase(place);
    if (!isLast || path.depth == 0) return true;
    answer.count = 1;
    answer.places[0].page = leaf.Number();
    leaf.CopyEntry(leaf.Last(), answer.places[0].last);
  } else {
    Unlink(leaf);
    FreePage(leaf.Number());
  }
  const bool isGone = answer.count == 0;
  TellParents(path, answer);
  if (isGone && path.IsRightmost(path.depth)) GiveRightmostNodeItsTail();
  return true;
}

// Hands the answer of a page upwards until a parent need not change.
void IndexTree::TellParents(const Path& path, Answer& answer) {
  for (std::size_t at = path.depth; at-- > 0 && !answer.isDone;) {
    const Step& step = path.steps[at];
    if (answer.count != 1) {
      ReplaceChild(path, at, answer);
      continue;
    }
    if (!step.isTail) {
      EntryPage node = Open(step.page);
      if (!node.TryReplace(step.child, answer.places[0].last, answer.places[0].page)) {
        ReplaceChild(path, at, answer);
        continue;
      }
    }
    answer.isDone = !step.isLast;
    answer.places[0].page = step.page;
  }
}

}  // namespace zimbrat::jet

// Changes that write pages anew: overflow, splits, freed pages, growth of the root.
#include <algorithm>
#include <utility>
#include <vector>

#include "jet/file/errors.h"
#include "jet/index/tree.h"

namespace zimbrat::jet {

PageNumber IndexTree::TakePage() {
  const PageNumber page = allocator_->Take();
  map_.Add(page);
  return page;
}

void IndexTree::FreePage(PageNumber page) {
  map_.Remove(page);
  allocator_->Free(page);
}

void IndexTree::Unlink(const EntryPage& leaf) {
  if (leaf.Previous() != 0) Open(leaf.Previous()).SetNext(leaf.Next());
  if (leaf.Next() != 0) Open(leaf.Next()).SetPrevious(leaf.Previous());
}

void IndexTree::Write(PageNumber page, EntryPageHeader header, const EntryList& list,
                      const EntryList::Run& run) {
  header.owner = owner_;
  PageRef ref = pager_->Get(page);
  WriteEntryPage(ref, header, list, run);
  if (header.level >= 2) LinkChildren(list, run);
}

// Nodes know their neighbours under the same parent only.
void IndexTree::LinkChildren(const EntryList& list, const EntryList::Run& run) {
  for (std::size_t i = run.first; i < run.last; ++i) {
    EntryPage child = Open(list.Child(i));
    child.SetPrevious(i == run.first ? 0 : list.Child(i - 1));
    child.SetNext(i + 1 == run.last ? 0 : list.Child(i + 1));
  }
}

void IndexTree::CopyLastEntry(PageNumber page, EntryBuffer& out) const {
  for (std::size_t height = 0; height < kMaxHeight; ++height) {
    const EntryPage open = Open(page);
    if (open.IsLeaf()) {
      if (open.IsEmpty()) RaiseDamagedPage(page, u"liść indeksu jest pusty");
      return open.CopyEntry(open.Last(), out);
    }
    page = open.Child(open.LastChild());
  }
  RaiseDamagedPage(page, u"drzewo indeksu jest zbyt wysokie");
}

// A child of the node with its last entry.
void IndexTree::AppendChild(const EntryPage& node, EntryPage::Spot spot, EntryList& list) const {
  EntryBuffer entry;
  if (spot != node.End()) {
    node.CopyEntry(spot, entry);
  } else {
    CopyLastEntry(node.Tail(), entry);
  }
  list.Append(entry, node.Child(spot));
}

EntryList IndexTree::ReadNode(const EntryPage& node) const {
  EntryList list(false);
  for (EntryPage::Spot spot = 0; spot != node.End(); spot = node.After(spot)) AppendChild(node, spot, list);
  if (node.Tail() != 0) AppendChild(node, node.End(), list);
  return list;
}

void IndexTree::ReplaceChild(const Path& path, std::size_t at, Answer& answer) {
  const Step& step = path.steps[at];
  EntryList list(false);
  const auto appendAnswer = [&] {
    for (std::size_t i = 0; i < answer.count; ++i) list.Append(answer.places[i].last, answer.places[i].page);
  };
  {
    const EntryPage node = Open(step.page);
    for (EntryPage::Spot spot = 0; spot != node.End(); spot = node.After(spot)) {
      spot == step.child ? appendAnswer() : AppendChild(node, spot, list);
    }
    if (step.isTail) appendAnswer();
    if (!step.isTail && node.Tail() != 0) AppendChild(node, node.End(), list);
  }
  if (list.Size() != 0) return Store(path, at, step.page, list, answer);
  answer.count = 0;
  if (at == 0) {
    WriteEmptyLeaf(*pager_, root_, owner_);
  } else {
    FreePage(step.page);
  }
}

// Only the rightmost node of level 1 has a tail, and only beside an entry.
bool IndexTree::HasTail(std::uint8_t level, bool isRightmost, std::size_t children) {
  return level == 1 && isRightmost && children >= 2;
}

// Writes the page at this depth of the path, or the two that it becomes. `list` is all that belongs
// there.
void IndexTree::Store(const Path& path, std::size_t at, PageNumber page, const EntryList& list,
                      Answer& answer) {
  const std::uint8_t level = path.LevelAt(at);
  const EntryList::Run whole{0, list.Size(), HasTail(level, path.IsRightmost(at), list.Size())};
  if (!list.LayOut(whole).fits) return Split(path, at, page, list, answer);
  EntryPageHeader header{.level = level};
  {
    const EntryPage former = Open(page);
    header.previous = former.Previous();
    header.next = former.Next();
  }
  Write(page, header, list, whole);
  answer.count = 1;
  answer.isAppended = false;
  answer.places[0].Set(list.Entry(list.Size() - 1), page);
  answer.isDone = at == 0;
}

// Where a page is cut. Rising keys leave full pages behind: the new entry gets a page of its own,
// and a node that loses its tail keeps just the children that fitted with it.
std::size_t IndexTree::ChooseCut(const EntryList& list, PageNumber page, std::uint8_t level,
                                 bool isRightmost, bool isAppended) const {
  const bool mayHaveTail = level == 1 && isRightmost;
  if (isAppended) {
    const std::size_t upper = mayHaveTail ? 2 : 1;
    const std::size_t size = list.Size();
    const std::size_t cut = size > upper ? size - upper : 0;
    if (cut != 0 && list.LayOut({0, cut}).fits &&
        list.LayOut({cut, size, HasTail(level, isRightmost, upper)}).fits) {
      return cut;
    }
  }
  const std::size_t cut = list.CutNearMiddle(mayHaveTail);
  if (cut == 0) RaiseDamagedPage(page, u"strony indeksu nie da się podzielić");
  return cut;
}

void IndexTree::Split(const Path& path, std::size_t at, PageNumber page, const EntryList& list,
                      Answer& answer) {
  const std::uint8_t level = path.LevelAt(at);
  const bool isRightmost = path.IsRightmost(at);
  const std::size_t cut = ChooseCut(list, page, level, isRightmost, answer.isAppended);
  const PageNumber lower = at == 0 ? TakePage() : page;
  const PageNumber upper = TakePage();
  EntryPageHeader lowerHeader{.next = upper, .level = level};
  EntryPageHeader upperHeader{.previous = lower, .level = level};
  if (at != 0) {
    const EntryPage former = Open(page);
    lowerHeader.previous = former.Previous();
    upperHeader.next = former.Next();
  }
  Write(lower, lowerHeader, list, {0, cut});
  Write(upper, upperHeader, list,
        {cut, list.Size(), HasTail(level, isRightmost, list.Size() - cut)});
  if (level == 0 && upperHeader.next != 0) Open(upperHeader.next).SetPrevious(upper);
  answer.count = 2;
  answer.places[0].Set(list.Entry(cut - 1), lower);
  answer.places[1].Set(list.Entry(list.Size() - 1), upper);
  if (at != 0) return;
  GrowRoot(answer, static_cast<std::uint8_t>(level + 1));
  answer.isDone = true;
}

// The root becomes the node above the two pages that its contents went to.
void IndexTree::GrowRoot(const Answer& answer, std::uint8_t level) {
  EntryList list(false);
  for (const Place& place : answer.places) list.Append(place.last, place.page);
  Write(root_, {.level = level}, list, {0, list.Size(), HasTail(level, true, list.Size())});
}

// After the rightmost pages were freed another node may have become the rightmost one.
void IndexTree::GiveRightmostNodeItsTail() {
  PageNumber page = root_;
  for (std::size_t height = 0; height < kMaxHeight; ++height) {
    const EntryPage node = Open(page);
    if (node.IsLeaf()) return;
    const PageNumber child = node.Child(node.LastChild());
    if (!Open(child).IsLeaf()) {
      page = child;
      continue;
    }
    if (node.Tail() != 0 || node.Last() == 0) return;
    const EntryList list = ReadNode(node);
    Write(page, {.previous = node.Previous(), .next = node.Next(), .level = 1}, list,
          {0, list.Size(), true});
    return;
  }
}

void IndexTree::FreePages() {
  std::vector<PageNumber> pages;
  map_.ForEach([&](PageNumber page) { pages.push_back(page); });
  for (const PageNumber page : pages) {
    // Other writers leave pages in the map that are no longer the index's.
    const PageRef ref = pager_->Get(page);
    const std::uint8_t type = Get8(ref.Read(), 0);
    const bool isIndexPage = type == kPageIndexNode || type == kPageIndexLeaf;
    if (isIndexPage && Get32(ref.Read(), kOffsetOwner) == owner_) FreePage(page);
  }
}

}  // namespace zimbrat::jet

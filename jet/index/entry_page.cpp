#include "jet/index/entry_page.h"

#include <cassert>
#include <cstring>
#include <utility>

#include "entry_mask.h"
#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

std::size_t PointerSize(std::uint8_t pageType) {
  return pageType == kPageIndexLeaf ? kSizeLeafPointer : kSizeNodePointer;
}

ConstBytes MaskOf(ConstBytes page) { return page.subspan(kOffsetEntryMask, kSizeEntryMask); }
Bytes MaskOf(Bytes page) { return page.subspan(kOffsetEntryMask, kSizeEntryMask); }

void PutFreeBytes(Bytes page, std::size_t used) {
  Put16(page, kOffsetFreeBytes, static_cast<std::uint16_t>(kSizeEntries - used));
}

// Bytewise; of two of which one begins with the other the shorter is smaller.
int Compare(ConstBytes a, ConstBytes b) {
  const std::size_t size = std::min(a.size(), b.size());
  const int order = size == 0 ? 0 : std::memcmp(a.data(), b.data(), size);
  if (order != 0) return order;
  return a.size() < b.size() ? -1 : a.size() > b.size();
}

}  // namespace

EntryBuffer::EntryBuffer(ConstBytes key, RowPointer row) {
  Append(key);
  std::array<std::byte, kSizeLeafPointer> pointer;
  PutBig32(pointer, 0, row.Packed());
  Append(pointer);
}

void EntryBuffer::Append(ConstBytes bytes) {
  assert(size_ + bytes.size() <= bytes_.size());
  std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
  size_ += bytes.size();
}

RowPointer RowOfEntry(ConstBytes entry) {
  return RowPointer::FromPacked(GetBig32(entry, entry.size() - kSizeLeafPointer));
}

std::size_t CommonLength(ConstBytes a, ConstBytes b) {
  const std::size_t size = std::min(a.size(), b.size());
  std::size_t i = 0;
  while (i < size && a[i] == b[i]) ++i;
  return i;
}

EntryPage::EntryPage(PageRef page, PageNumber owner) : page_(std::move(page)) {
  const ConstBytes bytes = page_.Read();
  const std::uint8_t type = Get8(bytes, 0);
  if (type != kPageIndexNode && type != kPageIndexLeaf) {
    RaiseDamagedPage(Number(), u"nie jest stroną indeksu");
  }
  if (Get32(bytes, kOffsetOwner) != owner) {
    RaiseDamagedPage(Number(), u"należy do indeksu innej tabeli");
  }
  pointerSize_ = PointerSize(type);
  used_ = FindEndUpTo(MaskOf(bytes), kSizeEntryMask * 8 - 1);
  if (used_ > kSizeEntries) RaiseDamagedPage(Number(), u"maska wpisów indeksu jest błędna");
  if (used_ != 0) prefix_ = Get16(bytes, kOffsetPrefixLength);
  if (prefix_ != 0 && prefix_ >= used_) RaiseDamagedPage(Number(), u"wpisy indeksu mają błędne długości");
  if (!IsLeaf() && IsEmpty() && Tail() == 0) RaiseDamagedPage(Number(), u"węzeł indeksu jest pusty");
}

EntryPage::Spot EntryPage::Before(Spot spot) const { return FindEndUpTo(MaskOf(page_.Read()), spot - 1); }

ConstBytes EntryPage::Suffix(Spot spot) const {
  const std::size_t start = SuffixStart(spot), end = FindEndAbove(MaskOf(page_.Read()), spot);
  const bool isSound = end > start && prefix_ + (end - start) > pointerSize_ && prefix_ + (end - start) <= kSizeEntries;
  if (!isSound) RaiseDamagedPage(Number(), u"wpisy indeksu mają błędne długości");
  return page_.Read().subspan(kOffsetEntries + start, end - start);
}

PageNumber EntryPage::Child(Spot spot) const {
  if (spot == used_) return Tail();
  const ConstBytes suffix = Suffix(spot);
  if (suffix.size() < sizeof(PageNumber)) RaiseDamagedPage(Number(), u"wpisy indeksu mają błędne długości");
  return GetBig32(suffix, suffix.size() - sizeof(PageNumber));
}

void EntryPage::CopyEntry(Spot spot, EntryBuffer& out) const {
  const ConstBytes suffix = Suffix(spot);
  const std::size_t size = prefix_ + suffix.size() - ChildSize();
  out.Clear();
  out.Append(Prefix().first(std::min(prefix_, size)));
  out.Append(suffix.first(size - out.Size()));
}

bool EntryPage::IsEqual(Spot spot, ConstBytes entry) const {
  EntryBuffer own;
  CopyEntry(spot, own);
  return Compare(own, entry) == 0;
}

bool EntryPage::HasKey(Spot spot, ConstBytes key) const {
  EntryBuffer own;
  CopyEntry(spot, own);
  return Compare(KeyOfEntry(own), key) == 0;
}

// Halves the bytes instead of the entries, which nobody has counted.
EntryPage::Spot EntryPage::LowerBound(ConstBytes target) const {
  if (IsEmpty()) return 0;
  const int order = Compare(target.first(std::min(target.size(), prefix_)), Prefix());
  if (order != 0) return order > 0 ? End() : 0;
  const ConstBytes rest = target.subspan(prefix_);
  Spot low = 0, high = End();
  while (low < high) {
    const Spot middle = FindEndUpTo(MaskOf(page_.Read()), (low + high) / 2);
    const ConstBytes suffix = Suffix(middle);
    const ConstBytes entry = suffix.first(suffix.size() - std::min(suffix.size(), ChildSize()));
    if (Compare(entry, rest) < 0) {
      low = SuffixStart(middle) + suffix.size();
    } else {
      high = middle;
    }
  }
  return low;
}

bool EntryPage::SharesPrefix(ConstBytes entry) const {
  return entry.size() >= prefix_ + kSizeLeafPointer && CommonLength(entry, Prefix()) == prefix_;
}

// Puts what an entry (none when empty) has behind the prefix in the place of `removed` bytes, if there is room.
// The first entry's prefix stays where it is, whichever entry becomes the first.
bool EntryPage::Splice(Spot spot, std::size_t removed, ConstBytes suffix, PageNumber child) {
  const std::size_t childSize = suffix.empty() ? 0 : ChildSize();
  const std::size_t added = suffix.size() + childSize;
  if (used_ - removed + added > kSizeEntries) return false;
  const Bytes page = page_.Change();
  const Bytes area = page.subspan(kOffsetEntries);
  const std::size_t offset = SuffixStart(spot);
  std::memmove(area.data() + offset + added, area.data() + offset + removed, used_ - offset - removed);
  std::copy(suffix.begin(), suffix.end(), area.begin() + static_cast<std::ptrdiff_t>(offset));
  if (childSize != 0) PutBig32(area, offset + suffix.size(), child);
  SpliceEnds(MaskOf(page), offset, removed, added);
  used_ = used_ - removed + added;
  Put16(page, kOffsetPrefixLength, static_cast<std::uint16_t>(prefix_));
  PutFreeBytes(page, used_);
  return true;
}

bool EntryPage::TryInsert(Spot spot, ConstBytes entry, PageNumber child) {
  if (!SharesPrefix(entry)) return false;
  // The very first entry brings its own beginning.
  return Splice(spot, 0, entry.subspan(prefix_), child);
}

bool EntryPage::TryReplace(Spot spot, ConstBytes entry, PageNumber child) {
  const std::size_t former = prefix_;
  if (After(spot) == End() && spot == 0) prefix_ = 0;
  const std::size_t removed = After(spot) - SuffixStart(spot);
  if (SharesPrefix(entry) && Splice(spot, removed, entry.subspan(prefix_), child)) return true;
  prefix_ = former;
  return false;
}

void EntryPage::Erase(Spot spot) {
  if (spot == 0 && After(spot) == End()) prefix_ = 0;
  Splice(spot, After(spot) - SuffixStart(spot), {}, 0);
}

void EntryPage::PutLink(std::size_t offset, PageNumber page) {
  if (Get32(page_.Read(), offset) != page) Put32(page_.Change(), offset, page);
}

void EntryList::Insert(std::size_t i, ConstBytes entry, PageNumber child) {
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(i),
                {bytes_.size(), entry.size(), child});
  bytes_.insert(bytes_.end(), entry.begin(), entry.end());
}

EntryList::Layout EntryList::LayOut(const Run& run) const {
  const std::size_t last = run.last - (run.hasTail ? 1 : 0);
  std::size_t size = 0;
  for (std::size_t i = run.first; i < last; ++i) size += StoredSize(i);
  if (size <= kSizeEntries) return {true, 0};
  const std::size_t prefix =
      CommonLength(KeyOfEntry(Entry(run.first)), KeyOfEntry(Entry(last - 1)));
  return {size - (last - run.first - 1) * prefix <= kSizeEntries, prefix};
}

std::size_t EntryList::CutNearMiddle(bool hasTail) const {
  std::size_t total = 0, before = 0, middle = 1;
  for (std::size_t i = 0; i < Size(); ++i) total += StoredSize(i);
  for (; middle < Size(); ++middle) {
    before += StoredSize(middle - 1);
    if (2 * before >= total) break;
  }
  const auto bothFit = [&](std::size_t cut) {
    if (cut == 0 || cut >= Size()) return false;
    return LayOut({0, cut}).fits && LayOut({cut, Size(), hasTail && Size() - cut >= 2}).fits;
  };
  for (std::size_t step = 0; step < Size(); ++step) {
    if (bothFit(middle + step)) return middle + step;
    if (step < middle && bothFit(middle - step)) return middle - step;
  }
  return 0;
}

void WriteEntryPage(PageRef& ref, const EntryPageHeader& header, const EntryList& list,
                    const EntryList::Run& run) {
  const EntryList::Layout layout = list.LayOut(run);
  if (!layout.fits) RaiseDamagedPage(ref.Number(), u"wpisy indeksu są zbyt długie");
  const std::size_t last = run.last - (run.hasTail ? 1 : 0);
  // Those of a damaged page need not ascend: what the first and the last one share the others may lack.
  for (std::size_t i = run.first; layout.prefix != 0 && i < last; ++i) {
    if (CommonLength(list.Entry(i), list.Entry(run.first)) >= layout.prefix) continue;
    RaiseDamagedPage(ref.Number(), u"wpisy indeksu nie są uporządkowane");
  }
  const Bytes page = ref.Change();
  std::fill(page.begin(), page.end(), std::byte{0});
  Put8(page, 0, list.IsLeaf() ? kPageIndexLeaf : kPageIndexNode);
  Put8(page, 1, 1);
  Put32(page, kOffsetOwner, header.owner);
  Put32(page, kOffsetPreviousLeaf, header.previous);
  Put32(page, kOffsetNextLeaf, header.next);
  Put8(page, kOffsetLevel, header.level);
  Put16(page, kOffsetPrefixLength, static_cast<std::uint16_t>(layout.prefix));
  if (run.hasTail) Put32(page, kOffsetTail, list.Child(run.last - 1));
  const Bytes area = page.subspan(kOffsetEntries);
  std::size_t end = 0;
  for (std::size_t i = run.first; i < last; ++i) {
    const ConstBytes entry = list.Entry(i).subspan(i == run.first ? 0 : layout.prefix);
    std::copy(entry.begin(), entry.end(), area.begin() + static_cast<std::ptrdiff_t>(end));
    end += entry.size();
    if (!list.IsLeaf()) PutBig32(area, end, list.Child(i));
    end += list.ChildSize();
    SetEnd(MaskOf(page), end);
  }
  PutFreeBytes(page, end);
}

}  // namespace zimbrat::jet

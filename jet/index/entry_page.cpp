#include "jet/index/entry_page.h"

#include <bit>
#include <cassert>
#include <cstring>
#include <utility>

#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

std::size_t PointerSize(std::uint8_t pageType) {
  return pageType == kPageIndexLeaf ? kSizeLeafPointer : kSizeNodePointer;
}

void SetMaskBit(Bytes page, std::size_t i) {
  page[kOffsetEntryMask + i / 8] |= static_cast<std::byte>(1u << (i % 8));
}

void ClearMask(Bytes page) {
  std::memset(page.data() + kOffsetEntryMask, 0, kSizeEntryMask);
}

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
  prefix_ = Get16(bytes, kOffsetPrefixLength);
  DecodeMask();
  CheckLengths();
  if (!IsLeaf() && Children() == 0) RaiseDamagedPage(Number(), u"węzeł indeksu jest pusty");
}

void EntryPage::DecodeMask() {
  constexpr std::size_t kWords = (kSizeEntryMask + 7) / 8;
  std::array<std::uint64_t, kWords> words{};
  std::memcpy(words.data(), page_.Read().data() + kOffsetEntryMask, kSizeEntryMask);
  for (std::size_t w = 0; w < kWords; ++w) {
    for (std::uint64_t bits = words[w]; bits != 0; bits &= bits - 1) {
      const std::size_t end = 64 * w + static_cast<unsigned>(std::countr_zero(bits));
      if (end > kSizeEntries) RaiseDamagedPage(Number(), u"maska wpisów indeksu jest błędna");
      ends_[count_++] = static_cast<std::uint16_t>(end);
    }
  }
}

void EntryPage::CheckLengths() const {
  if (count_ == 0) return;
  // Shortest and longest suffix, without a branch in the loop: every page on the way of every search
  // comes through here.
  std::uint16_t shortest = kSizeEntries, longest = 0;
  for (std::size_t i = 1; i < count_; ++i) {
    const auto size = static_cast<std::uint16_t>(ends_[i] - ends_[i - 1]);
    shortest = std::min(shortest, size);
    longest = std::max(longest, size);
  }
  const bool sound = ends_[0] > prefix_ && ends_[0] > pointerSize_ &&
                     prefix_ + shortest > pointerSize_ && prefix_ + longest <= kSizeEntries;
  if (!sound) RaiseDamagedPage(Number(), u"wpisy indeksu mają błędne długości");
}

ConstBytes EntryPage::Suffix(std::size_t i) const {
  const std::size_t start = SuffixStart(i);
  return page_.Read().subspan(kOffsetEntries + start, ends_[i] - start);
}

PageNumber EntryPage::Child(std::size_t i) const {
  if (i >= count_) return Tail();
  return GetBig32(page_.Read(), kOffsetEntries + ends_[i] - sizeof(PageNumber));
}

void EntryPage::CopyEntry(std::size_t i, EntryBuffer& out) const {
  const ConstBytes suffix = Suffix(i);
  const std::size_t size = prefix_ + suffix.size() - (pointerSize_ - kSizeLeafPointer);
  out.Clear();
  out.Append(Prefix().first(std::min(prefix_, size)));
  out.Append(suffix.first(size - out.Size()));
}

bool EntryPage::IsEqual(std::size_t i, ConstBytes entry) const {
  EntryBuffer own;
  CopyEntry(i, own);
  return Compare(own, entry) == 0;
}

bool EntryPage::HasKey(std::size_t i, ConstBytes key) const {
  EntryBuffer own;
  CopyEntry(i, own);
  return Compare(KeyOfEntry(own), key) == 0;
}

std::size_t EntryPage::LowerBound(ConstBytes target) const {
  if (count_ == 0) return 0;
  const int order = Compare(target.first(std::min(target.size(), prefix_)), Prefix());
  if (order > 0) return count_;
  if (order < 0) return 0;
  const ConstBytes rest = target.subspan(prefix_);
  const std::size_t childSize = pointerSize_ - kSizeLeafPointer;
  std::size_t low = 0, high = count_;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    const ConstBytes suffix = Suffix(middle);
    const ConstBytes entry = suffix.first(suffix.size() - std::min(suffix.size(), childSize));
    if (Compare(entry, rest) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

bool EntryPage::SharesPrefix(ConstBytes entry) const {
  return entry.size() >= prefix_ + kSizeLeafPointer && CommonLength(entry, Prefix()) == prefix_;
}

// Puts an entry (none when empty) in the place of `removed` bytes. The first entry's prefix stays
// where it is, whichever entry becomes the first.
void EntryPage::Splice(std::size_t offset, std::size_t removed, ConstBytes entry,
                       PageNumber child) {
  const Bytes area = page_.Change().subspan(kOffsetEntries);
  const std::size_t childSize = entry.empty() ? 0 : pointerSize_ - kSizeLeafPointer;
  const std::size_t end = offset + entry.size() + childSize;
  std::memmove(area.data() + end, area.data() + offset + removed, Used() - offset - removed);
  std::copy(entry.begin(), entry.end(), area.begin() + static_cast<std::ptrdiff_t>(offset));
  if (childSize != 0) PutBig32(area, offset + entry.size(), child);
}

bool EntryPage::TryInsert(std::size_t i, ConstBytes entry, PageNumber child) {
  if (count_ == 0) prefix_ = 0;
  const std::size_t childSize = pointerSize_ - kSizeLeafPointer;
  if (!SharesPrefix(entry)) return false;
  const std::size_t grows = entry.size() + childSize - (count_ == 0 ? 0 : prefix_);
  if (Used() + grows > kSizeEntries) return false;
  const std::size_t offset = SuffixStart(i);
  Splice(offset, 0, entry.subspan(prefix_), child);
  for (std::size_t k = count_; k > i; --k)
    ends_[k] = static_cast<std::uint16_t>(ends_[k - 1] + grows);
  ends_[i] = static_cast<std::uint16_t>(offset + grows);
  ++count_;
  PutMask();
  return true;
}

bool EntryPage::TryReplace(std::size_t i, ConstBytes entry, PageNumber child) {
  if (count_ == 1) prefix_ = 0;
  if (!SharesPrefix(entry)) return false;
  const std::size_t offset = SuffixStart(i);
  const std::size_t removed = ends_[i] - offset;
  const std::size_t added = entry.size() - prefix_ + sizeof(PageNumber);
  if (Used() - removed + added > kSizeEntries) return false;
  Splice(offset, removed, entry.subspan(prefix_), child);
  for (std::size_t k = i; k < count_; ++k) {
    ends_[k] = static_cast<std::uint16_t>(ends_[k] + added - removed);
  }
  PutMask();
  return true;
}

void EntryPage::Erase(std::size_t i) {
  if (count_ == 1) prefix_ = 0;
  const std::size_t offset = SuffixStart(i);
  const std::size_t removed = ends_[i] - offset;
  Splice(offset, removed, {}, 0);
  --count_;
  for (std::size_t k = i; k < count_; ++k)
    ends_[k] = static_cast<std::uint16_t>(ends_[k + 1] - removed);
  PutMask();
}

void EntryPage::PutMask() {
  const Bytes page = page_.Change();
  ClearMask(page);
  for (std::size_t k = 0; k < count_; ++k) SetMaskBit(page, ends_[k]);
  Put16(page, kOffsetPrefixLength, static_cast<std::uint16_t>(prefix_));
  PutFreeBytes(page, Used());
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

void WriteEntryPage(Bytes page, const EntryPageHeader& header, const EntryList& list,
                    const EntryList::Run& run) {
  const EntryList::Layout layout = list.LayOut(run);
  assert(layout.fits);
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
  for (std::size_t i = run.first; i < run.last - (run.hasTail ? 1 : 0); ++i) {
    const ConstBytes entry = list.Entry(i).subspan(i == run.first ? 0 : layout.prefix);
    std::copy(entry.begin(), entry.end(), area.begin() + static_cast<std::ptrdiff_t>(end));
    end += entry.size();
    if (!list.IsLeaf()) PutBig32(area, end, list.Child(i));
    end += list.ChildSize();
    SetMaskBit(page, end);
  }
  PutFreeBytes(page, end);
}

}  // namespace zimbrat::jet

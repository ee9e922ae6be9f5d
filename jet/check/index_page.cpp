#include "index_page.h"

#include <utility>

namespace zimbrat::jet::check {

namespace {
constexpr std::size_t kOffsetUnused = 8;
}  // namespace

std::optional<IndexPage> IndexPage::Read(Checking& check, const std::u16string& place,
                                         PageNumber number, PageNumber owner) {
  IndexPage result;
  result.Load(check.pages, number);
  const ConstBytes page = *result.page_;
  const std::uint8_t type = Get8(page, 0);
  if (type != kPageIndexNode && type != kPageIndexLeaf) {
    check.PageLoss(place, number, TextOf(u"nie jest stroną indeksu (rodzaj ", type, u")"));
    return std::nullopt;
  }
  if (Get8(page, 1) != 1) check.PageError(place, number, u"drugi bajt strony jest różny od 1");
  if (Get32(page, kOffsetUnused) != 0) {
    check.PageError(place, number, u"nieużywane pole nagłówka strony nie jest zerem");
  }
  if (Get32(page, kOffsetOwner) != owner) {
    check.PageLoss(place, number,
                   TextOf(u"strona podaje jako właściciela ", Get32(page, kOffsetOwner)));
    return std::nullopt;
  }
  if (result.isLeaf_ && result.Tail() != 0) check.PageError(place, number, u"liść ma ogon");
  if (!result.CheckMask(check, place)) return std::nullopt;
  return result;
}

std::optional<IndexPage> IndexPage::ReadAgain(PageReader& pages, PageNumber number) {
  IndexPage result;
  result.Load(pages, number);
  if (!result.isLeaf_ || result.FindImpossible()) return std::nullopt;
  return result;
}

void IndexPage::Load(PageReader& pages, PageNumber number) {
  number_ = number;
  page_ = pages.Read(number);
  const ConstBytes page = *page_;
  isLeaf_ = Get8(page, 0) == kPageIndexLeaf;
  prefix_ = Get16(page, kOffsetPrefixLength);
  for (std::size_t bit = 0; bit < 8 * kSizeEntryMask; ++bit) {
    const unsigned rest = Get8(page, kOffsetEntryMask + bit / 8) >> (bit % 8);
    if (rest == 0) bit |= 7;  // none in this byte any more
    if ((rest & 1) != 0) ends_.push_back(static_cast<std::uint16_t>(bit));
  }
}

std::size_t IndexPage::LengthOf(std::size_t i) const {
  return i == 0 ? ends_[0] : std::size_t{ends_[i]} - ends_[i - 1] + prefix_;
}

std::optional<std::size_t> IndexPage::FindImpossible() const {
  const std::size_t pointer = isLeaf_ ? kSizeLeafPointer : kSizeNodePointer;
  for (std::size_t i = 0; i < ends_.size(); ++i) {
    const std::size_t size = LengthOf(i);
    if (ends_[i] > kSizeEntries || size <= pointer || size > kSizeEntries || (i == 0 && size <= prefix_)) return i;
  }
  return std::nullopt;
}

bool IndexPage::CheckMask(Checking& check, const std::u16string& place) const {
  if (const auto i = FindImpossible()) {
    check.PageLoss(place, number_, TextOf(u"wpis ", *i, u" ma niemożliwą długość ", LengthOf(*i)));
    return false;
  }
  const ConstBytes page = *page_;
  const std::size_t end = ends_.empty() ? 0 : ends_.back();
  const std::size_t free = Get16(page, kOffsetFreeBytes);
  if (free != kSizeEntries - end) {
    check.PageError(place, number_,
                    TextOf(u"liczba wolnych bajtów to ", free, u" zamiast ", kSizeEntries - end));
  }
  if (ends_.empty() && prefix_ != 0)
    check.PageError(place, number_, u"pusta strona ma wspólny początek wpisów");
  return true;
}

void IndexPage::CopyEntry(std::size_t i, std::vector<std::byte>& entry) const {
  const ConstBytes area = ConstBytes(*page_).subspan(kOffsetEntries);
  const std::size_t start = i == 0 ? 0 : ends_[i - 1];
  const ConstBytes prefix = area.first(i == 0 ? 0 : prefix_);
  const ConstBytes stored = area.subspan(start, ends_[i] - start);
  entry.assign(prefix.begin(), prefix.end());
  entry.insert(entry.end(), stored.begin(), stored.end());
  if (!isLeaf_) entry.resize(entry.size() - sizeof(PageNumber));
}

PageNumber IndexPage::Child(std::size_t i) const {
  return GetBig32(*page_, kOffsetEntries + ends_[i] - sizeof(PageNumber));
}

ConstBytes KeyOf(ConstBytes entry) {
  return entry.first(entry.size() - kSizeLeafPointer);
}

RowPointer RowOf(ConstBytes entry) {
  return RowPointer::FromPacked(GetBig32(entry, entry.size() - kSizeLeafPointer));
}

}  // namespace zimbrat::jet::check

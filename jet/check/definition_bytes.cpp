#include "definition_bytes.h"

#include <algorithm>

namespace zimbrat::jet::check {

namespace {

// Far beyond what 255 columns, 32 indexes and their relationships need.
constexpr std::size_t kMaxDefinition = 512 * 1024;
constexpr std::size_t kBytesOnNextPage = kPageSize - kSizeDefinitionPageHeader;

class PageJoiner {
 public:
  PageJoiner(Checking& check, const std::u16string& place, PageNumber first, bool report)
      : check_(check), place_(place), first_(first), report_(report) {}

  // When a later page cannot be found: nothing, or with `mayEndEarly` what there is.
  std::optional<std::vector<std::byte>> Join(bool mayEndEarly = false);

 private:
  bool TakePage(PageNumber number);
  void CheckFreeBytes(PageNumber number, ConstBytes page, std::size_t end);
  void Fault(PageNumber number, std::u16string text) {
    if (report_) check_.PageError(place_, number, std::move(text));
  }
  void Lose(PageNumber number, std::u16string text) {
    if (report_) check_.PageLoss(place_, number, std::move(text));
  }

  Checking& check_;
  const std::u16string& place_;
  PageNumber first_;
  bool report_;
};

bool PageJoiner::TakePage(PageNumber number) {
  if (report_ && !check_.Claim(place_, number, {PageUse::Definition, first_})) return false;
  if (number == 0 || !check_.pages.Has(number)) return false;
  const PageView page = check_.pages.Read(number);
  if (Get8(*page, 0) != kPageDefinition) {
    Lose(number, TextOf(u"nie jest stroną definicji (rodzaj ", Get8(*page, 0), u")"));
    return false;
  }
  if (Get8(*page, 1) != 1) Fault(number, u"drugi bajt strony jest różny od 1");
  return true;
}

// `end`: where the definition ends on this page, or the page's size when it goes on.
void PageJoiner::CheckFreeBytes(PageNumber number, ConstBytes page, std::size_t end) {
  const std::size_t expected = end < kBytesOnNextPage ? kBytesOnNextPage - end : 0;
  const std::size_t found = Get16(page, kOffsetFreeBytes);
  if (found != expected) {
    Fault(number, TextOf(u"liczba wolnych bajtów to ", found, u" zamiast ", expected));
  }
}

std::optional<std::vector<std::byte>> PageJoiner::Join(bool mayEndEarly) {
  if (!TakePage(first_)) return std::nullopt;
  PageView page = check_.pages.Read(first_);
  const std::size_t length = Get32(*page, kOffsetDefinitionLength);
  if (length < kSizeDefinitionHead || length > kMaxDefinition) {
    Lose(first_, TextOf(u"niemożliwa długość definicji: ", length));
    return std::nullopt;
  }
  std::vector<std::byte> bytes(page->begin(), page->begin() + std::min(length, kPageSize));
  PageNumber number = first_;
  CheckFreeBytes(number, *page, bytes.size());
  while (bytes.size() < length) {
    number = Get32(*page, kOffsetNextDefinitionPage);
    if (!TakePage(number)) {
      if (mayEndEarly) return bytes;
      return std::nullopt;
    }
    page = check_.pages.Read(number);
    const std::size_t count = std::min(length - bytes.size(), kBytesOnNextPage);
    const auto* start = page->begin() + kSizeDefinitionPageHeader;
    bytes.insert(bytes.end(), start, start + count);
    CheckFreeBytes(number, *page, kSizeDefinitionPageHeader + count);
  }
  if (Get32(*page, kOffsetNextDefinitionPage) != 0) {
    Fault(number, u"po ostatniej stronie definicji jest jeszcze jedna");
  }
  return bytes;
}

}  // namespace

std::optional<std::vector<std::byte>> ReadDefinitionBytes(Checking& check,
                                                          const std::u16string& place,
                                                          PageNumber first, bool report) {
  return PageJoiner(check, place, first, report).Join();
}

std::optional<std::vector<std::byte>> PeekDefinitionStart(Checking& check, PageNumber first) {
  return PageJoiner(check, {}, first, false).Join(true);
}

std::u16string DefinitionReader::NextName() {
  const std::size_t size = Next<std::uint16_t>();
  std::u16string name;
  if (!Take(size)) return name;
  for (std::size_t i = 0; i + 1 < size; i += 2)
    name += static_cast<char16_t>(Get16(bytes_, at_ + i));
  hasFailed_ = hasFailed_ || size % 2 != 0;
  at_ += size;
  return name;
}

}  // namespace zimbrat::jet::check

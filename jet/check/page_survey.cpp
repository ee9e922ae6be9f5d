#include "page_survey.h"

#include <algorithm>

#include "map_reader.h"
#include "row_page.h"

namespace zimbrat::jet::check {

namespace {

std::vector<PageNumber> PagesOfTable(const std::vector<NamedPage>& named, PageNumber table) {
  const auto first = std::lower_bound(named.begin(), named.end(), NamedPage(table, 0));
  const auto last = std::lower_bound(first, named.end(), NamedPage(table + 1, 0));
  std::vector<PageNumber> pages;
  std::transform(first, last, std::back_inserter(pages), [](const NamedPage& n) { return n.second; });
  return pages;
}

}  // namespace

PageSurvey::PageSurvey(Checking& check, const LayoutSource& layoutOf) : check_(check), free_(check.pages.Count()) {
  ReadFreePages();
  ReadPages(layoutOf);
}

// A map that calls the fixed pages free, or pages beyond the file's end used, is not believed.
void PageSurvey::ReadFreePages() {
  const PageNumber count = check_.pages.Count();
  bool knowsEnd = count >= kMapInlinePages;
  const bool isReadable = PeekUsageMap(check_, {kGlobalMapPage, 0}, [&](PageNumber page) {
    if (page < count) free_[page] = true;
    knowsEnd = knowsEnd || page >= count;
  });
  hasFreePages_ = isReadable && knowsEnd;
  for (PageNumber page = 0; page < std::min(count, kRelationshipsPage + 1); ++page) {
    hasFreePages_ = hasFreePages_ && !free_[page];
  }
}

void PageSurvey::ReadPages(const LayoutSource& layoutOf) {
  for (PageNumber number = 1; number < check_.pages.Count(); ++number) {
    const PageView page = check_.pages.Read(number);
    const std::uint8_t type = Get8(*page, 0);
    const PageNumber owner = Get32(*page, kOffsetOwner);
    if (type == kPageData && owner >= kObjectsPage && owner < kMaxPages) {
      named_.emplace_back(owner, number);
    } else if (type == kPageIndexLeaf && !IsFree(number) && owner < kMaxPages) {
      leaves_.emplace_back(owner, number);
    } else if (type == kPageDefinition && !IsFree(number) &&
               Get32(*page, kOffsetDefinitionMark) == kDefinitionMark) {
      definitions_.push_back(number);
    }
  }
  std::sort(named_.begin(), named_.end());
  std::sort(leaves_.begin(), leaves_.end());
  SettleClaims(check_, definitions_, layoutOf, named_);
}

std::vector<PageNumber> PageSurvey::PagesInUseNaming(PageNumber table) const {
  std::vector<PageNumber> pages = PagesOfTable(named_, table);
  std::erase_if(pages, [&](PageNumber page) { return IsFree(page); });
  return pages;
}

bool PageSurvey::IsDefinition(PageNumber page) const {
  return std::binary_search(definitions_.begin(), definitions_.end(), page);
}

// Either its type or its owner is right, and no other table claims it. Noise now and then has the right type.
bool PageSurvey::IsDamagedPageOf(PageNumber page, PageNumber table) const {
  const PageView view = check_.pages.Read(page);
  const PageNumber owner = Get32(*view, kOffsetOwner);
  if (Get8(*view, 0) != kPageData) return owner == table && HasSoundRowTable(*view);
  if (Get8(*view, 1) != 1 && !HasSoundRowTable(*view)) return false;
  return owner > kGlobalMapPage && owner != kOwnerLongValues && !IsDefinition(owner);
}

bool PageSurvey::HaveAllRows(const TableLayout& table, const std::vector<PageNumber>& pages) const {
  std::uint64_t rows = 0;
  for (const PageNumber page : pages) rows += CountHomes(*check_.pages.Read(page));
  return rows >= table.rows;
}

RowPages PageSurvey::PagesOf(const TableLayout& table) const {
  RowPages result{.pages = {}, .leaves = PagesOfTable(leaves_, table.page)};
  std::vector<PageNumber> listed;
  const bool isMapped = PeekUsageMap(check_, table.ownedMap, [&](PageNumber page) {
    if (check_.pages.Has(page)) listed.push_back(page);
    result.areUncertain = result.areUncertain || !check_.pages.Has(page);
  });
  if (!isMapped) listed.clear();
  result.areUncertain = result.areUncertain || !isMapped || !check_.pages.HasWholePages();
  const std::vector<PageNumber> naming = PagesOfTable(named_, table.page);
  std::ranges::set_intersection(naming, listed, std::back_inserter(result.pages));
  // Where nobody knows which pages are free, those beyond the map are remains, unless rows are missing without them.
  if (hasFreePages_ || !isMapped || !HaveAllRows(table, result.pages)) {
    for (const PageNumber page : naming) {
      if (!IsFree(page) && !std::ranges::binary_search(listed, page)) result.pages.push_back(page);
    }
  }
  for (const PageNumber page : listed) {
    if (std::ranges::binary_search(naming, page)) continue;
    result.areUncertain = true;
    if (page != 0 && IsDamagedPageOf(page, table.page)) result.pages.push_back(page);
  }
  std::sort(result.pages.begin(), result.pages.end());
  return result;
}

}  // namespace zimbrat::jet::check

#include "page_claims.h"

#include <algorithm>

#include "map_reader.h"
#include "row_page.h"
#include "rows.h"

namespace zimbrat::jet::check {

namespace {

// Each costs the reading of two definitions; a file with more of them is past such care.
constexpr std::size_t kMostConflicts = 256;
// How often, on the average, each page may be looked at for that.
constexpr std::size_t kLooks = 16;

constexpr PageNumber kNobody = 0;

class Claims {
 public:
  Claims(Checking& check, const std::vector<PageNumber>& definitions, const LayoutSource& layoutOf)
      : check_(check), layoutOf_(layoutOf), budget_(kLooks * check.pages.Count()) {
    for (const PageNumber table : definitions) ReadMap(table);
    std::sort(listed_.begin(), listed_.end());
  }

  void Settle(std::vector<NamedPage>& named);

 private:
  void ReadMap(PageNumber table);
  std::optional<PageNumber> OnlyListing(PageNumber page) const;
  bool HaveChangedPlaces(PageNumber naming, PageNumber listing, const std::vector<NamedPage>& named);
  bool IsCopy(PageNumber page, PageNumber table);
  bool Fits(PageNumber page, PageNumber listing, PageNumber naming) const;
  std::size_t RowsThatFit(PageNumber table, PageNumber page) const;

  Checking& check_;
  const LayoutSource& layoutOf_;
  std::size_t budget_;
  std::vector<PageNumber> readable_;  // tables whose map can be read, ascending
  std::vector<NamedPage> listed_;     // by page: page, then table
};

void Claims::ReadMap(PageNumber table) {
  const auto map = RowPointer::FromPacked(Get32(*check_.pages.Read(table), kOffsetOwnedMap));
  std::vector<NamedPage> pages;
  const bool isReadable = PeekUsageMap(check_, map, [&](PageNumber page) {
    if (check_.pages.Has(page)) pages.emplace_back(page, table);
  });
  if (!isReadable || pages.size() + listed_.size() > check_.pages.Count()) return;
  readable_.push_back(table);
  listed_.insert(listed_.end(), pages.begin(), pages.end());
}

std::optional<PageNumber> Claims::OnlyListing(PageNumber page) const {
  const auto first = std::ranges::lower_bound(listed_, NamedPage(page, 0));
  if (first == listed_.end() || first->first != page) return std::nullopt;
  const auto next = first + 1;
  if (next != listed_.end() && next->first == page) return std::nullopt;
  return first->second;
}

// Whether a page that the one table lists names the other one in its turn.
bool Claims::HaveChangedPlaces(PageNumber naming, PageNumber listing, const std::vector<NamedPage>& named) {
  return std::ranges::any_of(listed_, [&](const NamedPage& listed) {
    if (budget_ == 0) return false;
    --budget_;
    return listed.second == naming && std::ranges::binary_search(named, NamedPage(listing, listed.first));
  });
}

// Whether the page is that of a table once more, written over another one.
bool Claims::IsCopy(PageNumber page, PageNumber table) {
  const PageView copy = check_.pages.Read(page);
  return std::ranges::any_of(listed_, [&](const NamedPage& listed) {
    if (listed.second != table || budget_ == 0) return false;
    --budget_;
    return *check_.pages.Read(listed.first) == *copy;
  });
}

std::size_t Claims::RowsThatFit(PageNumber table, PageNumber number) const {
  const std::optional<TableLayout> layout = layoutOf_(table);
  if (!layout) return 0;
  const PageView page = check_.pages.Read(number);
  std::size_t rows = 0;
  for (std::size_t slot = 0; slot < std::min(SlotCount(*page), kMaxRowSlots); ++slot) {
    const std::optional<ConstBytes> row = FindRowBytes(*page, slot);
    RowParts parts;
    if (row && SlotFlags(*page, slot) == 0 && parts.Parse(*layout, *row).empty()) ++rows;
  }
  return rows;
}

// What the engine's own tables look like is known, whatever became of their definitions. Between tables that look
// alike the map decides, unless its table has not so many rows.
bool Claims::Fits(PageNumber page, PageNumber listing, PageNumber naming) const {
  const std::size_t there = RowsThatFit(listing, page), here = RowsThatFit(naming, page);
  if (there != here || naming <= kRelationshipsPage) return there > here;
  const std::optional<TableLayout> layout = layoutOf_(listing);
  return layout && layout->rows >= there;
}

void Claims::Settle(std::vector<NamedPage>& named) {
  std::vector<NamedPage> settled = named;
  std::size_t conflicts = 0;
  for (NamedPage& claim : settled) {
    const auto [naming, page] = claim;
    const std::optional<PageNumber> listing = OnlyListing(page);
    if (!listing || *listing == naming || !std::ranges::binary_search(readable_, naming)) continue;
    if (++conflicts > kMostConflicts) return;
    if (HaveChangedPlaces(naming, *listing, named)) continue;
    if (IsCopy(page, naming)) {
      claim.first = kNobody;
    } else if (Fits(page, *listing, naming)) {
      claim.first = *listing;
    }
  }
  std::erase_if(settled, [](const NamedPage& claim) { return claim.first == kNobody; });
  std::sort(settled.begin(), settled.end());
  named = std::move(settled);
}

}  // namespace

void SettleClaims(Checking& check, const std::vector<PageNumber>& definitions, const LayoutSource& layoutOf,
                  std::vector<NamedPage>& named) {
  Claims(check, definitions, layoutOf).Settle(named);
}

}  // namespace zimbrat::jet::check

#include "page_claims.h"

#include <algorithm>
#include <optional>

#include "layout.h"
#include "map_reader.h"
#include "row_page.h"
#include "rows.h"

namespace zimbrat::jet::check {

namespace {

// Each costs the reading of two definitions; a file with more of them is past such care.
constexpr std::size_t kMostConflicts = 256;

class Claims {
 public:
  Claims(Checking& check, const std::vector<PageNumber>& definitions) : check_(check) {
    for (const PageNumber table : definitions) ReadMap(table);
    std::sort(listed_.begin(), listed_.end());
  }

  void Settle(std::vector<NamedPage>& named);

 private:
  void ReadMap(PageNumber table);
  std::optional<PageNumber> OnlyListing(PageNumber page) const;
  bool HaveChangedPlaces(PageNumber naming, PageNumber listing, const std::vector<NamedPage>& named) const;
  std::size_t RowsThatFit(PageNumber table, PageNumber page) const;

  Checking& check_;
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
bool Claims::HaveChangedPlaces(PageNumber naming, PageNumber listing, const std::vector<NamedPage>& named) const {
  return std::ranges::any_of(listed_, [&](const NamedPage& listed) {
    return listed.second == naming && std::ranges::binary_search(named, NamedPage(listing, listed.first));
  });
}

std::size_t Claims::RowsThatFit(PageNumber table, PageNumber number) const {
  const std::optional<TableLayout> layout = PeekLayout(check_, table);
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

void Claims::Settle(std::vector<NamedPage>& named) {
  std::vector<NamedPage> settled = named;
  std::size_t conflicts = 0;
  for (NamedPage& claim : settled) {
    const auto [naming, page] = claim;
    const std::optional<PageNumber> listing = OnlyListing(page);
    if (!listing || *listing == naming || !std::ranges::binary_search(readable_, naming)) continue;
    if (++conflicts > kMostConflicts) return;
    if (HaveChangedPlaces(naming, *listing, named)) continue;
    if (RowsThatFit(*listing, page) >= RowsThatFit(naming, page)) claim.first = *listing;
  }
  std::sort(settled.begin(), settled.end());
  named = std::move(settled);
}

}  // namespace

void SettleClaims(Checking& check, const std::vector<PageNumber>& definitions, std::vector<NamedPage>& named) {
  Claims(check, definitions).Settle(named);
}

}  // namespace zimbrat::jet::check

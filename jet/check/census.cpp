#include "census.h"

namespace zimbrat::jet::check {

namespace {
constexpr unsigned kTableBits = 20;
constexpr unsigned kPartBits = 8;
static_assert(kMaxPages <= 1u << kTableBits);
}  // namespace

bool PageCensus::Claim(PageNumber page, const PageOwner& owner) {
  std::uint32_t& packed = owners_[page];
  if (packed != 0) return owner.use == PageUse::MapRows && OwnerOf(page) == owner;
  packed = static_cast<std::uint32_t>(owner.use) << (kTableBits + kPartBits) |
           std::uint32_t{owner.part} << kTableBits | owner.table;
  return true;
}

PageOwner PageCensus::OwnerOf(PageNumber page) const {
  const std::uint32_t packed = owners_[page];
  return {static_cast<PageUse>(packed >> (kTableBits + kPartBits)),
          packed & ((1u << kTableBits) - 1), static_cast<std::uint8_t>(packed >> kTableBits)};
}

bool RowSet::Add(RowPointer row) {
  std::uint32_t& place = places_[row.page];
  if (place == 0) {
    slots_.push_back({});
    pages_.push_back(row.page);
    place = static_cast<std::uint32_t>(slots_.size());
  }
  std::uint64_t& word = slots_[place - 1][row.row / 64];
  const std::uint64_t bit = std::uint64_t{1} << (row.row % 64);
  const bool isNew = (word & bit) == 0;
  word |= bit;
  return isNew;
}

bool RowSet::Contains(RowPointer row) const {
  const std::uint32_t place = places_[row.page];
  return place != 0 && (slots_[place - 1][row.row / 64] >> (row.row % 64) & 1) != 0;
}

void RowSet::Clear() {
  for (const PageNumber page : pages_) places_[page] = 0;
  pages_.clear();
  slots_.clear();
}

}  // namespace zimbrat::jet::check

#include "row_rescue.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "index_page.h"
#include "long_values.h"

namespace zimbrat::jet::check {

namespace {

// Beyond this a Memo is taken for text without being decoded.
constexpr std::size_t kDecodedBytesOfMemo = 64 * 1024;

// More damaged offsets on a page than this are not worth the search.
constexpr std::size_t kMostBorders = 4;

using FieldBytes = std::vector<std::byte>;

FieldBytes CopyOf(ConstBytes bytes) {
  return {bytes.begin(), bytes.end()};
}

ConstBytes BytesAt(ConstBytes page, const RowPlace& place) {
  return page.subspan(place.start, place.end - place.start);
}

FieldBytes PlainBytes(std::u16string_view text) {
  FieldBytes bytes(2 * text.size());
  for (std::size_t i = 0; i < text.size(); ++i) Put16(bytes, 2 * i, text[i]);
  return bytes;
}

}  // namespace

RowRescue::RowRescue(Checking& check, const TableLayout& table, const RescuedRowVisit& visit,
                     std::uint64_t& budget)
    : check_(check), table_(table), visit_(visit), budget_(budget) {
  check_.heldRows.Clear();  // of moved rows the far places that were read
}

RowCounts RowRescue::Run(const RowPages& pages) {
  pages_ = pages.pages;
  leaves_ = pages.leaves;
  areUncertain_ = pages.areUncertain;
  for (const PageNumber page : pages_) ReadHomes(page);
  const std::uint64_t atHome = counts_.saved;
  for (const PageNumber page : pages_) ReadStrays(page);
  // A broken pointer and a row that nothing points at belong together.
  const std::uint64_t strays = counts_.saved - atHome;
  counts_.lost += brokenMoves_ - std::min(brokenMoves_, strays);
  areUncertain_ = areUncertain_ || strays != brokenMoves_;
  AddMissingRows();
  return counts_;
}

// Of rows on pages that are gone only the definition's count tells. It may be wrong itself: where every page looks
// well, a second witness must speak for it.
void RowRescue::AddMissingRows() {
  const std::uint64_t most = std::uint64_t{check_.pages.Count()} * kMaxRowSlots;
  const std::uint64_t told = counts_.saved + counts_.lost;
  if (table_.rows <= told || table_.rows > most) return;
  const std::uint64_t missing = table_.rows - told;
  counts_.lost += areUncertain_ || HasTwins() ? missing : std::min(missing, CountEntriesWithoutRow());
}

// Whether two pages are the same, byte for byte: then one was written over another.
bool RowRescue::HasTwins() const {
  std::vector<std::pair<std::size_t, PageNumber>> hashes;
  hashes.reserve(pages_.size());
  for (const PageNumber number : pages_) {
    const PageView page = check_.pages.Read(number);
    const std::string_view bytes(reinterpret_cast<const char*>(page->data()), page->size());
    hashes.emplace_back(std::hash<std::string_view>{}(bytes), number);
  }
  std::sort(hashes.begin(), hashes.end());
  const auto areSame = [&](const auto& a, const auto& b) {
    return a.first == b.first && *check_.pages.Read(a.second) == *check_.pages.Read(b.second);
  };
  return std::adjacent_find(hashes.begin(), hashes.end(), areSame) != hashes.end();
}

// Rows that an index knows, on pages that do not.
std::uint64_t RowRescue::CountEntriesWithoutRow() {
  check_.indexedRows.Clear();
  std::vector<std::byte> entry;
  for (const PageNumber number : leaves_) {
    const std::optional<IndexPage> leaf = IndexPage::ReadAgain(check_.pages, number);
    for (std::size_t i = 0; leaf && i < leaf->Count(); ++i) {
      leaf->CopyEntry(i, entry);
      if (check_.pages.Has(RowOf(entry).page)) check_.indexedRows.Add(RowOf(entry));
    }
  }
  std::uint64_t missing = 0;
  for (const PageNumber number : pages_) {
    const PageView page = check_.pages.Read(number);
    for (std::size_t slot = 0; slot < kMaxRowSlots; ++slot) {
      if (!check_.indexedRows.Contains({number, static_cast<std::uint8_t>(slot)})) continue;
      missing += slot >= SlotCount(*page) || (SlotFlags(*page, slot) & kRowHidden) != 0 ? 1 : 0;
    }
  }
  return missing;
}

std::vector<RowPlace> RowRescue::FindPlaces(ConstBytes page) const {
  std::vector<RowPlace> places = FindRowPlaces(page);
  std::size_t searches = 0;
  for (std::size_t slot = 1; slot < places.size() && searches < kMostBorders; ++slot) {
    if (places[slot].isEndKnown || !places[slot].isStartKnown || !places[slot - 1].isEndKnown)
      continue;
    FindBorder(page, places[slot - 1], places[slot]);
    ++searches;
  }
  return places;
}

// One damaged offset leaves two rows without a border. Where they can be cut into two rows in one
// way only, that is it.
void RowRescue::FindBorder(ConstBytes page, RowPlace& upper, RowPlace& lower) const {
  const auto isRow = [&](std::size_t start, std::size_t end) {
    RowParts parts;
    const ConstBytes bytes = page.subspan(start, end - start);
    return parts.Parse(table_, bytes).empty() && Get16(bytes, 0) == table_.maxColumns;
  };
  std::size_t border = 0;
  std::size_t found = 0;
  for (std::size_t at = lower.start + 1; at < upper.end && found < 2; ++at) {
    if (!isRow(lower.start, at) || !isRow(at, upper.end)) continue;
    border = at;
    ++found;
  }
  if (found != 1) return;
  upper.start = lower.end = border;
  upper.isStartKnown = lower.isEndKnown = true;
}

void RowRescue::ReadHomes(PageNumber number) {
  const PageView page = check_.pages.Read(number);
  areUncertain_ = areUncertain_ || Get32(*page, kOffsetOwner) != table_.page || !HasSoundRowTable(*page);
  const std::vector<RowPlace> places = FindPlaces(*page);
  for (std::size_t slot = 0; slot < places.size(); ++slot) {
    const std::uint16_t flags = SlotFlags(*page, slot);
    if ((flags & kRowHidden) != 0) continue;
    if (!places[slot].IsKnown()) {
      ++counts_.lost;
    } else if (flags == kRowMoved) {
      FollowMove(BytesAt(*page, places[slot]));
    } else if (!TakeRow(BytesAt(*page, places[slot]))) {
      ++counts_.lost;
    }
  }
}

void RowRescue::FollowMove(ConstBytes pointer) {
  const RowPointer far =
      RowPointer::FromPacked(pointer.size() < sizeof(std::uint32_t) ? 0 : Get32(pointer, 0));
  const bool isPageOurs = std::ranges::binary_search(pages_, far.page);
  if (isPageOurs) {
    const PageView page = check_.pages.Read(far.page);
    const std::vector<RowPlace> places = FindRowPlaces(*page);
    const bool isThere = far.row < places.size() && places[far.row].IsKnown() &&
                         SlotFlags(*page, far.row) == kRowHidden && check_.heldRows.Add(far);
    if (isThere && TakeRow(BytesAt(*page, places[far.row]))) return;
  }
  ++brokenMoves_;
}

void RowRescue::ReadStrays(PageNumber number) {
  const PageView page = check_.pages.Read(number);
  const std::vector<RowPlace> places = FindPlaces(*page);
  for (std::size_t slot = 0; slot < places.size(); ++slot) {
    const RowPointer row{number, static_cast<std::uint8_t>(slot)};
    if (SlotFlags(*page, slot) != kRowHidden || !places[slot].IsKnown()) continue;
    if (check_.heldRows.Add(row)) TakeRow(BytesAt(*page, places[slot]));
  }
}

// False for bytes that are no row.
bool RowRescue::TakeRow(ConstBytes bytes) {
  RowParts parts;
  RescuedRow row;
  row.isWhole = parts.Parse(table_, bytes).empty();
  if (!parts.IsReadable() || Get16(bytes, 0) == 0) return false;
  bool isAnyPresent = false;
  for (const ColumnLayout& column : table_.columns) {
    const std::optional<ConstBytes> field = parts.Field(column);
    row.isWhole = row.isWhole && field.has_value() == parts.HasBit(column.id);
    row.fields.push_back(field ? TakeField(column, *field, row.isWhole) : std::nullopt);
    isAnyPresent = isAnyPresent || row.fields.back();
  }
  if (!row.isWhole && !isAnyPresent) return false;
  ++counts_.saved;
  counts_.partial += row.isWhole ? 0 : 1;
  visit_(row);
  return true;
}

std::optional<FieldBytes> RowRescue::TakeField(const ColumnLayout& column, ConstBytes field,
                                               bool& isWhole) {
  if (column.IsBoolean()) return FieldBytes();
  if (column.IsLongValue()) return TakeLongValue(column, field, isWhole);
  const std::size_t size = column.FixedSize();
  const std::size_t most = size != 0 ? size : column.length;
  const bool isTooShort = field.size() < size;
  if (column.type != dao::dbText) {
    const bool isTooLong = most != 0 && field.size() > most;
    isWhole = isWhole && !isTooShort && !isTooLong;
    if (isTooShort || (isTooLong && size != 0)) return std::nullopt;
    return CopyOf(isTooLong ? field.first(most) : field);
  }
  const std::optional<std::u16string> text = DecodeText(field);
  if (text && 2 * text->size() <= most) return CopyOf(field);
  isWhole = false;
  if (!text) return std::nullopt;
  return PlainBytes(std::u16string_view(*text).substr(0, most / 2));
}

// Of a text what is there, else nothing.
std::optional<FieldBytes> RowRescue::TakeLongValue(const ColumnLayout& column, ConstBytes field,
                                                   bool& isWhole) {
  LongValue value = RescueLongValue(check_, field, budget_);
  const bool isText = column.type == dao::dbMemo;
  isWhole = isWhole && value.fault.empty();
  if (!value.fault.empty() && (!isText || value.start.empty())) return std::nullopt;
  if (isText && value.start.size() <= kDecodedBytesOfMemo && !DecodeText(value.start)) {
    isWhole = false;
    value.start.pop_back();  // half a unit
  }
  return std::move(value.start);
}

}  // namespace zimbrat::jet::check

#include "structure.h"

#include <algorithm>
#include <bit>

#include "jet/file/data_page.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

const char* NameOf(MapKind kind) {
  switch (kind) {
    case MapKind::Free: return "map of free pages";
    case MapKind::Second: return "second map";
    case MapKind::Owned: return "map of a table";
    case MapKind::Room: return "map of room";
    case MapKind::Index: return "map of an index";
    case MapKind::ValuesOwned: return "map of long values";
    case MapKind::ValuesRoom: return "map of room for long values";
  }
  return "";
}

bool IsZero(std::byte byte) {
  return byte == std::byte{0};
}

class StructureFinder {
 public:
  explicit StructureFinder(const Subject& subject) : subject_(subject), plain_(subject.bytes) {
    ToggleEncoding(plain_, subject.key);
  }

  Structure Run();

 private:
  ConstBytes Page(PageNumber page) const { return PageOf(plain_, page); }
  void Add(const std::string& kind, PageNumber page, std::size_t from, std::size_t size, std::uint8_t bits = 0xFF) {
    for (std::size_t i = 0; i < size; ++i) result_[kind].push_back({page * kPageSize + from + i, bits});
  }
  void AddHeader();
  void AddRowPage(PageNumber page, const std::string& kind);
  void AddIndexPage(PageNumber page);
  void AddMap(const MapAnatomy& map);
  void AddBitsPage(MapKind kind, PageNumber page, std::size_t first);
  std::uint8_t BitsThatCount(MapKind kind, std::size_t first) const;
  bool DoesBitCount(MapKind kind, PageNumber page) const;
  bool IsRowUsed(PageNumber page, std::size_t slot) const;

  const Subject& subject_;
  FileBytes plain_;
  Structure result_;
};

void StructureFinder::AddHeader() {
  Add("head of page 0", 0, 0, kOffsetSystemTables + 4 * sizeof(PageNumber));
  Add("head of page 0", 0, kOffsetEncodingKey, sizeof(std::uint32_t));
  Add("head of page 0", 0, kOffsetLanguage, sizeof(std::uint16_t));
  Add("head of page 0", 0, kOffsetCollationVersion, 1);
  Add("head of page 0", 0, kOffsetFormatMark, 7);
}

void StructureFinder::AddRowPage(PageNumber page, const std::string& kind) {
  constexpr std::size_t kOffsetUnused = 8;
  const bool hasLeftovers = subject_.anatomy.pages[page].kind == PageKind::LongValues;
  const std::size_t second = hasLeftovers ? kOffsetRowCount : kOffsetUnused;
  Add("head of a page of " + kind, page, 0, kOffsetUnused);
  Add("head of a page of " + kind, page, second, kOffsetRowTable - second);
  const std::size_t slots = RowSlots(Page(page));
  for (std::size_t slot = 0; slot < slots; ++slot) {
    if (!IsRowUsed(page, slot)) continue;
    const std::size_t at = kOffsetRowTable + kSizeRowSlot * slot;
    const bool isEndOfNothing = RowFlags(Page(page), slot) == kRowDeleted && slot + 1 < slots &&
                                RowFlags(Page(page), slot + 1) == kRowDeleted;
    if (!isEndOfNothing) Add("row table of " + kind, page, at, 1);
    Add("row table of " + kind, page, at + 1, 1, isEndOfNothing ? 0xE0 : 0xFF);
  }
}

bool StructureFinder::IsRowUsed(PageNumber page, std::size_t slot) const {
  const RowPointer row{page, static_cast<std::uint8_t>(slot)};
  if (subject_.anatomy.pages[page].kind != PageKind::LongValues || RowFlags(Page(page), slot) != 0) return true;
  return subject_.anatomy.valueRows.contains(row);
}

void StructureFinder::AddIndexPage(PageNumber page) {
  const std::size_t used = kSizeEntries - Get16(Page(page), kOffsetFreeBytes);
  const std::uint8_t level = Get8(Page(page), kOffsetLevel);
  const std::string kind = Get8(Page(page), 0) == kPageIndexLeaf ? "leaf" : "node";
  const ConstBytes mask = Page(page).subspan(kOffsetEntryMask, kSizeEntryMask);
  std::size_t entries = 0;
  for (const std::byte byte : mask) entries += static_cast<std::size_t>(std::popcount(std::to_integer<unsigned>(byte)));
  Add("head of a " + kind, page, 0, kOffsetPrefixLength);
  if (entries != 1) Add("head of a " + kind, page, kOffsetPrefixLength, sizeof(std::uint16_t));
  Add("head of a " + kind, page, kOffsetLevel, 1, static_cast<std::uint8_t>(~level));
  Add("mask of a " + kind, page, kOffsetEntryMask, kSizeEntryMask);
  Add("entries of a " + kind, page, kOffsetEntries, used);
}

void StructureFinder::AddMap(const MapAnatomy& map) {
  const RowExtent extent = ExtentOfRow(Page(map.place.page), map.place.row);
  const ConstBytes row = RowBytes(Page(map.place.page), map.place.row);
  const std::size_t at = map.place.page * kPageSize + extent.offset;
  const bool isInline = Get8(row, 0) == kMapInline;
  const PageNumber first = Get32(row, kOffsetMapFirstPage);
  const bool coversNothing = isInline && std::ranges::all_of(row.subspan(kOffsetMapBits), IsZero);
  const bool isStartFree = coversNothing && subject_.PageCount() > kMapInlinePages;
  std::vector<StructureByte>& bytes = result_[NameOf(map.kind)];
  for (std::size_t i = 0; i < extent.size; ++i) {
    if (isStartFree && i >= kOffsetMapFirstPage && i < kOffsetMapBits) continue;
    StructureByte byte{at + i};
    if (isInline && i >= kOffsetMapBits) byte.bits = BitsThatCount(map.kind, first + 8 * (i - kOffsetMapBits));
    bytes.push_back(byte);
  }
  if (isInline) return;
  for (std::size_t i = 0; i < kMapReferences; ++i) {
    const PageNumber page = Get32(row, kOffsetMapPages + 4 * i);
    if (page != 0) AddBitsPage(map.kind, page, i * kMapPagePages);
  }
}

void StructureFinder::AddBitsPage(MapKind kind, PageNumber page, std::size_t first) {
  std::vector<StructureByte>& bytes = result_["page of bits"];
  const std::size_t at = page * kPageSize;
  bytes.push_back({at});
  bytes.push_back({at + 1});
  for (std::size_t i = 0; i < kPageSize - kOffsetMapPageBits; ++i)
    bytes.push_back({at + kOffsetMapPageBits + i, BitsThatCount(kind, first + 8 * i)});
}

// Of the eight pages from `first` on.
std::uint8_t StructureFinder::BitsThatCount(MapKind kind, std::size_t first) const {
  std::uint8_t bits = 0xFF;
  for (std::size_t i = 0; i < 8 && first + i < subject_.PageCount(); ++i) {
    if (!DoesBitCount(kind, static_cast<PageNumber>(first + i))) bits &= static_cast<std::uint8_t>(~(1u << i));
  }
  return bits;
}

bool StructureFinder::DoesBitCount(MapKind kind, PageNumber page) const {
  const PageKind use = subject_.anatomy.pages[page].kind;
  if (kind == MapKind::Free) return use != PageKind::Unused || std::ranges::all_of(Page(page), IsZero);
  if (kind == MapKind::ValuesRoom) return use != PageKind::LongValues;
  return kind != MapKind::Room || use != PageKind::Data || Get16(Page(page), kOffsetFreeBytes) >= kPageSize / 2;
}

Structure StructureFinder::Run() {
  AddHeader();
  const auto& pages = subject_.anatomy.pages;
  for (PageNumber page = 1; page < pages.size(); ++page) {
    switch (pages[page].kind) {
      case PageKind::Definition: Add("head of a page of definitions", page, 0, kSizeDefinitionPageHeader); break;
      case PageKind::Data: AddRowPage(page, "rows"); break;
      case PageKind::LongValues: AddRowPage(page, "long values"); break;
      case PageKind::MapRows: AddRowPage(page, "maps"); break;
      case PageKind::Index: AddIndexPage(page); break;
      default: break;
    }
  }
  for (const MapAnatomy& map : subject_.anatomy.maps) AddMap(map);
  return std::move(result_);
}

}  // namespace

Structure StructureOf(const Subject& subject) {
  return StructureFinder(subject).Run();
}

}  // namespace zimbrat::tests

#include "damages.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <vector>

#include "jet/file/bytes.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

class Planter {
 public:
  Planter(const Subject& subject, FileBytes& plain, Round& round)
      : anatomy_(subject.anatomy), plain_(plain), round_(round), count_(plain.size() / kPageSize) {}

  std::string Plant();

 private:
  std::size_t Below(std::size_t most) { return round_.Below(most); }
  PageNumber AnyPage() { return static_cast<PageNumber>(Below(count_)); }
  PageNumber PageOfKind(PageKind kind);
  RowPointer AnyValueRow();
  std::uint32_t Lie(std::uint32_t truth);
  void PutLie(std::size_t at, std::size_t size);
  std::size_t RowAt(PageNumber page, std::size_t slot) {
    return page * kPageSize + (Get16(PageOf(plain_, page), kOffsetRowTable + kSizeRowSlot * slot) & kRowOffsetMask);
  }
  template <class... Parts>
  void Tell(const Parts&... parts) {
    ((told_ << ' ' << parts), ...);
  }

  void ZeroPage();
  void FillWithNoise();
  void SwapPages();
  void CopyPage();
  void CutAtPage();
  void CutInside();
  void FlipRun();
  void FlipBits();
  void FlipBitInHead();
  void LieInRowTable();
  void LieInRow();
  void LieOfOwner();
  void LieInDefinition();
  void LieInIndexHead();
  void LieInMap();
  void LoopValue();
  void LoopDefinition();
  void LoopLeaves();
  void LoopTree();
  void LoopMap();

  const Anatomy& anatomy_;
  FileBytes& plain_;
  Round& round_;
  std::size_t count_;
  std::ostringstream told_;
};

PageNumber Planter::PageOfKind(PageKind kind) {
  std::vector<PageNumber> pages;
  for (PageNumber page = 0; page < count_; ++page) {
    if (anatomy_.pages[page].kind == kind) pages.push_back(page);
  }
  return pages.empty() ? AnyPage() : pages[Below(pages.size())];
}

RowPointer Planter::AnyValueRow() {
  if (anatomy_.valueRows.empty()) return {AnyPage(), 0};
  auto row = anatomy_.valueRows.begin();
  std::advance(row, Below(anatomy_.valueRows.size()));
  return *row;
}

std::uint32_t Planter::Lie(std::uint32_t truth) {
  const std::uint32_t lies[] = {0,          1,          0xFF,      0x7FFF,         0xFFFF,        0x7FFFFFFF,
                                0xFFFFFFFF, truth + 1,  truth - 1, 2 * truth,      truth ^ 0x100, truth ^ 0x80000000,
                                AnyPage(),  AnyPage() << 8, static_cast<std::uint32_t>(round_.random())};
  return lies[Below(std::size(lies))];
}

// A number of one, two or four bytes.
void Planter::PutLie(std::size_t at, std::size_t size) {
  at = std::min(at, plain_.size() - sizeof(std::uint32_t));
  Tell("number at", at, "of", size, "bytes");
  if (size == 1) Put8(plain_, at, static_cast<std::uint8_t>(Lie(Get8(plain_, at))));
  if (size == 2) Put16(plain_, at, static_cast<std::uint16_t>(Lie(Get16(plain_, at))));
  if (size == 4) Put32(plain_, at, Lie(Get32(plain_, at)));
}

void Planter::ZeroPage() {
  const PageNumber page = AnyPage();
  Tell("zeroed page", page);
  std::ranges::fill(PageOf(plain_, page), std::byte{0});
}
void Planter::FillWithNoise() {
  const PageNumber page = AnyPage();
  Tell("noise on page", page);
  for (std::byte& byte : PageOf(plain_, page)) byte = static_cast<std::byte>(Below(256));
}
void Planter::SwapPages() {
  const PageNumber a = AnyPage(), b = AnyPage();
  Tell("swapped pages", a, b);
  std::ranges::swap_ranges(PageOf(plain_, a), PageOf(plain_, b));
}
void Planter::CopyPage() {
  const PageNumber a = AnyPage(), b = AnyPage();
  Tell("copied page", a, "over", b);
  std::ranges::copy(PageOf(plain_, a), PageOf(plain_, b).begin());
}
void Planter::CutAtPage() {
  plain_.resize(AnyPage() * kPageSize);
  Tell("cut to", plain_.size());
}
void Planter::CutInside() {
  plain_.resize(Below(plain_.size()));
  Tell("cut to", plain_.size());
}
void Planter::FlipRun() {
  const std::size_t from = Below(plain_.size()), size = 2 + Below(60);
  Tell("noise from", from, "on", size, "bytes");
  for (std::size_t at = from; at < std::min(from + size, plain_.size()); ++at)
    plain_[at] ^= static_cast<std::byte>(Below(256));
}
void Planter::FlipBits() {
  for (std::size_t left = 1 + Below(6); left > 0; --left) {
    const std::size_t at = Below(plain_.size());
    Tell("bit at", at);
    plain_[at] ^= static_cast<std::byte>(1u << Below(8));
  }
}
void Planter::FlipBitInHead() {
  const std::size_t at = AnyPage() * kPageSize + Below(64);
  Tell("bit at", at);
  plain_[at] ^= static_cast<std::byte>(1u << Below(8));
}

void Planter::LieInRowTable() {
  const PageKind kinds[] = {PageKind::Data, PageKind::LongValues, PageKind::MapRows};
  const PageNumber page = PageOfKind(kinds[Below(3)]);
  const std::size_t slots = Get16(PageOf(plain_, page), kOffsetRowCount);
  const std::size_t slot = Below(4) == 0 || slots == 0 ? 0 : 1 + Below(std::min(slots, kMaxRowSlots));
  PutLie(page * kPageSize + kOffsetRowCount + kSizeRowSlot * slot, 2);
}
// Column count, offsets, and wherever lengths and pointers of long values happen to stand.
void Planter::LieInRow() {
  const PageNumber page = PageOfKind(PageKind::Data);
  const std::size_t slots = std::max<std::size_t>(1, Get16(PageOf(plain_, page), kOffsetRowCount));
  const std::size_t at = RowAt(page, Below(std::min(slots, kMaxRowSlots)));
  PutLie(at + (Below(3) == 0 ? 0 : Below(80)), Below(2) == 0 ? 2 : 4);
}
void Planter::LieOfOwner() {
  PutLie(AnyPage() * kPageSize + kOffsetOwner, 4);
}
void Planter::LieInDefinition() {
  static constexpr std::pair<std::size_t, std::size_t> kFields[] = {
      {kOffsetFreeBytes, 2}, {kOffsetDefinitionLength, 4}, {kOffsetTableRows, 4},      {kOffsetMaxColumns, 2},
      {kOffsetColumns, 2},   {kOffsetVariableColumns, 2},  {kOffsetLogicalIndexes, 4}, {kOffsetRealIndexes, 4},
      {kOffsetOwnedMap, 4},  {kOffsetFreeMap, 4},          {kOffsetTableType, 1}};
  const std::size_t at = PageOfKind(PageKind::Definition) * kPageSize;
  if (Below(2) == 0) return PutLie(at + kSizeDefinitionHead + Below(1200), std::size_t{1} << Below(3));
  const auto [offset, size] = kFields[Below(std::size(kFields))];
  PutLie(at + offset, size);
}
void Planter::LieInIndexHead() {
  static constexpr std::pair<std::size_t, std::size_t> kFields[] = {
      {0, 1},           {kOffsetFreeBytes, 2}, {kOffsetPrefixLength, 2},
      {kOffsetLevel, 1}, {kOffsetEntryMask, 4}, {kOffsetTail, 4}};
  const auto [offset, size] = kFields[Below(std::size(kFields))];
  PutLie(PageOfKind(PageKind::Index) * kPageSize + offset, size);
}
void Planter::LieInMap() {
  const RowPointer map = anatomy_.maps[Below(anatomy_.maps.size())].place;
  PutLie(RowAt(map.page, map.row) + Below(12), Below(2) == 0 ? 1 : 4);
}

// A chain whose row points at itself, or at another one.
void Planter::LoopValue() {
  const RowPointer from = AnyValueRow(), to = Below(2) == 0 ? from : AnyValueRow();
  Tell("value row", from.page, +from.row, "leads to", to.page, +to.row);
  Put32(plain_, std::min(RowAt(from.page, from.row), plain_.size() - 4), to.Packed());
}
void Planter::LoopDefinition() {
  const PageNumber page = PageOfKind(PageKind::Definition);
  const PageNumber to = Below(2) == 0 ? page : PageOfKind(PageKind::Definition);
  Tell("definition", page, "goes on at", to);
  Put32(PageOf(plain_, page), kOffsetNextDefinitionPage, to);
  if (Below(2) == 0) PutLie(page * kPageSize + kOffsetDefinitionLength, 4);
}
void Planter::LoopLeaves() {
  const PageNumber page = PageOfKind(PageKind::Index);
  const PageNumber to = Below(2) == 0 ? page : PageOfKind(PageKind::Index);
  Tell("index page", page, "is beside", to);
  Put32(PageOf(plain_, page), Below(2) == 0 ? kOffsetNextLeaf : kOffsetPreviousLeaf, to);
}
// A leaf that calls itself a node, or a child that is its own parent.
void Planter::LoopTree() {
  const PageNumber page = PageOfKind(PageKind::Index);
  const PageNumber to = Below(2) == 0 ? page : PageOfKind(PageKind::Index);
  Tell("index page", page, "is above", to);
  const std::span<std::byte> bytes = PageOf(plain_, page);
  if (Below(2) == 0) Put8(bytes, 0, kPageIndexNode);
  if (Below(2) == 0) Put32(bytes, kOffsetTail, to);
  const std::size_t used = kSizeEntries - std::min<std::size_t>(Get16(bytes, kOffsetFreeBytes), kSizeEntries);
  if (used >= sizeof(PageNumber)) PutBig32(bytes, kOffsetEntries + used - sizeof(PageNumber), to);
}
void Planter::LoopMap() {
  const RowPointer map = anatomy_.maps[Below(anatomy_.maps.size())].place;
  const std::size_t at = RowAt(map.page, map.row);
  const PageNumber to = Below(2) == 0 ? map.page : PageOfKind(PageKind::MapBits);
  if (at + kSizeMapRow > plain_.size()) return;
  Tell("map", map.page, +map.row, "refers to", to);
  Put8(plain_, at, kMapReference);
  for (std::size_t i = 0; i < kMapReferences; ++i) Put32(plain_, at + kOffsetMapPages + 4 * i, to);
}

std::string Planter::Plant() {
  static constexpr void (Planter::*kWays[])() = {
      &Planter::ZeroPage,      &Planter::FillWithNoise, &Planter::SwapPages,       &Planter::CopyPage,
      &Planter::CutAtPage,     &Planter::CutInside,     &Planter::FlipRun,         &Planter::FlipBits,
      &Planter::FlipBitInHead, &Planter::LieInRowTable, &Planter::LieInRow,        &Planter::LieOfOwner,
      &Planter::LieInDefinition, &Planter::LieInIndexHead, &Planter::LieInMap,     &Planter::LoopValue,
      &Planter::LoopDefinition, &Planter::LoopLeaves,   &Planter::LoopTree,        &Planter::LoopMap};
  (this->*kWays[Below(std::size(kWays))])();
  return told_.str();
}

}  // namespace

std::string PlantDamage(const Subject& subject, FileBytes& plain, Round& round) {
  return Planter(subject, plain, round).Plant();
}

}  // namespace zimbrat::tests

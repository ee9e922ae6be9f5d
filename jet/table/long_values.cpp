#include "jet/table/long_values.h"

#include <algorithm>
#include <optional>

#include "jet/file/data_page.h"
#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kSizeNextPointer = 4;
constexpr std::size_t kMaxPiece = kMaxLongValueRow - kSizeNextPointer;
// A page with less room than this is not worth another look.
constexpr std::size_t kWorthwhileRoom = 128;
constexpr int kPagesTried = 4;
// A page that failed a value and has less than this is given up: else the first few would always be
// tried in vain, and each value would take a page of its own.
constexpr std::size_t kLeastRoomKept = kPageSize / 2;

enum class Place { Inline, SingleRow, Chain };

struct Descriptor {
  std::size_t length = 0;
  Place place = Place::Inline;
  RowPointer first;
};

Descriptor DecodeDescriptor(ConstBytes bytes) {
  if (bytes.size() < kSizeLongValueDescriptor) RaiseDamaged(u"opis długiej wartości jest za krótki");
  const std::uint32_t word = Get32(bytes, 0);
  Descriptor descriptor;
  descriptor.length = word & kLongValueLengthMask;
  descriptor.first = RowPointer::FromPacked(Get32(bytes, 4));
  if ((word & kLongValueInline) == 0) {
    descriptor.place = (word & kLongValueSingle) != 0 ? Place::SingleRow : Place::Chain;
  }
  return descriptor;
}

std::vector<std::byte> EncodeDescriptor(std::size_t length, std::uint32_t kind, RowPointer first) {
  std::vector<std::byte> bytes(kSizeLongValueDescriptor);
  Put32(bytes, 0, static_cast<std::uint32_t>(length) | kind);
  Put32(bytes, 4, first.Packed());
  return bytes;
}

PageRef GetLongValuePage(Pager& pager, PageNumber number) {
  PageRef page = pager.Get(number);
  RequireDataPage(page.Read(), number, kOwnerLongValues);
  return page;
}

// A page of the column with room for a row of `size` bytes, new when none of the first few has it.
PageRef PageWithRoom(const Storage& storage, const LongValueMaps& maps, std::size_t size) {
  UsageMap free(storage.pager, storage.allocator, maps.free);
  std::optional<PageNumber> number = free.Next(0);
  for (int tried = 0; number && tried < kPagesTried; ++tried, number = free.Next(*number + 1)) {
    PageRef page = GetLongValuePage(storage.pager, *number);
    if (HasRoomForRow(page.Read(), size)) return page;
    const bool full = RowSlots(page.Read()) >= kMaxRowSlots;
    if (full || FreeBytesOnPage(page.Read()) < kLeastRoomKept) free.Remove(*number);
  }
  const PageNumber taken = storage.allocator.Take();
  PageRef page = storage.pager.GetZeroed(taken);
  InitDataPage(page.Change(), kOwnerLongValues);
  UsageMap(storage.pager, storage.allocator, maps.owned).Add(taken);
  free.Add(taken);
  return page;
}

RowPointer StoreRow(const Storage& storage, const LongValueMaps& maps, ConstBytes head, ConstBytes body) {
  PageRef page = PageWithRoom(storage, maps, head.size() + body.size());
  const Bytes bytes = page.Change();
  const std::uint8_t slot = AppendRow(bytes, head.size() + body.size());
  const Bytes row = RowBytes(bytes, slot);
  std::copy(head.begin(), head.end(), row.begin());
  std::copy(body.begin(), body.end(), row.begin() + static_cast<std::ptrdiff_t>(head.size()));
  if (FreeBytesOnPage(bytes) < kWorthwhileRoom) {
    UsageMap(storage.pager, storage.allocator, maps.free).Remove(page.Number());
  }
  return {page.Number(), slot};
}

RowPointer StoreChain(const Storage& storage, const LongValueMaps& maps, ConstBytes value) {
  RowPointer next;
  // From the last piece to the first, because each names the one behind it.
  std::size_t from = (value.size() - 1) / kMaxPiece * kMaxPiece;
  while (true) {
    std::array<std::byte, kSizeNextPointer> head{};
    Put32(head, 0, next.Packed());
    next = StoreRow(storage, maps, head, value.subspan(from, std::min(kMaxPiece, value.size() - from)));
    if (from == 0) return next;
    from -= kMaxPiece;
  }
}

void FreeRow(const Storage& storage, const LongValueMaps& maps, RowPointer place) {
  PageRef page = GetLongValuePage(storage.pager, place.page);
  ExtentOfRow(page.Read(), place.row);
  DeleteRow(page.Change(), place.row);
  UsageMap free(storage.pager, storage.allocator, maps.free);
  if (!IsEmptyOfRows(page.Read())) {
    if (FreeBytesOnPage(page.Read()) >= kWorthwhileRoom) free.Add(place.page);
    return;
  }
  page = PageRef();
  free.Remove(place.page);
  UsageMap(storage.pager, storage.allocator, maps.owned).Remove(place.page);
  storage.allocator.Free(place.page);
}

// Visits the rows of a chain; stops after more rows than the file has room for.
template <class Visit>
void WalkChain(const Storage& storage, RowPointer place, std::size_t length, Visit visit) {
  const std::size_t most = std::size_t{storage.pager.PageCount()} * kMaxRowSlots;
  std::size_t rest = length;
  for (std::size_t steps = 0; !place.IsNull() && rest > 0; ++steps) {
    if (steps > most) RaiseDamagedPage(place.page, u"łańcuch długiej wartości nie ma końca");
    RowPointer next;
    std::size_t size = 0;
    {
      const PageRef page = GetLongValuePage(storage.pager, place.page);
      const ConstBytes row = RowBytes(page.Read(), place.row);
      if (row.size() <= kSizeNextPointer || RowFlags(page.Read(), place.row) == kRowDeleted) {
        RaiseDamagedPage(place.page, u"łańcuch długiej wartości jest przerwany");
      }
      next = RowPointer::FromPacked(Get32(row, 0));
      size = std::min(rest, row.size() - kSizeNextPointer);
      visit(place, row.subspan(kSizeNextPointer, size));
    }
    rest -= size;
    place = next;
  }
  if (rest > 0) RaiseDamaged(u"długa wartość jest krótsza, niż mówi jej opis");
}

}  // namespace

std::vector<std::byte> LoadLongValue(const Storage& storage, ConstBytes bytes) {
  const Descriptor descriptor = DecodeDescriptor(bytes);
  if (descriptor.length > std::size_t{storage.pager.PageCount()} * kPageSize) {
    RaiseDamaged(u"długość długiej wartości jest niemożliwa");
  }
  if (descriptor.place == Place::Inline) {
    const ConstBytes value = bytes.subspan(kSizeLongValueDescriptor);
    const auto size = static_cast<std::ptrdiff_t>(std::min(value.size(), descriptor.length));
    return {value.begin(), value.begin() + size};
  }
  if (descriptor.place == Place::SingleRow) {
    const PageRef page = GetLongValuePage(storage.pager, descriptor.first.page);
    const ConstBytes row = RowBytes(page.Read(), descriptor.first.row);
    const auto size = static_cast<std::ptrdiff_t>(std::min(row.size(), descriptor.length));
    return {row.begin(), row.begin() + size};
  }
  std::vector<std::byte> value;
  WalkChain(storage, descriptor.first, descriptor.length, [&](RowPointer, ConstBytes piece) {
    value.insert(value.end(), piece.begin(), piece.end());
  });
  return value;
}

std::vector<std::byte> StoreLongValue(const Storage& storage, const LongValueMaps& maps, ConstBytes value,
                                      std::size_t maxInline) {
  if (value.size() > kLongValueLengthMask) Raise(platform::kErrRecordTooLarge);
  if (value.size() <= maxInline || value.empty()) {
    std::vector<std::byte> bytes = EncodeDescriptor(value.size(), kLongValueInline, {});
    bytes.insert(bytes.end(), value.begin(), value.end());
    return bytes;
  }
  if (value.size() <= kMaxLongValueRow) {
    return EncodeDescriptor(value.size(), kLongValueSingle, StoreRow(storage, maps, {}, value));
  }
  return EncodeDescriptor(value.size(), 0, StoreChain(storage, maps, value));
}

void FreeLongValue(const Storage& storage, const LongValueMaps& maps, ConstBytes bytes) {
  const Descriptor descriptor = DecodeDescriptor(bytes);
  if (descriptor.place == Place::Inline || descriptor.length == 0) return;
  std::vector<RowPointer> rows;
  if (descriptor.place == Place::SingleRow) {
    rows.push_back(descriptor.first);
  } else {
    WalkChain(storage, descriptor.first, descriptor.length,
              [&](RowPointer place, ConstBytes) { rows.push_back(place); });
  }
  for (const RowPointer place : rows) FreeRow(storage, maps, place);
}

}  // namespace zimbrat::jet

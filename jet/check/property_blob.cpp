#include "property_blob.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace zimbrat::jet::check {

namespace {

constexpr std::uint32_t kMark = 0x0032524D;  // "MR2", NUL
constexpr std::uint16_t kNames = 0x80, kOfObject = 0, kOfColumn = 1;
constexpr std::size_t kSizeMark = 4, kSizeChunkHead = 6, kSizeOwnerBlock = 4, kSizeValueHead = 8;

// Nothing when there is less.
std::optional<ConstBytes> Take(ConstBytes& rest, std::size_t size) {
  if (rest.size() < size) return std::nullopt;
  const ConstBytes part = rest.first(size);
  rest = rest.subspan(size);
  return part;
}

std::optional<std::size_t> CountNames(ConstBytes body) {
  std::size_t count = 0;
  for (; !body.empty(); ++count) {
    const auto size = Take(body, 2);
    if (!size || !Take(body, Get16(*size, 0))) return std::nullopt;
  }
  return count;
}

bool AreValuesReadable(ConstBytes body, std::size_t names) {
  if (body.size() < kSizeOwnerBlock) return false;
  const std::size_t block = Get32(body, 0);
  const auto owner = Take(body, block);
  if (!owner || block < kSizeOwnerBlock) return false;
  const bool hasName = block >= kSizeOwnerBlock + 2;
  if (hasName && Get16(*owner, kSizeOwnerBlock) > block - kSizeOwnerBlock - 2) return false;
  while (!body.empty()) {
    if (body.size() < kSizeValueHead) return false;
    const auto value = Take(body, std::max<std::size_t>(Get16(body, 0), kSizeValueHead));
    if (!value || Get16(*value, 4) >= names || Get16(*value, 6) > value->size() - kSizeValueHead) return false;
  }
  return true;
}

}  // namespace

bool IsReadablePropertyBlob(ConstBytes blob) {
  if (blob.empty()) return true;
  const auto mark = Take(blob, kSizeMark);
  if (!mark || Get32(*mark, 0) != kMark) return false;
  std::size_t names = 0;
  while (!blob.empty()) {
    if (blob.size() < kSizeChunkHead) return false;
    const auto chunk = Take(blob, std::max<std::size_t>(Get32(blob, 0), kSizeChunkHead));
    if (!chunk) return false;
    const std::uint16_t kind = Get16(*chunk, 4);
    const ConstBytes body = chunk->subspan(kSizeChunkHead);
    if (kind == kNames) {
      const std::optional<std::size_t> count = CountNames(body);
      if (!count) return false;
      names = *count;
    } else if ((kind != kOfObject && kind != kOfColumn) || !AreValuesReadable(body, names)) {
      return false;
    }
  }
  return true;
}

}  // namespace zimbrat::jet::check

#include "jet/index/key.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "jet/file/errors.h"
#include "jet/index/collation.h"

namespace zimbrat::jet {

namespace {

using Key = std::vector<std::byte>;

constexpr std::byte kValueAscending{0x7F};
constexpr std::byte kValueDescending{0x80};
constexpr std::byte kNullAscending{0x00};
constexpr std::byte kNullDescending{0xFF};

// Binary values go in groups of eight bytes; behind each stands 9 when another follows, else how
// many of its bytes are real.
constexpr std::size_t kGroupSize = 8;
constexpr std::byte kMoreGroups{9};

constexpr std::size_t kSizeDecimalKey = 17;

std::byte NullFlag(bool ascending) {
  return ascending ? kNullAscending : kNullDescending;
}
std::byte ValueFlag(bool ascending) {
  return ascending ? kValueAscending : kValueDescending;
}

bool IsDecimal(std::int16_t type) {
  return type == kColumnTypeDecimal || type == dao::dbDecimal;
}

// Inverts what was appended from `start` on when the column descends.
void Direct(Key& key, std::size_t start, bool ascending) {
  if (ascending) return;
  for (std::size_t i = start; i < key.size(); ++i) key[i] = ~key[i];
}

template <class T>
void AppendBig(Key& key, T bits) {
  for (std::size_t i = sizeof(T); i-- > 0;) key.push_back(static_cast<std::byte>(bits >> (8 * i)));
}

template <class T>
void AppendSigned(Key& key, T value) {
  using Bits = std::make_unsigned_t<T>;
  constexpr auto kTop = static_cast<Bits>(Bits{1} << (std::numeric_limits<Bits>::digits - 1));
  AppendBig(key, static_cast<Bits>(static_cast<Bits>(value) ^ kTop));
}

template <class T>
void AppendFloat(Key& key, T value, NegativeZero zero) {
  using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
  constexpr Bits kSign = Bits{1} << (8 * sizeof(T) - 1);
  if (value == T{0} && zero == NegativeZero::AsZero) value = T{0};
  const auto bits = std::bit_cast<Bits>(value);
  AppendBig(key, static_cast<Bits>(bits & kSign ? ~bits : bits | kSign));
}

template <class T>
const T& Get(const dao::Value& value) {
  if (const T* found = std::get_if<T>(&value)) return *found;
  Raise(platform::kErrDataConversion);
}

// Any whole number that fits will do: a foreign column may be narrower than its key.
template <class T>
T GetInteger(const dao::Value& value) {
  return std::visit(
      [](const auto& v) -> T {
        using V = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<V, std::uint8_t> || std::is_same_v<V, std::int16_t> ||
                      std::is_same_v<V, std::int32_t>) {
          if (std::in_range<T>(v)) return static_cast<T>(v);
        }
        Raise(platform::kErrDataConversion);
      },
      value);
}

void AppendGroups(Key& key, ConstBytes bytes, bool ascending) {
  for (std::size_t at = 0; at < bytes.size(); at += kGroupSize) {
    const std::size_t start = key.size();
    const std::size_t count = std::min(kGroupSize, bytes.size() - at);
    const ConstBytes group = bytes.subspan(at, count);
    key.insert(key.end(), group.begin(), group.end());
    key.resize(start + kGroupSize);
    const bool more = at + count < bytes.size();
    if (!more) key.push_back(static_cast<std::byte>(count));
    Direct(key, start, ascending);
    if (more) key.push_back(kMoreGroups);  // never inverted
  }
}

// The bytes in the order in which a GUID is written.
void AppendGuid(Key& key, const dao::Guid& guid, bool ascending) {
  constexpr std::array<std::size_t, 16> kWritten = {3, 2, 1,  0,  5,  4,  7,  6,
                                                    8, 9, 10, 11, 12, 13, 14, 15};
  std::array<std::byte, 16> bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = guid.bytes[kWritten[i]];
  AppendGroups(key, bytes, ascending);
}

// Kept: the sign byte of a positive number does not follow the direction, so descending keys have
// the negative numbers first. Files of this format are made that way, and entries are found by it.
void AppendDecimal(Key& key, const dao::Decimal& value, bool ascending, NegativeZero zero) {
  const bool isZero = std::all_of(value.magnitude.begin(), value.magnitude.end(),
                                  [](std::uint32_t word) { return word == 0; });
  const bool negative = value.negative && !(isZero && zero == NegativeZero::AsZero);
  key.push_back(negative ? std::byte{0} : std::byte{0xFF});
  const std::size_t start = key.size();
  for (const std::uint32_t word : value.magnitude) AppendBig(key, word);
  Direct(key, start, ascending != negative);
}

void AppendNumber(Key& key, std::int16_t type, const dao::Value& value, NegativeZero zero) {
  switch (type) {
    case dao::dbBoolean:
      return key.push_back(Get<bool>(value) ? std::byte{0} : std::byte{0xFF});
    case dao::dbByte:
      return AppendBig(key, GetInteger<std::uint8_t>(value));
    case dao::dbInteger:
      return AppendSigned(key, GetInteger<std::int16_t>(value));
    case dao::dbLong:
      return AppendSigned(key, GetInteger<std::int32_t>(value));
    case dao::dbCurrency:
      return AppendSigned(key, Get<dao::Currency>(value).scaled);
    case dao::dbSingle:
      return AppendFloat(key, Get<float>(value), zero);
    case dao::dbDouble:
      return AppendFloat(key, Get<double>(value), zero);
    case dao::dbDate:
      return AppendFloat(key, Get<dao::Date>(value).days, zero);
    default:
      Raise(platform::kErrCannotIndexField);
  }
}

// Length of a fixed-size value, 0 for types whose values delimit themselves.
std::size_t FixedLength(std::int16_t type) {
  switch (type) {
    case dao::dbBoolean:
    case dao::dbByte:
      return 1;
    case dao::dbInteger:
      return 2;
    case dao::dbLong:
    case dao::dbSingle:
      return 4;
    case dao::dbCurrency:
    case dao::dbDouble:
    case dao::dbDate:
      return 8;
    default:
      return IsDecimal(type) ? kSizeDecimalKey : 0;
  }
}

std::optional<std::size_t> TextLength(ConstBytes bytes, bool ascending) {
  const auto end =
      std::find(bytes.begin(), bytes.end(), ascending ? std::byte{0} : std::byte{0xFF});
  if (end == bytes.end()) return std::nullopt;
  const auto length = static_cast<std::size_t>(end - bytes.begin()) + 1;
  if (ascending) return length;
  if (length == bytes.size() || bytes[length] != std::byte{0}) return std::nullopt;
  return length + 1;
}

std::optional<std::size_t> GroupsLength(ConstBytes bytes, bool ascending) {
  for (std::size_t at = kGroupSize; at < bytes.size(); at += kGroupSize + 1) {
    if (bytes[at] == kMoreGroups) continue;
    const auto count = std::to_integer<std::size_t>(ascending ? bytes[at] : ~bytes[at]);
    if (count == 0 || count > kGroupSize) return std::nullopt;
    return at + 1;
  }
  return std::nullopt;
}

// Length of the value that `bytes` begin with.
std::optional<std::size_t> ValueLength(const KeyColumn& column, ConstBytes bytes) {
  if (const std::size_t fixed = FixedLength(column.type)) {
    if (bytes.size() < fixed) return std::nullopt;
    const bool isTruth = bytes[0] == std::byte{0} || bytes[0] == std::byte{0xFF};
    if (column.type == dao::dbBoolean && !isTruth) return std::nullopt;
    return fixed;
  }
  if (column.type == dao::dbText || column.type == dao::dbMemo) {
    return TextLength(bytes, column.ascending);
  }
  return GroupsLength(bytes, column.ascending);
}

// Columns from `at` on fill the key from `offset` to its end. An empty binary value is its flag
// alone, which is seen only by trying.
bool SplitFrom(std::span<const KeyColumn> columns, ConstBytes key, std::size_t at,
               std::size_t offset, KeyParts& parts) {
  if (at == columns.size()) return offset == key.size();
  if (offset >= key.size()) return false;
  const KeyColumn& column = columns[at];
  KeyParts::Part& part = parts.parts[at];
  part = {offset, 1, key[offset] == NullFlag(column.ascending)};
  if (part.isNull) {
    return column.type != dao::dbBoolean && SplitFrom(columns, key, at + 1, offset + 1, parts);
  }
  if (key[offset] != ValueFlag(column.ascending)) return false;
  if (const auto length = ValueLength(column, key.subspan(offset + 1))) {
    part.size = 1 + *length;
    if (SplitFrom(columns, key, at + 1, offset + part.size, parts)) return true;
  }
  part.size = 1;
  return column.type == dao::dbBinary && SplitFrom(columns, key, at + 1, offset + 1, parts);
}

}  // namespace

void AppendKeyColumn(const KeyColumn& column, const dao::Value& value, Key& key,
                     NegativeZero zero) {
  if (dao::IsNull(value)) return key.push_back(NullFlag(column.ascending));
  key.push_back(ValueFlag(column.ascending));
  const std::size_t start = key.size();
  if (column.type == dao::dbText || column.type == dao::dbMemo) {
    AppendTextKey(Get<std::u16string>(value), column.ascending, key);
  } else if (column.type == dao::dbBinary) {
    AppendGroups(key, Get<dao::Binary>(value), column.ascending);
  } else if (column.type == dao::dbGUID) {
    AppendGuid(key, Get<dao::Guid>(value), column.ascending);
  } else if (IsDecimal(column.type)) {
    AppendDecimal(key, Get<dao::Decimal>(value), column.ascending, zero);
  } else {
    AppendNumber(key, column.type, value, zero);
    Direct(key, start, column.ascending);
  }
}

void EncodeKey(std::span<const KeyColumn> columns, std::span<const dao::Value> values, Key& key) {
  key.clear();
  const std::size_t count = std::min(columns.size(), values.size());
  for (std::size_t i = 0; i < count; ++i) AppendKeyColumn(columns[i], values[i], key);
  if (key.size() > kMaxKeyLength) Raise(platform::kErrRecordTooLarge);
}

Key EncodeKey(std::span<const KeyColumn> columns, std::span<const dao::Value> values) {
  Key key;
  EncodeKey(columns, values, key);
  return key;
}

bool IsIndexable(std::int16_t type) {
  return FixedLength(type) != 0 || type == dao::dbText || type == dao::dbMemo ||
         type == dao::dbBinary || type == dao::dbGUID;
}

bool AreAllNull(std::span<const dao::Value> values) {
  return std::all_of(values.begin(), values.end(), dao::IsNull);
}

bool IsAnyNull(std::span<const dao::Value> values) {
  return std::any_of(values.begin(), values.end(), dao::IsNull);
}

bool IsAllNullKey(std::span<const KeyColumn> columns, ConstBytes key) {
  return std::equal(
      columns.begin(), columns.end(), key.begin(), key.end(),
      [](const KeyColumn& column, std::byte flag) { return flag == NullFlag(column.ascending); });
}

std::optional<KeyParts> SplitKey(std::span<const KeyColumn> columns, ConstBytes key) {
  KeyParts parts;
  parts.count = columns.size();
  if (columns.size() > kMaxIndexColumns || !SplitFrom(columns, key, 0, 0, parts))
    return std::nullopt;
  return parts;
}

}  // namespace zimbrat::jet

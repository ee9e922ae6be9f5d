#include "value_codec.h"

#include <cmath>
#include <cstring>
#include <type_traits>
#include <utility>

#include "jet/index/key.h"
#include "jet/table/convert.h"

namespace zimbrat::jet {

namespace {

template <class T>
void AppendPlain(const T& value, std::vector<std::byte>& bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  const std::size_t at = bytes.size();
  bytes.resize(at + sizeof(T));
  std::memcpy(bytes.data() + at, &value, sizeof(T));
}

template <class T>
T TakePlain(ConstBytes& bytes) {
  T value;
  std::memcpy(&value, bytes.data(), sizeof(T));
  bytes = bytes.subspan(sizeof(T));
  return value;
}

// Texts and binaries: their count, then their elements.
template <class T>
void AppendSequence(const T& sequence, std::vector<std::byte>& bytes) {
  AppendPlain(static_cast<std::uint32_t>(sequence.size()), bytes);
  const std::size_t at = bytes.size();
  const std::size_t size = sequence.size() * sizeof(typename T::value_type);
  bytes.resize(at + size);
  if (size != 0) std::memcpy(bytes.data() + at, sequence.data(), size);
}

template <class T>
T TakeSequence(ConstBytes& bytes) {
  T sequence(TakePlain<std::uint32_t>(bytes), typename T::value_type{});
  const std::size_t size = sequence.size() * sizeof(typename T::value_type);
  if (size != 0) std::memcpy(sequence.data(), bytes.data(), size);
  bytes = bytes.subspan(size);
  return sequence;
}

template <std::size_t I>
dao::Value TakeAlternative(ConstBytes& bytes) {
  using T = std::variant_alternative_t<I, dao::Value>;
  if constexpr (std::is_same_v<T, dao::Null>) {
    return T{};
  } else if constexpr (std::is_same_v<T, std::u16string> || std::is_same_v<T, dao::Binary>) {
    return TakeSequence<T>(bytes);
  } else {
    return TakePlain<T>(bytes);
  }
}

template <std::size_t... I>
dao::Value TakeByIndex(std::size_t index, ConstBytes& bytes, std::index_sequence<I...>) {
  dao::Value value;
  (void)((index == I ? (value = TakeAlternative<I>(bytes), true) : false) || ...);
  return value;
}

}  // namespace

void AppendValue(const dao::Value& value, std::vector<std::byte>& bytes) {
  bytes.push_back(static_cast<std::byte>(value.index()));
  std::visit(
      [&](const auto& v) {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, std::u16string> || std::is_same_v<T, dao::Binary>) {
          AppendSequence(v, bytes);
        } else if constexpr (!std::is_same_v<T, dao::Null>) {
          AppendPlain(v, bytes);
        }
      },
      value);
}

dao::Value TakeValue(ConstBytes& bytes) {
  const auto index = std::to_integer<std::size_t>(bytes[0]);
  bytes = bytes.subspan(1);
  return TakeByIndex(index, bytes, std::make_index_sequence<std::variant_size_v<dao::Value>>());
}

namespace {

// What the nearest Double leaves of an amount, in ten-thousandths: less than a Double's step, and 0 for what
// the other types hold.
std::int16_t RestOf(const dao::Value& value, double number) {
  const auto* amount = std::get_if<dao::Currency>(&value);
  if (!amount) return 0;
  const double scaled = std::round(number * 10000.0);
  if (std::abs(scaled) >= 9.2e18) return 0;
  return static_cast<std::int16_t>(amount->scaled - static_cast<std::int64_t>(scaled));
}

void AppendNumber(const dao::Value& value, std::vector<std::byte>& key) {
  const double number = FindDouble(value).value_or(0);
  AppendKeyColumn({dao::dbDouble, true}, number, key);
  const auto rest = static_cast<std::uint16_t>(RestOf(value, number) ^ 0x8000);
  key.push_back(static_cast<std::byte>(rest >> 8));
  key.push_back(static_cast<std::byte>(rest & 0xFF));
}

}  // namespace

KeyRank RankOf(const dao::Value& value) {
  if (dao::IsNull(value)) return KeyRank::Null;
  if (std::holds_alternative<std::u16string>(value)) return KeyRank::Text;
  if (std::holds_alternative<dao::Binary>(value)) return KeyRank::Binary;
  return std::holds_alternative<dao::Guid>(value) ? KeyRank::Guid : KeyRank::Number;
}

void AppendSortKey(const dao::Value& value, bool descending, std::vector<std::byte>& key) {
  const std::size_t start = key.size();
  const KeyRank rank = RankOf(value);
  key.push_back(static_cast<std::byte>(rank));
  switch (rank) {
    case KeyRank::Null: break;
    case KeyRank::Number: AppendNumber(value, key); break;
    case KeyRank::Text: AppendKeyColumn({dao::dbText, true}, value, key); break;
    case KeyRank::Binary: AppendKeyColumn({dao::dbBinary, true}, value, key); break;
    case KeyRank::Guid: AppendKeyColumn({dao::dbGUID, true}, value, key); break;
  }
  if (!descending) return;
  for (std::size_t i = start; i < key.size(); ++i) key[i] = ~key[i];
}

// FNV-1a.
std::uint32_t HashOf(ConstBytes bytes) {
  std::uint32_t hash = 2166136261u;
  for (const std::byte b : bytes) hash = (hash ^ std::to_integer<std::uint32_t>(b)) * 16777619u;
  return hash;
}

}  // namespace zimbrat::jet

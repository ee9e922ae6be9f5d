#include "value_codec.h"

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

void AppendSortKey(const dao::Value& value, bool descending, std::vector<std::byte>& key) {
  enum Rank : std::uint8_t { kNull, kNumber, kText, kBinary, kGuid };
  const std::size_t start = key.size();
  const auto append = [&](Rank rank, std::int16_t type, const dao::Value& v) {
    key.push_back(static_cast<std::byte>(rank));
    if (rank != kNull) AppendKeyColumn({type, true}, v, key);
  };
  if (dao::IsNull(value)) {
    append(kNull, 0, value);
  } else if (std::holds_alternative<std::u16string>(value)) {
    append(kText, dao::dbText, value);
  } else if (std::holds_alternative<dao::Binary>(value)) {
    append(kBinary, dao::dbBinary, value);
  } else if (std::holds_alternative<dao::Guid>(value)) {
    append(kGuid, dao::dbGUID, value);
  } else {
    append(kNumber, dao::dbDouble, FindDouble(value).value_or(0));
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

// Index keys: the values of a row's indexed columns as one byte string, so that trees compare bytes
// and need to know no types. For each column a flag byte (null or value, by direction), then the
// value in a form whose bytes order as the values do; descending values are inverted.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "platform/dao.h"

namespace zimbrat::jet {

struct KeyColumn {
  std::int16_t type = 0;  // DAO's number; Decimal also as the file has it (16)
  bool ascending = true;
};

// Keys above kMaxKeyLength are refused with error 3047. A value that is not of its column's type is
// error 3421, a type that has no keys 3287. `values` are as many as `columns`, or fewer for the
// beginning of a key. Negative zeros are taken for zero.
std::vector<std::byte> EncodeKey(std::span<const KeyColumn> columns,
                                 std::span<const dao::Value> values);

inline std::vector<std::byte> EncodeKey(std::initializer_list<KeyColumn> columns,
                                        std::initializer_list<dao::Value> values) {
  return EncodeKey(std::span(columns.begin(), columns.size()),
                   std::span(values.begin(), values.size()));
}

// The same into a buffer that is reused; `key` is replaced.
void EncodeKey(std::span<const KeyColumn> columns, std::span<const dao::Value> values,
               std::vector<std::byte>& key);

enum class NegativeZero { AsZero, AsItLies };
// One column, appended, whatever the length of the key becomes.
void AppendKeyColumn(const KeyColumn& column, const dao::Value& value, std::vector<std::byte>& key,
                     NegativeZero zero = NegativeZero::AsZero);

bool IsIndexable(std::int16_t type);
bool AreAllNull(std::span<const dao::Value> values);
bool IsAnyNull(std::span<const dao::Value> values);
// Of the encoded key; columns are as many as it was made of.
bool IsAllNullKey(std::span<const KeyColumn> columns, ConstBytes key);

struct KeyParts {
  struct Part {
    std::size_t offset = 0;  // of the flag byte
    std::size_t size = 0;
    bool isNull = false;
  };
  std::array<Part, kMaxIndexColumns> parts{};
  std::size_t count = 0;
};
// Where the columns lie within a key; nothing when the bytes are no key of these columns.
std::optional<KeyParts> SplitKey(std::span<const KeyColumn> columns, ConstBytes key);

}  // namespace zimbrat::jet

// Values as bytes: to be set aside and read back, and as keys whose bytes order as the values do.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/file/bytes.h"
#include "platform/dao.h"

namespace zimbrat::jet {

void AppendValue(const dao::Value& value, std::vector<std::byte>& bytes);
// Takes the first value off `bytes`, which AppendValue wrote.
dao::Value TakeValue(ConstBytes& bytes);

// The kinds of values, as keys order them.
enum class KeyRank : std::uint8_t { Null, Number, Text, Binary, Guid };
KeyRank RankOf(const dao::Value& value);
// Null first, then numbers of all types by their amounts (Decimals as far as a Double holds them), texts by the
// sort order (their first 255 characters), binaries, GUIDs. Of one kind, values that compare as equal have
// equal keys.
void AppendSortKey(const dao::Value& value, bool descending, std::vector<std::byte>& key);

std::uint32_t HashOf(ConstBytes bytes);

}  // namespace zimbrat::jet

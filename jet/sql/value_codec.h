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

// Null first, then numbers of all types by their amounts, texts by the sort order (their first 255 characters),
// binaries, GUIDs. Equal keys stand for values that compare as equal.
void AppendSortKey(const dao::Value& value, bool descending, std::vector<std::byte>& key);

std::uint32_t HashOf(ConstBytes bytes);

}  // namespace zimbrat::jet

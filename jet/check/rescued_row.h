// Rows of a table that may be damaged: what can be read of each.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "jet/file/bytes.h"

namespace zimbrat::jet::check {

// For each column of the layout its bytes as the file keeps them; of long values the whole value.
struct RescuedRow {
  std::vector<std::optional<std::vector<std::byte>>> fields;  // of a Boolean: present means true
  bool isWhole = true;  // else some value could not be read, and is null or cut
};

struct RowCounts {
  std::uint64_t saved = 0;  // those saved in part included
  std::uint64_t partial = 0;
  std::uint64_t lost = 0;  // as far as anything tells of them
};

using RescuedRowVisit = std::function<void(const RescuedRow&)>;

}  // namespace zimbrat::jet::check

// Long values (Memo, OLE): inline in the row, one row of a long-value page, or a chain of such
// rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "checking.h"
#include "layout.h"

namespace zimbrat::jet::check {

struct LongValue {
  std::vector<std::byte> start;  // at most as much as was wanted
  std::uint32_t length = 0;      // of the whole value
  std::u16string fault;          // empty: sound
};

// The whole value is walked; its rows are claimed for it.
LongValue CheckLongValue(Checking& check, const TableLayout& table, ConstBytes descriptor,
                         std::size_t wanted);

// Walks only as far as wanted, claims nothing.
LongValue PeekLongValue(Checking& check, ConstBytes descriptor, std::size_t wanted);

// The whole value, or as much of it as can be found; claims nothing. `budget`: bytes that may still
// be read for values of the file, which bounds the work on chains that cross.
LongValue RescueLongValue(Checking& check, ConstBytes descriptor, std::uint64_t& budget);

}  // namespace zimbrat::jet::check

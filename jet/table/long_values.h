// Long values (Memo, OLE): kept in the row up to 64 bytes, as one row on a page of long values up to
// 4076, as a chain of such rows beyond. The row holds a descriptor of 12 bytes:
//
//   offset  size  meaning
//   0       4     length in bytes; top bits: 0x80 inline, 0x40 one row, 0x00 chain
//   4       4     pointer to the (first) row
//   8       4     no meaning
#pragma once

#include <cstdint>
#include <vector>

#include "jet/file/storage.h"
#include "jet/table/row_codec.h"

namespace zimbrat::jet {

// Error 3049 for a descriptor or chain that leads nowhere.
std::vector<std::byte> LoadLongValue(const Storage& storage, ConstBytes descriptor);
// The descriptor (with the bytes, when inline) to be put into the row.
std::vector<std::byte> StoreLongValue(const Storage& storage, const LongValueMaps& maps, ConstBytes value,
                                      std::size_t maxInline = kMaxInlineLongValue);
// Gives back the rows and the pages that become empty.
void FreeLongValue(const Storage& storage, const LongValueMaps& maps, ConstBytes descriptor);

}  // namespace zimbrat::jet

// The mask of an index page: a bit for each place where an entry ends. Read in place by a search, shifted as a
// whole when entries come and go.
#pragma once

#include <cstddef>

#include "jet/file/bytes.h"

namespace zimbrat::jet {

// `mask` is the whole of it, 453 bytes.
// The first end above `position`; 0 when there is none.
std::size_t FindEndAbove(ConstBytes mask, std::size_t position);
// The last end that is not above `position`; 0 when there is none.
std::size_t FindEndUpTo(ConstBytes mask, std::size_t position);

void SetEnd(Bytes mask, std::size_t end);

// `removed` bytes from `offset` on have made place for `added` ones: ends within the removed ones are gone, those
// behind them move, and a new entry ends with the added bytes, if there are any.
void SpliceEnds(Bytes mask, std::size_t offset, std::size_t removed, std::size_t added);

}  // namespace zimbrat::jet

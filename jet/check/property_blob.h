// The properties of a table and its columns, one blob in the catalogue (column LvProp).
#pragma once

#include "jet/file/bytes.h"

namespace zimbrat::jet::check {

// Whether it can be taken apart to its end; nothing at all can.
bool IsReadablePropertyBlob(ConstBytes blob);

}  // namespace zimbrat::jet::check

// What everything above pages needs of an open file.
#pragma once

#include "jet/file/pager.h"

namespace zimbrat::jet {

struct Storage {
  Pager& pager;
  PageAllocator& allocator;
};

}  // namespace zimbrat::jet

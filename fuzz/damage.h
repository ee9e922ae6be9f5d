// Input as damage done to one of the base databases: a few bytes reach any place of a file of any size.
//
//   input := base, edit...
//   edit  := kind, page, offset (2 bytes, little-endian), rest
//     kind 0 to 11: so many bytes plus one are put there        rest: the bytes
//     kind 12: each bit that is set in the byte is flipped      rest: a byte
//     kind 13: the page becomes that of another page            rest: a page; offset unused
//     kind 14: the page is zeroed from the offset on
//     kind 15: the file ends there
#pragma once

#include "targets.h"
#include "tests/support/memory_files.h"

namespace zimbrat::fuzz {

// Numbers above what there is begin anew; an edit that the input cuts is left out.
tests::FileBytes DamagedDatabase(Input input);

}  // namespace zimbrat::fuzz

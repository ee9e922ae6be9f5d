// The bits of a sound database that tell of its structure: those that something which reads, writes or checks the
// file interprets, so that a changed one makes it another file. Values are left out (nothing in the format protects
// them), and these bytes, of which the format says nothing:
//
//   page 0         password, engine build, creation time and code page are values, of which any could be right; what
//                  lies behind the mark of the format counts commits
//   data pages     the rows, and in their heads bytes 8 to 11 of pages of long values: leftovers
//   row tables     offsets of deleted rows whose next one is deleted too; of long values that nothing refers to
//   index pages    what lies behind the entries; the prefix length beside a single entry, which has none; of a node's
//                  level the bits that make it 0, for some writers do not tell it
//   definitions    all but the head of each page; what of that a check must name is a matter of its own
//   pages of bits  bytes 2 and 3
//   maps           the first page of an empty one, in files of more than one window; of free pages those that nothing
//                  uses, free or not, with remains of something; of room the pages of long values, and those of rows
//                  that are more than half full
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "subjects.h"

namespace zimbrat::tests {

struct StructureByte {
  std::size_t at = 0;  // in the file
  std::uint8_t bits = 0xFF;
};

// By kind, as people call it.
using Structure = std::map<std::string, std::vector<StructureByte>>;

Structure StructureOf(const Subject& subject);

}  // namespace zimbrat::tests

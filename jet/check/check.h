// Verification of a whole database file: every page, map, definition, row, index entry and
// catalogue row. It shares with the engine the constants of the format, the decoding of page 0 and
// the encoding of keys, and nothing else, so that it does not believe what it should prove.
//
// Prepared for hostile files: memory is bounded (some 40 bytes for each page of the file), each
// page is walked a bounded number of times, and nothing in a file makes it crash or loop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace zimbrat::jet {

struct Fault {
  std::u16string place;
  std::u16string text;
  bool isError = true;  // else a warning: odd, but readers cope and nothing is lost
  bool isLoss = false;  // an error because of which pages, tables or rows cannot be read
};

// How many index keys were made anew from their rows, and how many of them byte for byte equal, by
// the column's type (as the file has it) and direction.
struct KeyCount {
  std::uint64_t keys = 0;
  std::uint64_t equal = 0;
};
using KeyCounts = std::map<std::pair<std::int16_t, bool>, KeyCount>;

struct CheckOptions {
  std::size_t maxFaults = 1000;  // errors; then the check ends with one that says so
  std::function<void()> pulse;   // called from time to time
  KeyCounts* keyCounts = nullptr;
  // Warn of pages in use, long values and maps that nothing refers to. Real files have some.
  bool reportUnused = false;
};

// Nothing: the file is sound. Throws the file layer's errors, and 3343 for what is no Jet 4 file.
// No password is asked for.
std::vector<Fault> CheckFile(platform::Files& files, std::u16string_view path,
                             const CheckOptions& options = {});
// Of a file that is open already; `path` goes into texts.
std::vector<Fault> CheckFile(platform::File& file, std::u16string_view path,
                             const CheckOptions& options = {});

bool HasErrors(const std::vector<Fault>& faults);

}  // namespace zimbrat::jet

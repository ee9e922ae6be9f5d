// What a command came to, and its two shapes: lines for people, one JSON object for programs.
#pragma once

#include "platform/console.h"

#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::console {

inline constexpr int kStatusDone = 0;
inline constexpr int kStatusFailed = 1;
inline constexpr int kStatusUsage = 2;

// One structure file.
struct ProgramRow {
  std::u16string name;
  std::u16string symbol;
  std::u16string version;
  std::u16string file;
  std::u16string state;  // the item's text in a comparison with a database
};

struct DatabaseRow {
  std::u16string name;
  std::u16string file;
};

struct Outcome {
  int status = kStatusDone;
  std::u16string text;
  std::u16string database;
  std::vector<ProgramRow> programs;
  std::vector<DatabaseRow> databases;
};

Outcome Failed(std::u16string text);
Outcome WrongUsage(std::u16string text);

// The object with all its keys, whatever the outcome, and a line end.
std::u16string JsonText(const Outcome& outcome, std::u16string_view command);

// Success on standard output, failure on standard error; with JSON the object on standard output
// besides.
void PrintOutcome(platform::Console& console, const Outcome& outcome, std::u16string_view command,
                  bool isJson);

}  // namespace zimbrat::console

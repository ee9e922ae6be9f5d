// One run of each task, on a small database of two programs with a few rows: what the
// tests of adversity are parameterised over. Files lie in four folders:
//
//   struktury/  a.stb, f.stb (newer versions of the database's programs), c.stb (a further program)
//   baza/       Firma.mdb, which every task changes or replaces
//   wzorzec/    Wzor.mdb, the template; a damaged database, for the task that repairs
//   temp/       the working folder
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/run_result.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {

struct Answer {
  std::u16string_view query;
  std::string_view rows;
};

struct Task {
  const char* name;
  app::RunResult (*run)(DatabaseBench& bench);
  // What the finished database says.
  std::vector<Answer> effect;
  // What it says when an error ended the comparison after the first program: the automatic run goes on with what was
  // found until then.
  std::vector<Answer> partOfEffect = {};
  // A failed run may leave a sound file that differs from the old one: what was written of a new
  // database stays, and a check repairs before it upgrades. It still says this.
  bool mayLeaveAnother = false;
  std::vector<Answer> kept = {};
  // A second run has nothing to do, and says so.
  bool isOnce = false;
  // Room is asked for before anything is written.
  bool asksForRoom = false;
  bool usesCopy = false;
  // The target is a damaged database to begin with.
  bool isDamaged = false;

  const std::string& OldContent() const;
};

const std::vector<Task>& AllTasks();
// Those that tell why they failed and write nothing but databases: not the automatic run, which leaves a
// word in the registry.
std::vector<Task> TellingTasks();
// For the name of a parameterised test.
std::string NameOfTask(const Task& task);
std::ostream& operator<<(std::ostream& out, const Task& task);

inline constexpr std::u16string_view kTarget = u"baza/Firma.mdb";
inline constexpr std::u16string_view kDamaged = u"wzorzec/Uszkodzona.mdb";
inline constexpr std::u16string_view kTemplate = u"wzorzec/Wzor.mdb";
inline constexpr std::u16string_view kCopy = u"temp/Robocza Firma.mdb";

// The files before a run: name and bytes.
using Seed = std::vector<std::pair<std::u16string, std::string>>;
const Seed& SeedFiles();
const std::string& SeedFile(std::u16string_view name);
inline constexpr std::u16string_view kFolders[] = {u"struktury", u"baza", u"wzorzec", u"temp"};

}  // namespace zimbrat::tests

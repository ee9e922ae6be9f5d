// The structure catalogue and the routines that the whole suite shares: structure files and their
// headers, the comparison with a database, the section reader, paths, opening and identifying a
// database, the summary and result texts.
#pragma once

#include "suite/program_state.h"
#include "platform/controls.h"
#include "platform/shell.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::suite {

inline constexpr std::u16string_view kCrLf = u"\r\n";

// One line of a section. Neither part is trimmed.
struct SectionEntry {
  std::u16string key;
  std::u16string value;
};

// The lines of one section in file order, repeats included; none when it is missing. Read through a
// buffer of 2048 characters: a longer section is cut, its last line anywhere. A line without `=`,
// or with it in front, is a key with an empty value.
std::vector<SectionEntry> ReadSection(platform::Profile& profile, std::u16string_view section,
                                      std::u16string_view path);

// A text of the file's header, read into `bufferSize` characters: at most one fewer come back.
std::u16string ReadHeaderText(platform::Profile& profile, std::string_view key,
                              std::size_t bufferSize, std::u16string_view path);

inline constexpr std::size_t kHeaderBuffer = 100;
inline constexpr std::size_t kSymbolBuffer = 10;

// The version as the single number that all comparisons use: 1.10 equals 2.0.
inline constexpr int kMajorWeight = 10;

// What the catalogue reads of a structure file.
struct ProgramHeader {
  std::u16string program;
  std::u16string symbol;
  std::u16string verMajor;
  std::u16string verMinor;
};

ProgramHeader ReadProgramHeader(platform::Profile& profile, std::u16string_view path);

// The structure folder, or the program's own where that one is empty or holds no structure file.
std::u16string StructureFolder(ProgramState& state);
// Paths of the structure files there, in the folder's order.
std::vector<std::u16string> StructureFiles(ProgramState& state);

// One item a program: "Kadry v.2.3", its value the file's path.
void LoadProgramList(ProgramState& state, platform::OrvListCheck& list);

// What a comparison came to: true when at least one structure file was looked up.
struct Comparison {
  bool lookedUp = false;
  // The error that ended it, and the structure file at which it did, if any.
  std::optional<platform::RunTimeError> error;
  std::u16string stoppedAt;

  explicit operator bool() const { return lookedUp; }
};

// Fills the list with the programs of those structure files and the state of their structures in
// the database. An error ends it quietly with what was reached so far.
Comparison CompareWithDatabase(ProgramState& state, std::u16string_view databasePath,
                         const std::vector<std::u16string>& structureFiles,
                         platform::OrvListCheck& list, bool leaveOutAbsent);

// The checked items that are not up to date: paths and names, each followed by ";". False when
// none.
bool CollectSelection(platform::OrvListCheck& list, std::u16string& values, std::u16string& names);

// At the last separator; without one the folder is empty.
void SplitPath(std::u16string_view path, std::u16string& folder, std::u16string& name);

// The databases of a folder: names without extension, values the paths.
void ListDatabases(ProgramState& state, platform::OrvList& list, std::u16string_view folder);

// Lets the user point to a database's file, in the given folder first, else in the program's own, which
// is the current folder afterwards. Empty when nothing was chosen.
std::u16string ChooseDatabaseFile(ProgramState& state, platform::Shell& shell,
                                  std::u16string_view folder);

// Opens the database and makes sure that it is one of the suite's; tells the user why not. A
// rejected password is asked for once and kept.
bool OpenAndIdentify(ProgramState& state, std::u16string_view path, platform::Secret& password);
// With the program-wide password.
bool OpenAndIdentify(ProgramState& state, std::u16string_view path);

// What the user chose, for the texts.
struct Choices {
  std::u16string name;  // of the new database, without extension
  std::u16string folder;
  std::u16string database;  // path of the existing one
  std::u16string programs;  // names text
  std::u16string firstPeriod;
  std::u16string lastPeriod;
};

std::u16string SummaryText(Task task, const Choices& choices);
std::u16string ResultText(Task task, const Choices& choices);

}  // namespace zimbrat::suite

// The tasks on an existing database, step by step as the wizard's pages go, without controls but
// the list of programs. Each step tells the user what is wrong and returns false.
//
//   PrepareDatabase   leaving the page of the database: repaired (check task), opened, identified,
//                     compared; OpenTemplate for a template
//   TakeSelection     leaving the page of the programs
//   RunExtension      the run itself; RunFromTemplate for a template
#pragma once

#include "app/run_result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::app {

// The engine's repair of the file; tells the user what could not be saved. The error context tells
// why it failed.
bool NaprawBaze(suite::ProgramState& state, std::u16string_view path);

struct Prepared {
  bool isReady = false;
  // Where it was stopped the list is not complete: a structure file that does not go into a query,
  // or another program that has taken the database since it was identified.
  suite::Comparison comparison;

  explicit operator bool() const { return isReady; }
};

// Fills the list: the programs of those structure files and the state of their structures in the
// database.
Prepared PrepareDatabase(suite::ProgramState& state, suite::Task task, std::u16string_view path,
                         const std::vector<std::u16string>& structureFiles,
                         platform::OrvListCheck& programs);

// Opened and identified, as the database that a new one is made from.
bool OpenTemplate(suite::ProgramState& state, std::u16string_view path);

struct Selection {
  std::u16string files;  // paths, separated by semicolons
  std::u16string names;  // each followed by a semicolon
};

// What the task takes of the checked programs. Up-to-date ones are not added, but checked.
bool TakeSelection(suite::ProgramState& state, suite::Task task, platform::OrvListCheck& programs,
                   Selection& selection);

// Adds the structures to the database (task Dodaj), or checks and upgrades it (Sprawdz). Not done
// and without a text: the user was told to choose a database.
RunResult RunExtension(suite::ProgramState& state, suite::Task task, std::u16string_view path,
                       const Selection& selection, platform::ProgressBar& progress);

}  // namespace zimbrat::app

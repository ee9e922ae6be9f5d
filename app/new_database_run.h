// The task "new, empty database" without controls: the order of its steps for every entry.
#pragma once

#include "generator/ModGeneruj.h"
#include "suite/program_state.h"
#include "platform/controls.h"

#include <string>

namespace zimbrat::app {

struct NewDatabaseOrder {
  std::u16string name;  // without extension
  std::u16string folder;
  std::u16string structureFiles;  // paths, separated by commas
  generator::Periods periods;
};

struct RunResult {
  bool done = false;
  // The result text, or what went wrong.
  std::u16string text;
  // The new database's path without extension.
  std::u16string akt_baza;
};

// A name or folder that no file can have is refused before anything is touched.
RunResult RunNewDatabase(suite::ProgramState& state, const NewDatabaseOrder& order,
                         platform::ProgressBar& progress);

}  // namespace zimbrat::app

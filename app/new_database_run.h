// The two tasks that make a database, without controls: the order of their steps for every entry.
#pragma once

#include "app/run_result.h"
#include "generator/ModGeneruj.h"

#include <string>

namespace zimbrat::app {

struct NewDatabaseOrder {
  std::u16string name;  // without extension
  std::u16string folder;
  std::u16string structureFiles;    // paths, separated by commas; of a new, empty database
  std::u16string templateDatabase;  // of a database from a template
  generator::Periods periods;
};

RunResult RunNewDatabase(suite::ProgramState& state, const NewDatabaseOrder& order,
                         platform::ProgressBar& progress);
// The template has been opened and identified before.
RunResult RunFromTemplate(suite::ProgramState& state, const NewDatabaseOrder& order,
                          platform::ProgressBar& progress);

}  // namespace zimbrat::app

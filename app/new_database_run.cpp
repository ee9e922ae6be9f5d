#include "app/new_database_run.h"

#include "platform/files.h"

namespace zimbrat::app {
namespace {

RunResult Run(suite::ProgramState& state, suite::Task task, const NewDatabaseOrder& order,
              platform::ProgressBar& progress, const std::function<bool()>& driver) {
  if (const auto refusal = FindRefusal(order.folder, order.name)) return *refusal;
  suite::Choices choices;
  choices.name = order.name;
  choices.folder = order.folder;
  RunResult result = RunDriver(state, task, choices, progress, driver);
  if (result.done) result.akt_baza = platform::JoinPath(order.folder, order.name);
  return result;
}

}  // namespace

RunResult RunNewDatabase(suite::ProgramState& state, const NewDatabaseOrder& order,
                         platform::ProgressBar& progress) {
  return Run(state, suite::Task::Nowa, order, progress, [&] {
    return generator::GenerujNowaBaze(state, order.folder, order.name, order.structureFiles,
                                      order.periods, progress);
  });
}

RunResult RunFromTemplate(suite::ProgramState& state, const NewDatabaseOrder& order,
                          platform::ProgressBar& progress) {
  return Run(state, suite::Task::Wzorzec, order, progress, [&] {
    return generator::UtworzZWzorca(state, order.templateDatabase, order.folder, order.name,
                                    order.periods, progress);
  });
}

}  // namespace zimbrat::app

#include "app/new_database_run.h"

#include "app/name_rules.h"
#include "suite/ModPrgFun.h"
#include "platform/files.h"
#include "platform/text.h"

namespace zimbrat::app {

RunResult RunNewDatabase(suite::ProgramState& state, const NewDatabaseOrder& order,
                         platform::ProgressBar& progress) {
  state.task = suite::Task::Nowa;
  progress.Reset();
  for (const auto& fault : {FindNameFault(order.name), FindPlaceFault(order.folder, order.name)}) {
    if (fault) return {false, *fault + std::u16string(suite::kCrLf), {}};
  }
  if (!generator::GenerujNowaBaze(state, order.folder, order.name, order.structureFiles,
                                  order.periods, progress)) {
    progress.Reset();
    return {false, generator::OpisBleduGenerowania(state), {}};
  }
  progress.Finish();
  suite::Choices choices;
  choices.name = order.name;
  choices.folder = order.folder;
  return {true, suite::ResultText(suite::Task::Nowa, choices),
          platform::JoinPath(order.folder, order.name)};
}

}  // namespace zimbrat::app

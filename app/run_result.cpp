#include "app/run_result.h"

#include "app/name_rules.h"
#include "generator/ModGeneruj.h"

namespace zimbrat::app {

RunResult RunDriver(suite::ProgramState& state, suite::Task task, const suite::Choices& choices,
                    platform::ProgressBar& progress, const std::function<bool()>& driver) {
  state.task = task;
  if (driver()) {
    progress.Finish();
    return {true, suite::ResultText(task, choices), {}};
  }
  progress.Reset();
  return {false, generator::OpisBleduGenerowania(state), {}};
}

std::optional<RunResult> FindRefusal(std::u16string_view folder, std::u16string_view name) {
  for (const auto& fault : {FindNameFault(name), FindPlaceFault(folder, name)}) {
    if (fault) return RunResult{false, *fault + std::u16string(suite::kCrLf), {}};
  }
  return std::nullopt;
}

}  // namespace zimbrat::app

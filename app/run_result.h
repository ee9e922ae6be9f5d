// What a task came to.
#pragma once

#include "suite/ModPrgFun.h"
#include "suite/program_state.h"
#include "platform/controls.h"

#include <functional>
#include <optional>
#include <string>

namespace zimbrat::app {

struct RunResult {
  bool done = false;
  // The result text, or what went wrong.
  std::u16string text;
  // A new database's path without extension.
  std::u16string akt_baza;
};

// Runs a driver as the task: on success the result text for those choices, on failure the summary
// of the error context and an empty bar.
RunResult RunDriver(suite::ProgramState& state, suite::Task task, const suite::Choices& choices,
                    platform::ProgressBar& progress, const std::function<bool()>& driver);

// A name or folder that no file can have, as the result that refuses it before anything is touched.
std::optional<RunResult> FindRefusal(std::u16string_view folder, std::u16string_view name);

}  // namespace zimbrat::app

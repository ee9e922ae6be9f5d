// The progress bar of a run as one line of the terminal.
#pragma once

#include "commands.h"
#include "app/run_result.h"
#include "platform/console.h"
#include "platform/controls.h"

#include <functional>

namespace zimbrat::console {

// Draws `bar` on standard error while it lives, if `isShown`; takes the line away at the end.
class ProgressLine {
 public:
  ProgressLine(platform::Console& console, platform::ProgressBar& bar, bool isShown);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

 private:
  void Draw();

  platform::Console& console_;
  platform::ProgressBar& bar_;
  int drawn_ = -1;  // per cent on the line; -1 while there is none
};

// Carries a run out with its bar on the terminal, where there is one and it is not to be hidden.
app::RunResult WithProgressLine(const CommandContext& context,
                                const std::function<app::RunResult(platform::ProgressBar&)>& run);

}  // namespace zimbrat::console

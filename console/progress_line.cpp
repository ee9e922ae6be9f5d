#include "progress_line.h"

#include "platform/text.h"

#include <string>

namespace zimbrat::console {
namespace {

constexpr int kCells = 40;

std::u16string Line(int percent) {
  const auto full = static_cast<std::size_t>(percent * kCells / 100);
  return u"\r[" + std::u16string(full, u'#') + std::u16string(kCells - full, u'.') + u"] " +
         platform::DecimalText(percent) + u"%";
}

}  // namespace

ProgressLine::ProgressLine(platform::Console& console, platform::ProgressBar& bar, bool isShown)
    : console_(console), bar_(bar) {
  if (isShown) bar_.SetListener([this](platform::Change) { Draw(); });
}

ProgressLine::~ProgressLine() {
  bar_.SetListener(nullptr);
  if (drawn_ < 0) return;
  // As wide as the longest line: cells, brackets, blank, "100%".
  console_.WriteError(u"\r" + std::u16string(kCells + 7, u' ') + u"\r");
}

void ProgressLine::Draw() {
  const int percent = static_cast<int>(bar_.Fraction() * 100);
  if (percent <= drawn_) return;
  drawn_ = percent;
  console_.WriteError(Line(percent));
}

app::RunResult WithProgressLine(const CommandContext& context,
                                const std::function<app::RunResult(platform::ProgressBar&)>& run) {
  platform::ProgressBar bar;
  const ProgressLine line(context.console, bar,
                          !context.arguments.isQuiet && context.console.IsErrorTerminal());
  return run(bar);
}

}  // namespace zimbrat::console

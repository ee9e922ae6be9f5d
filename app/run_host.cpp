#include "app/run_host.h"

#include "app/modMain.h"
#include "errors/ModError.h"
#include "errors/error_texts.h"
#include "suite/ModPrgFun.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::app {

int RunHost::ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) {
  if (IsAutomatic()) Keep(prompt);
  return app::ShowMessage(state_, windows_, prompt, buttons, title);
}

std::optional<platform::Secret> RunHost::AskPassword(std::u16string_view database) {
  if (IsAutomatic()) return std::nullopt;
  return windows_.AskPassword(database);
}

void RunHost::ReportError(const platform::RunTimeError& error, std::u16string_view routine) {
  if (!IsAutomatic()) return windows_.ReportError(error, routine);
  errors::ErrorReportUnseen(state_, error, routine);
  const std::u16string explanation = errors::FindErrorText(state_, error);
  Keep(error.Description() + u" [" + std::u16string(routine) + u"]");
  if (!explanation.empty()) Keep(explanation);
}

void RunHost::SetBusy(bool busy) {
  if (!IsAutomatic()) windows_.SetBusy(busy);
}

void RunHost::Keep(std::u16string_view text) {
  std::u16string line(text);
  line.append(suite::kCrLf);
  if (!platform::Contains(suppressed_, line)) suppressed_ += line;
}

}  // namespace zimbrat::app

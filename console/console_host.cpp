#include "console/console_host.h"

#include "console/explanations.h"
#include "errors/ModError.h"
#include "suite/ModPrgFun.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::console {

int ConsoleHost::ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view) {
  const bool isQuestion = buttons == platform::kMsgQuestionYesNoDefaultNo;
  if (isQuestion && answersYes_) return platform::kAnswerYes;
  messages_.append(prompt);
  if (isQuestion) messages_.append(u" Aby to zrobić, dodaj opcję --nadpisz.");
  messages_.append(suite::kCrLf);
  return isQuestion ? platform::kAnswerNo : platform::kAnswerOk;
}

void ConsoleHost::Pulse() {
  if (console_.IsInterrupted()) throw platform::OwnError(platform::kErrUserInterrupt);
}

std::optional<platform::Secret> ConsoleHost::AskPassword(std::u16string_view database) {
  return console_.AskPassword(u"Hasło bazy " + std::u16string(database) + u": ");
}

void ConsoleHost::ReportError(const platform::RunTimeError& error, std::u16string_view routine) {
  errors::ErrorReportUnseen(state_, error, routine);
  messages_ += ErrorText(state_, {error.Number(), error.Source(),
                                  error.Description() + u" [" + std::u16string(routine) + u"]"});
  messages_.append(suite::kCrLf);
}

}  // namespace zimbrat::console

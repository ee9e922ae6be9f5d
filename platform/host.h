// What a lower floor asks of whoever runs it: the window, the console, the automatic run and the tests
// each implement it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/secret.h"

namespace zimbrat::platform {

class RunTimeError;

// Flags and answers of message boxes, as the platform numbers them.
inline constexpr int kMsgInformation = 64;
inline constexpr int kMsgExclamation = 48;
inline constexpr int kMsgCritical = 16;
inline constexpr int kMsgQuestionYesNoDefaultNo = 292;
inline constexpr int kAnswerNone = 0;
inline constexpr int kAnswerOk = 1;
inline constexpr int kAnswerYes = 6;
inline constexpr int kAnswerNo = 7;

class Host {
 public:
  virtual ~Host() = default;
  // Returns the button pressed; kAnswerNone where nothing may be shown.
  virtual int ShowMessage(std::u16string_view prompt, int buttons, std::u16string_view title) = 0;
  // Given during long work, at least every 100 ms of it: the view paints and drops input. May throw error 18
  // when the user, or the system, wants the work to end: what is under way is then undone.
  virtual void Pulse() = 0;
  // Verifies a finished copy before it is put in place; throws a RunTimeError when it must not be. What
  // was wrong already with the database it was made of does not count: `original`, empty for a new one,
  // read only, and only while others may read it too.
  virtual void VerifyCopy(std::u16string_view path, std::u16string_view original) = 0;
  // The password that a person types for that database; nothing when it was cancelled or nobody answers.
  virtual std::optional<Secret> AskPassword(std::u16string_view database) = 0;
  // An unexpected failure of `routine` (its own name), for the error report.
  virtual void ReportError(const RunTimeError& error, std::u16string_view routine) = 0;
  // The hourglass, where there is a pointer.
  virtual void SetBusy(bool busy) = 0;
};

}  // namespace zimbrat::platform

// What a lower floor asks of whoever runs it: the window, the console, the automatic run and the tests
// each implement it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zimbrat::platform {

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
  // Given during long work, at least every 100 ms of it: the view paints and drops input.
  virtual void Pulse() = 0;
  // Verifies a finished copy before it is put in place; throws a RunTimeError when it must not be.
  virtual void VerifyCopy(std::u16string_view path) = 0;
};

}  // namespace zimbrat::platform

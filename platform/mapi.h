// Mail through the system's simple MAPI. Where there is none every attempt is refused, as the class answers
// itself.
//
// Errors are kErrMapi + the code of MAPI.
#pragma once

#include <cstdint>
#include <string>

namespace zimbrat::platform {

struct MailMessage {
  std::u16string recipient;  // an e-mail address
  std::u16string subject;
  std::u16string text;
};

using MailSession = std::uintptr_t;
inline constexpr MailSession kNoMailSession = 0;

class Mapi {
 public:
  virtual ~Mapi() = default;
  // The mail program may ask who signs on.
  virtual MailSession SignOn();
  // The mail program shows the message to be completed and sent by the user. Error 32053 without a session.
  virtual void Send(MailSession session, const MailMessage& message);
  virtual void SignOff(MailSession session);
};

}  // namespace zimbrat::platform

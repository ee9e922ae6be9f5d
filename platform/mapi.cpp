#include "platform/mapi.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {

MailSession Mapi::SignOn() { throw OwnError(kErrCannotCreateObject); }

void Mapi::Send(MailSession, const MailMessage&) { throw OwnError(kErrNoMailSession); }

void Mapi::SignOff(MailSession) { throw OwnError(kErrNoMailSession); }

}  // namespace zimbrat::platform

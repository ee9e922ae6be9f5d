// A mail laid before the user in Outlook.
#pragma once

#include "suite/program_state.h"
#include "platform/automation.h"

#include <string_view>

namespace zimbrat::errors {

// `attachments`: empty, or paths with ";" between them. A body with "<html>" in it is HTML. Without Outlook a
// message says so; what fails later is reported under this routine's name.
void SendOutlookMail(suite::ProgramState& state, platform::Automation& automation,
                     std::u16string_view subject, std::u16string_view recipient, std::u16string_view body,
                     std::u16string_view attachments);

}  // namespace zimbrat::errors

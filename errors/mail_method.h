// By which program an error report is sent.
#pragma once

#include "platform/registry.h"

#include <string>
#include <string_view>

namespace zimbrat::errors {

// Under kWizardKey, for administrators: "1", "2" or another number. Nobody has it until somebody writes it.
inline constexpr std::u16string_view kMailMethodValue = u"Sposób poczty";

enum class MailWay {
  Link,     // "1": a mailto: link
  Outlook,  // 2, and whatever is no number
  Mapi      // every other number
};

MailWay WayOf(std::u16string_view mailMethod);

// Empty when it is not there. Writes nothing.
std::u16string ReadMailMethod(platform::Registry& registry);

}  // namespace zimbrat::errors

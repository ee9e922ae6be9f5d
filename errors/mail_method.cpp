#include "errors/mail_method.h"

#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "platform/numbers.h"

namespace zimbrat::errors {

MailWay WayOf(std::u16string_view mailMethod) {
  constexpr double kOutlook = 2;
  if (mailMethod == u"1") return MailWay::Link;
  // A text that cannot be compared passes the comparison.
  bool isOutlook = true;
  suite::Attempt([&] { isOutlook = platform::DoubleFromText(mailMethod) == kOutlook; });
  return isOutlook ? MailWay::Outlook : MailWay::Mapi;
}

std::u16string ReadMailMethod(platform::Registry& registry) {
  const suite::RegVariant value = suite::RegKeyValueGet(registry, suite::kWizardKey, kMailMethodValue);
  const auto* text = std::get_if<std::u16string>(&value);
  return text == nullptr ? std::u16string() : *text;
}

}  // namespace zimbrat::errors

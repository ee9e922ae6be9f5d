#include "errors/ModOutlook.h"

#include "suite/manners.h"
#include "suite/product.h"
#include "platform/text.h"

#include <memory>
#include <string>

namespace zimbrat::errors {
namespace {

using platform::AutomationObject;

constexpr std::int32_t kMailItem = 0;  // olMailItem

void TellMissing(suite::ProgramState& state, std::int32_t number) {
  state.on.host.ShowMessage(
      u"Błąd nr " + platform::DecimalText(number) +
          u". Program nie może wysłać pocztę elektroniczną stosująć aplikację MS Outlook. Zmień "  // sic
          u"ustawienia programu: menu Narzędzia, polecenie Parametry programu, zakładka Aplikacja i "
          u"spróbuj ponownie.",
      platform::kMsgCritical, suite::MessageTitle());
}

void Attach(AutomationObject& item, std::u16string_view path) {
  if (const auto list = item.Call(u"Attachments", {})) list->Call(u"Add", {std::u16string(path)});
}

void AttachAll(AutomationObject& item, std::u16string_view paths) {
  for (;;) {
    const std::size_t end = paths.find(u';');
    Attach(item, paths.substr(0, end));
    if (end == std::u16string_view::npos) return;
    paths.remove_prefix(end + 1);
  }
}

}  // namespace

void SendOutlookMail(suite::ProgramState& state, platform::Automation& automation,
                     std::u16string_view subject, std::u16string_view recipient, std::u16string_view body,
                     std::u16string_view attachments) {
  suite::Report(state.on.host, u"SendOutlookMail", [&] {
    std::unique_ptr<AutomationObject> outlook;
    const auto refusal = suite::Attempt([&] { outlook = automation.Create(u"Outlook.application"); });
    if (refusal) return TellMissing(state, refusal->Number());
    const auto item = outlook->Call(u"CreateItem", {kMailItem});
    if (!item) return;
    item->Put(u"Subject", subject);
    item->Put(u"To", recipient);
    item->Put(platform::Contains(body, u"<html>") ? u"HTMLBody" : u"body", body);
    if (!attachments.empty()) AttachAll(*item, attachments);
    item->Call(u"Display", {});
  });
}

}  // namespace zimbrat::errors

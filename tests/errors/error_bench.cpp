#include "tests/errors/error_bench.h"

#include "suite/ModSysReg.h"
#include "platform/error_numbers.h"

namespace zimbrat::tests {
namespace {

std::string TextOf(const platform::AutomationArgument& argument) {
  if (const auto* number = std::get_if<std::int32_t>(&argument)) return std::to_string(*number);
  return "\"" + Utf8(std::get<std::u16string>(argument)) + "\"";
}

class FakeObject : public platform::AutomationObject {
 public:
  explicit FakeObject(FakeAutomation& told) : told_(told) {}

  void Put(std::u16string_view property, std::u16string_view text) override {
    told_.Do(Utf8(property), "=" + Utf8(text));
  }
  std::unique_ptr<AutomationObject> Call(
      std::u16string_view member, const std::vector<platform::AutomationArgument>& arguments) override {
    std::string list;
    for (const auto& argument : arguments) list += (list.empty() ? "" : ", ") + TextOf(argument);
    told_.Do(Utf8(member), "(" + list + ")");
    if (member == u"CreateItem" && !told_.givesItems) return nullptr;
    const bool givesObject = member == u"CreateItem" || member == u"Attachments";
    return givesObject ? std::make_unique<FakeObject>(told_) : nullptr;
  }

 private:
  FakeAutomation& told_;
};

}  // namespace

std::unique_ptr<platform::AutomationObject> FakeAutomation::Create(std::u16string_view programId) {
  if (!isInstalled) return Automation::Create(programId);
  Do(Utf8(programId), "");
  return std::make_unique<FakeObject>(*this);
}

void FakeAutomation::Do(const std::string& member, const std::string& what) {
  if (member == refused) throw platform::RunTimeError(287, u"Microsoft Outlook", u"Odmowa");
  done.push_back(member + what);
}

platform::MailSession FakeMapi::SignOn() {
  Do("SignOn", "");
  return 7;
}

void FakeMapi::Send(platform::MailSession session, const platform::MailMessage& message) {
  if (session == platform::kNoMailSession) Mapi::Send(session, message);
  Do("Send", " " + std::to_string(session) + " to " + Utf8(message.recipient) + ": " + Utf8(message.subject) +
                 "\n" + Utf8(message.text));
}

void FakeMapi::SignOff(platform::MailSession session) { Do("SignOff", " " + std::to_string(session)); }

void FakeMapi::Do(const std::string& call, const std::string& what) {
  if (call == refused) throw platform::RunTimeError(platform::kErrMapi + 2, u"MAPI", u"Odmowa");
  done.push_back(call + what);
}

ErrorBench::ErrorBench(platform::Registry* registry)
    : state({bench.files, registry == nullptr ? bench.registry : *registry, bench.profile, bench.clock,
             bench.environment, host, nullptr}) {
  bench.environment.programFolder = bench.folder.Path();
  host.report = [this](const platform::RunTimeError& error, std::u16string_view routine) {
    errors::ErrorReport(state, error, routine, {}, outside, [this](errors::dlgError& dialog, errors::DialogOwner) {
      ++dialogs;
      dialog.SetVisible(true);
      const auto act = use;  // which may name the next one
      act(dialog);
    });
  };
}

void ErrorBench::Report(std::int32_t number, std::u16string_view source, std::u16string_view description,
                        std::u16string_view routine) {
  host.ReportError({number, std::u16string(source), std::u16string(description)}, routine);
}

void ErrorBench::WriteTexts(std::string_view utf8) { bench.WriteStructure(u"Errormsg.txt", utf8); }

std::string ErrorBench::Log() const {
  return bench.folder.Exists(u"Error.log")
             ? Utf8(platform::Utf16FromAnsi1250(bench.folder.Read(u"Error.log")))
             : std::string();
}

std::string ErrorBench::SavedChoice(std::u16string_view key) {
  const suite::RegVariant value = suite::RegKeyValueGet(state.on.registry, key, errors::kSaveErrorsValue);
  const auto* text = std::get_if<std::u16string>(&value);
  return text == nullptr ? "<none>" : Utf8(*text);
}

}  // namespace zimbrat::tests

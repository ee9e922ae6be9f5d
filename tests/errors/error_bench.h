// The error report over a bench: a dialog that a test uses instead of a person, mail programs that write down
// what they were told.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "errors/ModError.h"
#include "tests/product/bench.h"
#include "tests/product/fake_shell.h"

namespace zimbrat::tests {

// What was done to the objects, one line each: "Name=text", "Name(arguments)". The member named `refused` raises
// error 287.
class FakeAutomation : public platform::Automation {
 public:
  std::vector<std::string> done;
  std::string refused;
  bool isInstalled = true;
  bool givesItems = true;

  std::unique_ptr<platform::AutomationObject> Create(std::u16string_view programId) override;
  void Do(const std::string& member, const std::string& what);
};

// One line a call. The call named `refused` raises error 32002.
class FakeMapi : public platform::Mapi {
 public:
  std::vector<std::string> done;
  std::string refused;

  platform::MailSession SignOn() override;
  void Send(platform::MailSession session, const platform::MailMessage& message) override;
  void SignOff(platform::MailSession session) override;

 private:
  void Do(const std::string& call, const std::string& what);
};

// Reports to the dialog, as the host with windows does.
class ReportingHost : public FakeHost {
 public:
  std::function<void(const platform::RunTimeError& error, std::u16string_view routine)> report;

  void ReportError(const platform::RunTimeError& error, std::u16string_view routine) override {
    FakeHost::ReportError(error, routine);
    report(error, routine);
  }
};

class ErrorBench {
 public:
  // Over the bench's registry, or over another.
  explicit ErrorBench(platform::Registry* registry = nullptr);

  Bench bench;
  ReportingHost host;
  FakeShell shell;
  FakeAutomation automation;
  FakeMapi mapi;
  int ends = 0;  // of the program, that were asked for
  errors::Outside outside{shell, automation, mapi, [this] { ++ends; }};
  suite::ProgramState state;
  // What the person does with each dialog; without it they are closed as they are.
  std::function<void(errors::dlgError& dialog)> use = [](errors::dlgError& dialog) { dialog.cmdOK.Click(); };
  int dialogs = 0;

  void Report(std::int32_t number, std::u16string_view source, std::u16string_view description,
              std::u16string_view routine = u"Procedura");
  // The files beside the program; bytes in Windows-1250 become UTF-8.
  void WriteTexts(std::string_view utf8);
  std::string Log() const;
  // "<none>" where the value is missing.
  std::string SavedChoice(std::u16string_view key);
};

}  // namespace zimbrat::tests

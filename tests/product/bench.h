// The surroundings of the product for a test: a folder of its own, a registry and profiles in files
// there, a host that writes down what it was told and answers as the test says.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/profile.h"
#include "platform/portable/registry.h"
#include "platform/system.h"
#include "platform/text.h"
#include "suite/program_state.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

class FakeHost : public platform::Host {
 public:
  std::vector<std::u16string> messages;
  std::vector<std::u16string> reports;  // routines
  int answer = platform::kAnswerNone;
  std::optional<std::u16string> password;
  // Throws for copies that are not sound; without it all are.
  std::function<void(std::u16string_view path, std::u16string_view original)> verify;
  int busyDepth = 0;
  std::function<void()> onMessage;  // while one is shown
  std::function<void()> onPulse;    // may throw, as an interruption does

  int ShowMessage(std::u16string_view prompt, int, std::u16string_view) override {
    messages.emplace_back(prompt);
    if (onMessage) onMessage();
    return answer;
  }
  void Pulse() override {
    if (onPulse) onPulse();
  }
  void VerifyCopy(std::u16string_view path, std::u16string_view original) override {
    if (verify) verify(path, original);
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view) override {
    if (!password) return std::nullopt;
    return platform::Secret(*password);
  }
  void ReportError(const platform::RunTimeError&, std::u16string_view routine) override {
    reports.emplace_back(routine);
  }
  void SetBusy(bool busy) override { busyDepth += busy ? 1 : -1; }
};

class FakeEnvironment : public platform::Environment {
 public:
  std::u16string programFolder;
  std::u16string temporaryFolder;
  std::u16string currentFolder;  // empty: the program's
  // The engine that is there on every machine.
  std::map<std::u16string, std::u16string, std::less<>> variables{{u"ZIMBRAT_SILNIK", u"wbudowany"}};

  std::u16string Variable(std::u16string_view name) override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::u16string() : found->second;
  }
  std::u16string ProgramFolder() override { return programFolder; }
  std::u16string CurrentFolder() override {
    return currentFolder.empty() ? programFolder : currentFolder;
  }
  void SetCurrentFolder(std::u16string_view folder) override { currentFolder = folder; }
  std::u16string TemporaryFolder() override { return temporaryFolder; }
};

class Bench {
 public:
  // Over the system's files, or over `others`, which must outlive the bench.
  explicit Bench(platform::Files* others = nullptr);

  platform::System system = platform::MakeSystem(0, nullptr);
  TempFolder folder;
  platform::Files& files;
  FakeClock clock;
  FakeEnvironment environment;
  FakeHost host;
  platform::PortableRegistry registry;
  platform::PortableProfile profile;
  suite::ProgramState state;

  std::u16string PathOf(std::u16string_view name) const { return folder.PathOf(name); }
  // Writes a structure file: UTF-8 with LF becomes Windows-1250 with CR LF.
  std::u16string WriteStructure(std::u16string_view name, std::string_view utf8) const;
};

// For comparisons that print what differs.
inline std::string Utf8(std::u16string_view text) {
  return platform::Utf8FromUtf16(text);
}

}  // namespace zimbrat::tests

// The adapter over the stand-in, a folder, and what the program would answer to the engine's
// questions.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/engine.h"
#include "platform/installed_engine.h"
#include "platform/system.h"
#include "tests/daoserver/dao_server.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

class EngineBench : public ::testing::Test {
 public:
  TempFolder folder;
  platform::System system = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> jetEngine = jet::MakeEngine(*system.files, *system.clock, {});
  std::u16string path = folder.PathOf(u"Baza.mdb");

  // What the program holds, and what is typed for a protected database; asked so many times.
  std::optional<std::u16string> held;
  std::optional<std::u16string> password;
  int asked = 0;
  std::function<void()> onPulse = [] {};
  std::vector<std::u16string> unusable;

  std::shared_ptr<dao::Engine> Find() {
    return platform::FindInstalledEngine(
        {*system.files, *system.clock,
         [this](std::u16string_view, bool isTyped) -> std::optional<platform::Secret> {
           const std::optional<std::u16string>& answer = isTyped ? password : held;
           asked += isTyped ? 1 : 0;
           if (!answer) return std::nullopt;
           return platform::Secret(*answer);
         },
         [this] { onPulse(); }},
        [this](std::u16string_view why) { unusable.emplace_back(why); });
  }

  // By the embedded engine: plain pages, a table T with a row of the text "Zgubiony".
  void MakeFile(std::u16string_view protection = {}) {
    const auto workspace = jetEngine->CreateWorkspace(u"", u"Admin", u"");
    const auto database = workspace->CreateDatabase(path, dao::dbLangGeneral, 0);
    database->Execute(u"CREATE TABLE T (A COUNTER, B TEXT(20))", dao::dbFailOnError);
    database->Execute(u"INSERT INTO T (B) VALUES ('Zgubiony')", dao::dbFailOnError);
    if (!protection.empty()) database->NewPassword(u"", protection);
    database->Close();
    workspace->Close();
  }
  std::string Contents() { return folder.Read(u"Baza.mdb"); }
  bool IsHeld() {
    return ErrorOf([&] {
             system.files->Open(path, platform::OpenMode::ReadWrite, platform::Sharing::None);
           }) != 0;
  }
};

}  // namespace zimbrat::tests

// The wizard's form over a bench: no window, a shell that answers as the test says.
#pragma once

#include <string>

#include "app/mdiMenu.h"
#include "app/modMain.h"
#include "app/run_host.h"
#include "tests/product/database_bench.h"
#include "tests/product/fake_shell.h"

namespace zimbrat::tests {

// One start of the program on a bench, over those windows.
struct WizardProgram {
  WizardProgram(DatabaseBench& bench, platform::Host& windows)
      : host(windows, state),
        state({bench.files, bench.registry, bench.profile, bench.clock, bench.environment, host,
               bench.state.on.makeEngine}) {}

  app::RunHost host;
  suite::ProgramState state;
  FakeShell shell;
  app::mdiMenu form{state, shell};
};

class WizardBench {
 public:
  WizardBench() { bench.environment.programFolder = bench.folder.Path(); }

  DatabaseBench bench;
  WizardProgram program{bench, bench.host};
  suite::ProgramState& state = program.state;
  FakeShell& shell = program.shell;
  app::mdiMenu& form = program.form;

  // Makes a program's structure file, before the form is loaded.
  void WriteProgram(const std::string& symbol, const std::string& more = {}) {
    bench.WriteStructure(platform::Utf16FromUtf8(symbol + ".stb"), SmallProgram(symbol, more));
  }
  // A database with those programs in the bench's folder.
  void MakeDatabase(std::u16string_view name, const std::u16string& files) {
    platform::ProgressBar bar;
    generator::GenerujNowaBaze(bench.state, bench.folder.Path(), name, files, {1, 2025, 1, 2025}, bar);
  }
  // What was shown since the last question, one after another.
  std::string TakeMessages() {
    std::string text;
    for (const std::u16string& message : bench.host.messages) text += Utf8(message) + "\n";
    bench.host.messages.clear();
    return text;
  }
};

}  // namespace zimbrat::tests

// The commands. Each gets the words that were given and a program state made for it.
#pragma once

#include "console/arguments.h"
#include "console/console_host.h"
#include "console/outcome.h"
#include "suite/program_state.h"
#include "platform/console.h"
#include "platform/controls.h"

namespace zimbrat::console {

struct CommandContext {
  const Arguments& arguments;
  suite::ProgramState& state;
  ConsoleHost& host;
  platform::Console& console;
};

Outcome RunNowa(const CommandContext& context);
Outcome RunDodaj(const CommandContext& context);
Outcome RunWzorzec(const CommandContext& context);
Outcome RunSprawdz(const CommandContext& context);
Outcome RunStan(const CommandContext& context);
Outcome RunProgramy(const CommandContext& context);
Outcome RunLista(const CommandContext& context);
Outcome RunSilnik(const CommandContext& context);
Outcome RunAuto(const CommandContext& context);

// A row of the outcome for each item of a program list.
void TakePrograms(const CommandContext& context, const platform::OrvListCheck& list,
                  Outcome& outcome);

// Texts of the help: of all commands, or of one.
std::u16string GeneralHelp();
std::u16string CommandHelp(const CommandSpec& command);

}  // namespace zimbrat::console

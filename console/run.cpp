#include "console/run.h"

#include "commands.h"
#include "console/explanations.h"
#include "engine_wish.h"
#include "engines/engine_choice.h"
#include "errors/error_texts.h"
#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "suite/product.h"

#include <string>
#include <utility>
#include <vector>

namespace zimbrat::console {
namespace {

using CommandFunction = Outcome (*)(const CommandContext& context);

CommandFunction FunctionOf(std::u16string_view command) {
  constexpr std::pair<std::u16string_view, CommandFunction> kFunctions[] = {
      {u"nowa", RunNowa},       {u"dodaj", RunDodaj}, {u"wzorzec", RunWzorzec},
      {u"sprawdz", RunSprawdz}, {u"stan", RunStan},   {u"programy", RunProgramy},
      {u"lista", RunLista},     {u"silnik", RunSilnik}, {u"auto", RunAuto}};
  for (const auto& [name, function] : kFunctions) {
    if (name == command) return function;
  }
  return nullptr;
}

// The state and what it runs on, each of which knows the others.
struct Program {
  Program(platform::System& system, engines::Wish wish)
      : host(*system.console, state,
             [this](std::u16string_view path, std::u16string_view original) { choice.Verify(path, original); }),
        state({*system.files, *system.registry, *system.profile, *system.clock, *system.environment, host,
               [this](const suite::PasswordOf& password) { return choice.Engine(password); }}),
        choice({.files = *system.files,
                .clock = *system.clock,
                .wish = wish,
                .pulse = [this] { host.Pulse(); },
                .log = errors::ErrorFile(state, engines::kVerificationLog)}) {}

  ConsoleHost host;
  suite::ProgramState state;
  engines::EngineChoice choice;
};

Outcome Misused(const std::u16string& fault) {
  return WrongUsage(fault + std::u16string(suite::kCrLf) + u"Pomoc: zimbratc --pomoc");
}

Outcome Carry(platform::System& system, const Arguments& arguments) {
  engines::Wish wish = engines::Wish::Found;
  if (const auto fault = FindWishFault(arguments, *system.environment, wish)) return Misused(*fault);
  Program program(system, wish);
  // What a command has made must go when it is stopped.
  system.console->NoteInterrupts();
  Outcome outcome;
  const auto error = suite::Attempt([&] {
    outcome = FunctionOf(arguments.command->name)({arguments, program.state, program.host, *system.console});
  });
  if (!error) return outcome;
  return Failed(program.host.Messages() + ErrorText(program.state, *error));
}

Outcome Decide(platform::System& system, const Arguments& arguments) {
  if (arguments.wantsVersion) {
    return {kStatusDone, std::u16string(suite::ProductVersion()), {}, {}, {}};
  }
  if (arguments.wantsHelp) {
    return {kStatusDone,
            arguments.command ? CommandHelp(*arguments.command) : GeneralHelp(),
            {},
            {},
            {}};
  }
  if (arguments.fault) return Misused(*arguments.fault);
  if (arguments.command == nullptr) return WrongUsage(GeneralHelp());
  return Carry(system, arguments);
}

}  // namespace

int Run(platform::System& system) {
  std::vector<std::u16string> words = system.console->Arguments();
  const Arguments arguments = ParseArguments(words);
  ForgetPasswords(*system.console, words);
  const Outcome outcome = Decide(system, arguments);
  PrintOutcome(*system.console, outcome,
               arguments.command ? arguments.command->name : std::u16string_view(),
               arguments.isJson);
  if (outcome.status != kStatusDone || !system.console->HasFailed()) return outcome.status;
  // A result that reached nobody is no success.
  system.console->WriteError(u"Zadanie wykonano, ale wyniku nie udało się wypisać.\n");
  return kStatusFailed;
}

}  // namespace zimbrat::console

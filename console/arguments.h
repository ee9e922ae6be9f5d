// The command line of zimbratc: which commands and options there are, and what was given.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/console.h"
#include "platform/secret.h"

namespace zimbrat::console {

struct OptionSpec {
  std::u16string_view name;   // "--folder"
  std::u16string_view value;  // what stands for it in the help; empty for a switch
  bool isRequired = false;
};

struct CommandSpec {
  std::u16string_view name;
  std::u16string_view purpose;
  std::vector<OptionSpec> options;
  // What stands in the help for words that are taken as they are; empty where none may stand.
  std::u16string_view words = {};
};

// All commands in the order of the help.
const std::vector<CommandSpec>& Commands();
const CommandSpec* FindCommand(std::u16string_view name);

struct Arguments {
  const CommandSpec* command = nullptr;  // null when none was given
  // Any of them may be a password.
  std::map<std::u16string_view, platform::Secret> options;
  std::u16string words;  // those taken as they are, a blank between two
  bool wantsHelp = false;
  bool wantsVersion = false;
  bool isJson = false;
  bool isQuiet = false;
  // What is wrong with the words, with the nearest right one; then nothing is carried out.
  std::optional<std::u16string> fault;

  bool Has(std::u16string_view option) const { return options.contains(option); }
  // Empty when the option is absent.
  std::u16string Value(std::u16string_view option) const { return std::u16string(View(option)); }
  std::u16string_view View(std::u16string_view option) const;
};

// "--name value" and "--name=value". A value that begins with "--" needs the second form.
Arguments ParseArguments(const std::vector<std::u16string>& words);

// Of all commands; what it may say is looked at by those who choose.
inline constexpr std::u16string_view kEngineOption = u"--silnik";
inline constexpr std::u16string_view kPasswordOption = u"--haslo";
// Overwrites the passwords among the words, here and where the system shows them.
void ForgetPasswords(platform::Console& console, std::vector<std::u16string>& words);

struct MonthAndYear {
  int month = 0;
  int year = 0;
};

// "M/RRRR", years 1900 to 2999.
std::optional<MonthAndYear> FindMonthAndYear(std::u16string_view text);

// The names of a list that either separator cuts, without empty ones.
std::vector<std::u16string> SplitNames(std::u16string_view list);

}  // namespace zimbrat::console

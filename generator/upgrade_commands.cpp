// The renaming commands of a structure file's [UPGRADE] section. An object that is not found is no
// error: the database may have its new name already.
#include "generator/ModGeneruj.h"

#include "commands.h"
#include "find_exactly.h"

#include <array>
#include <memory>
#include <vector>

namespace zimbrat::generator {
namespace {

using Operands = std::vector<std::u16string>;

template <class T>
void Rename(dao::Collection<T>& collection, const std::u16string& from, const std::u16string& to) {
  if (const std::shared_ptr<T> object = FindExactly(collection, from)) object->SetName(to);
}

void RenameTable(dao::Database& database, const Operands& operands) {
  Rename(*database.TableDefs(), operands[0], operands[1]);
}

void RenameField(dao::Database& database, const Operands& operands) {
  Rename(*database.TableDefs()->Item(operands[0])->Fields(), operands[1], operands[2]);
}

void RenameIndex(dao::Database& database, const Operands& operands) {
  Rename(*database.TableDefs()->Item(operands[0])->Indexes(), operands[1], operands[2]);
}

// Relations are renamed by deleting them: the [RELATIONS] pass builds the new one with its current
// fields.
void DropRelation(dao::Database& database, const Operands& operands) {
  if (FindExactly(*database.Relations(), operands[0])) database.Relations()->Delete(operands[0]);
}

struct Command {
  std::u16string_view name;
  std::size_t operands;
  void (*run)(dao::Database& database, const Operands& operands);
};

constexpr std::array<Command, 4> kCommands = {{
    {u"RENTABLE", 2, RenameTable},
    {u"RENINDEX", 3, RenameIndex},
    {u"RENRELAT", 2, DropRelation},
    {u"RENFIELD", 3, RenameField},
}};

const Command* FindCommand(std::u16string_view name) {
  for (const Command& command : kCommands) {
    if (command.name == name) return &command;
  }
  return nullptr;
}

// Each operand up to the next comma, the last one the rest of the line.
bool SplitOperands(std::u16string_view line, Operands& operands) {
  for (std::size_t i = 0; i + 1 < operands.size(); ++i) {
    if (!TakeItem(line, u',', operands[i])) return false;
  }
  operands.back() = line;
  return true;
}

}  // namespace

bool AktualizujStrukture(ProgramState& state, dao::Database& database,
                         std::u16string_view structureFilePath, std::u16string_view symbol) {
  return RunCommandSection(
      state, database, u"UPGRADE", structureFilePath, symbol,
      [&](std::u16string_view key, std::u16string_view value, const RecordedVersion& recorded) {
        return WykonajKomendeAktualizacji(state, key, value, database, recorded.major,
                                          recorded.minor);
      });
}

bool WykonajKomendeAktualizacji(ProgramState& state, std::u16string_view command,
                                std::u16string_view operandsLine, dao::Database& database,
                                std::int16_t dbVerMajor, std::int16_t dbVerMinor) {
  const Command* known = FindCommand(command);
  if (known == nullptr) {
    return FailUnknownCommand(state,
                              u"Nierozpoznana komenda aktualizacji: " + std::u16string(command));
  }
  RecordedVersion version;
  if (!TakeVersion(operandsLine, version)) FailSyntax(state);
  if (IsOlder(version, {dbVerMajor, dbVerMinor})) return true;
  Operands operands(known->operands);
  if (!SplitOperands(operandsLine, operands)) FailSyntax(state);
  known->run(database, operands);
  return true;
}

}  // namespace zimbrat::generator

// The data statements of a structure file's [UPDATE] section.
#include "generator/ModGeneruj.h"

#include "commands.h"

namespace zimbrat::generator {

bool WpiszDane(ProgramState& state, dao::Database& database, std::u16string_view structureFilePath,
               std::u16string_view symbol) {
  return RunCommandSection(
      state, database, u"UPDATE", structureFilePath, symbol,
      [&](std::u16string_view key, std::u16string_view value, const RecordedVersion& recorded) {
        return WykonajKomendeDanych(state, key, value, database, recorded.major, recorded.minor);
      });
}

bool WykonajKomendeDanych(ProgramState& state, std::u16string_view command,
                          std::u16string_view line, dao::Database& database,
                          std::int16_t dbVerMajor, std::int16_t dbVerMinor) {
  if (command != u"EXECUTE") {
    return FailUnknownCommand(state,
                              u"Nierozpoznana komenda wpisu danych: " + std::u16string(command));
  }
  RecordedVersion version;
  if (!TakeVersion(line, version)) FailSyntax(state);
  if (IsOlder(version, {dbVerMajor, dbVerMinor})) return true;
  database.Execute(line, dao::dbFailOnError);
  return true;
}

}  // namespace zimbrat::generator

#include "commands.h"

#include "suite/ModPrgFun.h"
#include "suite/value_text.h"
#include "platform/error_numbers.h"
#include "platform/numbers.h"

#include <optional>

namespace zimbrat::generator {
namespace {

// The four tables that every database has, and one more.
constexpr int kLeastTables = 5;

std::optional<RecordedVersion> FindRecordedVersion(dao::Database& database,
                                                   std::u16string_view symbol) {
  const auto row = database.OpenRecordset(
      u"SELECT * FROM dbprg WHERE indprg = '" + std::u16string(symbol) + u"' ",
      dao::dbOpenSnapshot);
  std::optional<RecordedVersion> version;
  if (!row->EndOfFile()) {
    version = {suite::IntegerFromValue(row->Fields()->Item(u"VerMajor")->Value()),
               suite::IntegerFromValue(row->Fields()->Item(u"VerMinor")->Value())};
  }
  row->Close();
  return version;
}

std::int16_t Weight(const RecordedVersion& version) {
  return platform::AddIntegers(platform::MultiplyIntegers(version.major, suite::kMajorWeight),
                               version.minor);
}

bool TakeNumber(std::u16string_view& line, char16_t separator, std::int16_t& number) {
  std::u16string text;
  if (line.starts_with(separator) || !TakeItem(line, separator, text)) return false;
  number = platform::IntegerFromDouble(platform::Val(text));
  return true;
}

}  // namespace

bool RunCommandSection(ProgramState& state, dao::Database& database, std::u16string_view section,
                       std::u16string_view structureFilePath, std::u16string_view symbol,
                       const CommandRunner& run) {
  const auto lines = suite::ReadSection(state.on.profile, section, structureFilePath);
  if (lines.empty() || database.TableDefs()->Count() < kLeastTables) return true;
  const auto recorded = FindRecordedVersion(database, symbol);
  if (!recorded) return true;
  for (const suite::SectionEntry& line : lines) {
    if (!run(line.key, line.value, *recorded)) return false;
  }
  return true;
}

bool TakeVersion(std::u16string_view& line, RecordedVersion& version) {
  return TakeNumber(line, u'.', version.major) && TakeNumber(line, u',', version.minor);
}

bool IsOlder(const RecordedVersion& command, const RecordedVersion& recorded) {
  return Weight(command) < Weight(recorded);
}

bool FailUnknownCommand(ProgramState& state, std::u16string description) {
  state.context.Number = 1;
  state.context.Source = kStructureFileSource;
  state.context.Description = std::move(description);
  return false;
}

void FailSyntax(ProgramState& state) {
  state.context.Number = 2;
  state.context.Source = kStructureFileSource;
  throw platform::OwnError(platform::kErrNoSuchMember);
}

}  // namespace zimbrat::generator

// Statements, a line each, carried out one after another on a small database; what was changed must be sound.
#include "outcome.h"
#include "small_database.h"
#include "targets.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

constexpr std::size_t kMostStatements = 12;
constexpr int kMostRows = 200;

void Read(dao::Database& database, std::u16string_view query) {
  const auto rows = database.OpenRecordset(query, dao::dbOpenSnapshot);
  const auto fields = rows->Fields();
  for (int count = 0; !rows->EndOfFile() && count < kMostRows; rows->MoveNext(), ++count) {
    for (int i = 0; i < fields->Count(); ++i) {
      fields->Item(i)->Type();
      fields->Item(i)->Value();
    }
  }
  rows->Close();
}

}  // namespace

void RunSql(Input input) {
  SmallDatabase small;
  dao::Database& database = small.Open();
  std::size_t count = 0;
  bool isChanged = false;
  for (const Input line : SplitLines(input)) {
    if (++count > kMostStatements) break;
    const std::u16string statement = TextOf(line);
    small.BeginPatience();
    const bool isDone = Attempt([&] { database.Execute(statement, count % 2 == 0 ? 0 : dao::dbFailOnError); });
    isChanged = isChanged || isDone;
    small.BeginPatience();
    if (!isDone) Attempt([&] { Read(database, statement); });
  }
  small.Close();
  if (isChanged) small.Check();
}

}  // namespace zimbrat::fuzz

// jetsql: runs statements on a database file with the embedded engine.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "csv.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/secret.h"
#include "platform/system.h"
#include "platform/text.h"

namespace {

using namespace zimbrat;

enum Status { kDone = 0, kFailed = 1, kMisused = 2 };

constexpr const char16_t* kHelp =
    u"Użycie: jetsql [--haslo H] [--read-only] PLIK INSTRUKCJA...\n"
    u"\n"
    u"Wykonuje instrukcje Jet SQL na bazie danych Jet 4 (.mdb), jedną po drugiej. Wiersze instrukcji\n"
    u"SELECT wypisuje jako CSV (RFC 4180, UTF-8, z wierszem nagłówka), po każdej innej „N rows changed”.\n"
    u"Instrukcja, która się nie uda, niczego nie zmienia i kończy pracę.\n"
    u"\n"
    u"  --haslo H     hasło bazy danych (także w zmiennej ZIMBRAT_HASLO)\n"
    u"  --read-only   otwiera plik tylko do odczytu\n"
    u"  --help, --pomoc\n"
    u"\n"
    u"Stan wyjścia: 0 wykonano, 1 błąd (numer i opis), 2 złe użycie.\n";

struct Wishes {
  std::u16string path;
  platform::Secret password;
  std::vector<std::u16string> statements;
  bool readOnly = false;
  bool help = false;
};

// Nothing for wrong usage.
std::optional<Wishes> ReadWishes(platform::System& system) {
  Wishes wishes;
  std::u16string variable = system.environment->Variable(u"ZIMBRAT_HASLO");
  wishes.password = variable;
  platform::Wipe(variable);
  std::vector<std::u16string> words = system.console->Arguments();
  std::size_t at = 0;
  for (; at < words.size() && words[at].starts_with(u"--"); ++at) {
    if (words[at] == u"--haslo" && at + 1 < words.size()) {
      wishes.password = words[++at];
      system.console->HideArgument(at);
      platform::Wipe(words[at]);
    } else if (words[at] == u"--read-only") {
      wishes.readOnly = true;
    } else if (words[at] == u"--help" || words[at] == u"--pomoc") {
      wishes.help = true;
      return wishes;
    } else {
      return std::nullopt;
    }
  }
  if (words.size() < at + 2) return std::nullopt;
  wishes.path = words[at];
  wishes.statements.assign(words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end());
  return wishes;
}

// Null for a statement that shows no rows: SELECT INTO begins like one that does.
std::shared_ptr<dao::Recordset> FindRows(dao::Database& database, std::u16string_view statement) {
  const std::size_t start = statement.find_first_not_of(u" \t\r\n(");
  const bool mayShow = start != statement.npos &&
                       platform::EqualIgnoringCase(statement.substr(start, 6), u"SELECT");
  if (!mayShow) return nullptr;
  try {
    return database.OpenRecordset(statement, dao::dbOpenSnapshot);
  } catch (const platform::RunTimeError& error) {
    if (error.Number() != platform::kErrInvalidOperation) throw;
    return nullptr;
  }
}

void WriteRows(platform::Console& console, const std::shared_ptr<dao::Recordset>& rows) {
  console.WriteOutput(tools::CsvHeader(*rows));
  for (; !rows->EndOfFile(); rows->MoveNext()) console.WriteOutput(tools::CsvRow(*rows));
  rows->Close();
}

void RunStatements(platform::System& system, const Wishes& wishes) {
  const auto engine = jet::MakeEngine(*system.files, *system.clock, {});
  const auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  platform::Secret connect(u";pwd=");
  connect.Append(wishes.password);
  connect.Append(u";");
  const auto database =
      workspace->OpenDatabase(wishes.path, true, wishes.readOnly, connect);
  for (const std::u16string& statement : wishes.statements) {
    if (const auto rows = FindRows(*database, statement)) {
      WriteRows(*system.console, rows);
      continue;
    }
    database->Execute(statement, dao::dbFailOnError);
    system.console->WriteOutput(platform::DecimalText(database->RecordsAffected()) + u" rows changed\n");
  }
  database->Close();
}

}  // namespace

int main(int argc, char** argv) {
  platform::System system = platform::MakeSystem(argc, argv);
  const std::optional<Wishes> wishes = ReadWishes(system);
  if (!wishes || wishes->help) {
    wishes ? system.console->WriteOutput(kHelp) : system.console->WriteError(kHelp);
    return wishes ? kDone : kMisused;
  }
  try {
    RunStatements(system, *wishes);
    return kDone;
  } catch (const std::exception&) {
    const auto error = platform::CurrentRunTimeError();
    system.console->WriteError(platform::DecimalText(error.Number()) + u" " + error.Description() + u"\n");
    return kFailed;
  }
}

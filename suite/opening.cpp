#include "suite/ModPrgFun.h"

#include "suite/manners.h"
#include "platform/dao_connect.h"
#include "platform/error_numbers.h"
#include "platform/text.h"

#include <memory>

namespace zimbrat::suite {
namespace {

using platform::RunTimeError;

constexpr std::u16string_view kOpenErrorTitle = u"Błąd otwarcia bazy";
// What the file dialog holds before anything is chosen.
constexpr std::u16string_view kBareFilter = u"*.mdb";

using Session = std::unique_ptr<DatabaseSession>;

std::optional<RunTimeError> TryOpen(ProgramState& state, std::u16string_view path,
                                    std::u16string_view password, Session& session) {
  return Attempt([&] {
    if (path == kBareFilter) throw platform::OwnError(platform::kErrBadFileName);
    session = std::make_unique<DatabaseSession>(state, path, dao::ConnectText(password));
  });
}

void TellOpenError(ProgramState& state, std::u16string_view path, const RunTimeError& error) {
  if (error.Number() == platform::kErrFileInUse) {
    state.on.host.ShowMessage(
        u"Baza: " + std::u16string(path) +
            u" została otwarta w trybie wyłączności przez innego użytkownika. Zamknij bazę danych "
            u"i spróbuj ponownie.",
        platform::kMsgExclamation, u"");
    return;
  }
  state.openingError = error;
  state.on.host.ShowMessage(u"Baza nie może zostać otwarta. Błąd Nr " +
                                platform::DecimalText(error.Number()) + u" - " +
                                error.Description(),
                            platform::kMsgExclamation, u"");
}

// What closing the rows comes to says nothing of the database.
std::optional<RunTimeError> TryRead(DatabaseSession& session, std::u16string_view query) {
  std::shared_ptr<dao::Recordset> rows;
  const auto error = Attempt([&] { rows = session.Database().OpenRecordset(query); });
  if (!error) Attempt([&] { rows->Close(); });
  return error;
}

// One catalogue table: its query and what is said when it is locked or missing.
struct CatalogueTable {
  std::u16string_view query;
  std::u16string_view locked;
  std::u16string_view missing;
};

constexpr CatalogueTable kCatalogueTables[] = {
    {u"SELECT * FROM dbprg",
     u" lub tabela została otwarta w trybie wyłączności przez innego użytkownika. Program nie może "
     u"zidentyfikować struktury bazy. Zamknij bazę i spróbuj ponownie.",
     u" nie posiada struktury danych dla programów pakietu Kalmix. Baza nie może zostać otwarta."},
    {u"SELECT * FROM dboso",
     u" lub tabela została otwarta w trybie wyłączności przez innego użytkownika. Program nie może "
     u"zidentyfikować struktury bazy. Baza nie zostanie dołączona do listy podręcznej.",
     u" nie posiada struktury danych dla programu: ZR. Baza nie może zostać otwarta. Program może "
     u"otworzyć tylko bazy utworzone przez Zimbrat bazy."},
};

bool Identify(ProgramState& state, DatabaseSession& session, std::u16string_view path) {
  // The engine's own name for the file, its full path.
  std::u16string name(path);
  Attempt([&] { name = session.Database().Name(); });
  for (const CatalogueTable& table : kCatalogueTables) {
    const auto error = TryRead(session, table.query);
    if (!error) continue;
    const bool isLocked = error->Number() == platform::kErrTableLocked;
    state.on.host.ShowMessage(
        u"Baza: " + name + std::u16string(isLocked ? table.locked : table.missing),
        platform::kMsgExclamation, kOpenErrorTitle);
    return false;
  }
  return true;
}

}  // namespace

std::u16string ChooseDatabaseFile(ProgramState& state, platform::Shell& shell,
                                  std::u16string_view folder) {
  // Hide read-only, prompt to create, no read-only return: OFN_HIDEREADONLY, OFN_CREATEPROMPT and
  // OFN_NOREADONLYRETURN, bit by bit.
  constexpr unsigned kFlags = 40964;
  std::u16string chosen;
  Attempt([&] {
    const std::u16string own = state.on.environment.ProgramFolder();
    std::u16string file = shell.OpenFileDialog({.title = u"Wskaż bazę danych programu ZR",
                                                .folder = folder.empty() ? own : std::u16string(folder),
                                                .name = std::u16string(kBareFilter),
                                                .filter = u"Baza danych MS Access (*.mdb)|Pakiet.mdb",
                                                .flags = kFlags});
    if (!platform::Contains(file, u"*")) chosen = std::move(file);
    state.on.environment.SetCurrentFolder(own);
  });
  return chosen;
}

bool OpenAndIdentify(ProgramState& state, std::u16string_view path, platform::Secret& password) {
  Session session;
  state.openingError.reset();
  auto error = TryOpen(state, path, password, session);
  if (error && error->Number() == platform::kErrInvalidPassword) {
    auto typed = state.on.host.AskPassword(path);
    state.databasePassword = typed ? std::move(*typed) : platform::Secret();
    password = state.databasePassword.View();
    if (typed) error = TryOpen(state, path, password, session);
  }
  if (error) {
    TellOpenError(state, path, *error);
    return false;
  }
  const bool identified = Identify(state, *session, path);
  Attempt([&] { session->Close(); });
  return identified;
}

bool OpenAndIdentify(ProgramState& state, std::u16string_view path) {
  platform::Secret password(state.databasePassword.View());
  return OpenAndIdentify(state, path, password);
}

}  // namespace zimbrat::suite

// Database, Workspace and DBEngine.
#include "call.h"
#include "compaction.h"
#include "platform/error_numbers.h"
#include "platform/text.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

// --- Database ---

void GiveFileVersion(Call& call) {
  const std::u16string version = call.It<dao::Database>().Version();
  call.Give(call.Home()->IsNewer() ? std::u16string(u"12.0") : version);
}

void OpenRecordset(Call& call) {
  const std::int32_t type = call.IsMissing(1) ? dao::dbOpenDynaset : call.Number(1);
  call.Give(call.It<dao::Database>().OpenRecordset(call.Text(0), type));
}

std::set<std::u16string> NamesOfTables(dao::Database& database) {
  std::set<std::u16string> names;
  const auto tables = database.TableDefs();
  for (int i = 0; i < tables->Count(); ++i) names.insert(tables->Item(i)->Name());
  return names;
}

void Execute(Call& call) {
  auto& database = call.It<dao::Database>();
  const std::set<std::u16string> before = NamesOfTables(database);
  database.Execute(call.Text(0), call.Number(1));
  for (const std::u16string& name : NamesOfTables(database)) {
    if (!before.contains(name)) call.Home()->unseenTables.insert(name);
  }
}

void CloseDatabase(Call& call) { call.Home()->Close(); }

constexpr Member kDatabaseMembers[] = {
    Read<&dao::Database::TableDefs>(L"TableDefs"),
    Read<&dao::Database::Relations>(L"Relations"),
    Read<&dao::Database::Name>(L"Name"),
    Property(L"Version", &GiveFileVersion),
    Read<&dao::Database::Updatable>(L"Updatable"),
    Read<&dao::Database::RecordsAffected>(L"RecordsAffected"),
    Method<&dao::Database::CreateTableDef>(L"CreateTableDef", 0, 4),
    Method<&dao::Database::CreateRelation>(L"CreateRelation", 0, 4),
    Method(L"OpenRecordset", 1, 3, &OpenRecordset),
    Method(L"Execute", 1, 1, &Execute),
    Method<&dao::Database::NewPassword>(L"NewPassword", 2),
    Method(L"Close", 0, 0, &CloseDatabase),
};
constexpr Class kDatabase = {L"Database", u"DAO.Database", kDatabaseMembers};

// --- Workspace ---

struct Session {
  explicit Session(ServerState& state) : on(state) {}
  ~Session() { on.unclosed += isClosed ? 0 : 1; }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  ServerState& on;
  std::u16string name;
  std::shared_ptr<dao::Workspace> workspace;
  std::vector<std::weak_ptr<OpenDatabase>> databases;
  bool isClosed = false;
};

Session& SessionOf(Call& call) {
  auto& session = call.It<Session>();
  if (session.isClosed) Fail(kErrObjectInvalid, call.Source());
  return session;
}

void GiveDatabase(Call& call, std::shared_ptr<dao::Database> database, bool isNewer) {
  auto home = std::make_shared<OpenDatabase>(*call.State(), database, isNewer);
  call.It<Session>().databases.push_back(home);
  call.GiveObject(kDatabase, std::move(database), std::move(home));
}

void OpenDatabaseFile(Call& call) {
  auto database = SessionOf(call).workspace->OpenDatabase(call.Text(0), call.Flag(1), call.Flag(2), call.Text(3));
  const bool isNewer = call.State()->newerFiles.contains(UpperCase(database->Name()));
  GiveDatabase(call, std::move(database), isNewer);
}

void CreateDatabaseFile(Call& call) {
  const std::int32_t options = call.Number(2);
  const bool isNewer = call.State()->makesNewerFiles && (options & dao::dbVersion40) == 0;
  // Newer formats are not encoded in that way.
  const std::int32_t rest = isNewer ? options & ~dao::dbEncrypt : options & ~dao::dbVersion40;
  auto database = SessionOf(call).workspace->CreateDatabase(call.Text(0), call.Text(1), rest);
  auto& newer = call.State()->newerFiles;
  const std::u16string path = UpperCase(database->Name());
  if (isNewer) {
    newer.insert(path);
  } else {
    newer.erase(path);
  }
  GiveDatabase(call, std::move(database), isNewer);
}

// Databases of which objects are left stay open, though none of their members works any more.
void CloseWorkspace(Call& call) {
  Session& session = SessionOf(call);
  session.isClosed = true;
  for (const auto& held : session.databases) {
    const OpenDatabasePtr database = held.lock();
    if (database && !database->IsClosed()) database->Close();
  }
}

constexpr Member kWorkspaceMembers[] = {
    Property(L"Name", [](Call& call) { call.Give(SessionOf(call).name); }),
    Method(L"OpenDatabase", 1, 3, &OpenDatabaseFile),
    Method(L"CreateDatabase", 2, 1, &CreateDatabaseFile),
    Method(L"BeginTrans", 0, 0, [](Call& call) { SessionOf(call).workspace->BeginTrans(); }),
    Method(L"CommitTrans", 0, 1, [](Call& call) { SessionOf(call).workspace->CommitTrans(); }),
    Method(L"Rollback", 0, 0, [](Call& call) { SessionOf(call).workspace->Rollback(); }),
    Method(L"Close", 0, 0, &CloseWorkspace),
};
constexpr Class kWorkspace = {L"Workspace", u"DAO.Workspace", kWorkspaceMembers, false};

// --- Errors ---

constexpr Member kErrorMembers[] = {
    Property(L"Description", [](Call& call) { call.Give(call.It<RunTimeError>().Description()); }),
    Property(L"Number", [](Call& call) { call.Give(call.It<RunTimeError>().Number()); }),
    Property(L"Source", [](Call& call) { call.Give(call.It<RunTimeError>().Source()); }),
};
constexpr Class kError = {L"Error", u"DAO.Error", kErrorMembers};

void GiveError(Call& call) {
  const auto& errors = call.State()->errors;
  const std::int32_t position = call.Number(0);
  if (position < 0 || position >= static_cast<std::int32_t>(errors.size())) Fail(kErrItemNotFound, call.Source());
  call.GiveObject(kError, std::make_shared<RunTimeError>(errors[static_cast<std::size_t>(position)]));
}

constexpr Member kErrorsMembers[] = {
    {L"Item", Kind::Property, 1, 0, &GiveError},
    Property(L"Count", [](Call& call) { call.Give(static_cast<std::int16_t>(call.State()->errors.size())); }),
    Method(L"Refresh", 0, 0, [](Call&) {}),
};
constexpr Class kErrors = {L"Errors", u"DAO.Errors", kErrorsMembers};

// --- DBEngine ---

void CreateWorkspace(Call& call) {
  auto workspace = call.State()->engine->CreateWorkspace(call.Text(0), call.Text(1), call.Text(2));
  auto session = std::make_shared<Session>(*call.State());
  session->name = call.Text(0);
  session->workspace = std::move(workspace);
  call.GiveObject(kWorkspace, std::move(session));
}

void RepairDatabase(Call& call) {
  if (!call.State()->repairsInPlace) Fail(kErrNotSupported, call.Source());
  call.State()->engine->RepairDatabase(call.Text(0));
}

void CompactDatabase(Call& call) {
  if (!call.IsMissing(2) || !call.IsMissing(3)) Fail(kErrInvalidArgument, call.Source());
  Compact(*call.State(), call.Text(0), call.Text(1), call.Text(4));
}

constexpr Member kEngineMembers[] = {
    Property(L"Version", [](Call& call) {
      call.Give(std::u16string(call.State()->makesNewerFiles ? u"16.0" : u"3.6"));
    }),
    Property(L"Errors", [](Call& call) { call.GiveObject(kErrors, call.State()); }),
    Method(L"CreateWorkspace", 3, 1, &CreateWorkspace),
    Method(L"RepairDatabase", 1, 0, &RepairDatabase),
    Method(L"CompactDatabase", 2, 3, &CompactDatabase),
    Method(L"Idle", 0, 1, [](Call&) {}),
    Method(L"SetOption", 2, 0, [](Call&) {}),
};
constexpr Class kEngine = {L"DBEngine", u"DAO.DbEngine", kEngineMembers, false};

}  // namespace

const Class& EngineClass() { return kEngine; }
template <> const Class& ClassOf<dao::Database>() { return kDatabase; }

}  // namespace zimbrat::tests

// Engine, Workspace and Database.
#include <algorithm>

#include "connection.h"
#include "dao_recordset.h"
#include "dao_relation.h"
#include "dao_table.h"
#include "jet/engine.h"
#include "jet/repair.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

constexpr std::size_t kMaxPath = 255;
constexpr int kMaxTransactions = 5;

struct Surroundings {
  platform::Files& files;
  platform::Clock& clock;
  std::function<void()> pulse;
};
using SurroundingsPtr = std::shared_ptr<Surroundings>;

// The value behind `key=` in a text of parts separated by ";"; nothing when it is not there. A part of
// the text itself: of a password no copy is made.
std::optional<std::u16string_view> FindPart(std::u16string_view text, std::u16string_view key) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(u';'), text.size());
    const std::u16string_view part = text.substr(0, end);
    const std::size_t sign = part.find(u'=');
    if (sign != part.npos && EqualIgnoringCase(TrimBlanks(part.substr(0, sign)), key)) {
      return part.substr(sign + 1);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return std::nullopt;
}

// General sort order is all that this engine can index. Gives the password in it.
std::u16string_view CheckLocale(std::u16string_view locale) {
  const std::u16string_view password = FindPart(locale, u"pwd").value_or(u"");
  if (!FindPart(locale, u"LANGID")) {
    if (!password.empty() || FindPart(locale, u"pwd")) return password;  // alone: the default locale
    Raise(kErrInvalidLocale);
  }
  if (!FindPart(locale, u"COUNTRY")) Raise(kErrNoCountryCode);
  if (!FindPart(locale, u"CP")) Raise(kErrInvalidLocale);
  if (!EqualIgnoringCase(*FindPart(locale, u"LANGID"), u"0x0409")) Raise(kErrInvalidArgument);
  return password;
}

std::u16string CheckPath(platform::Files& files, std::u16string_view path) {
  if (path.empty()) Raise(kErrInvalidFileName);
  if (path.size() > kMaxPath || path.find(u'\0') != path.npos) Raise(kErrBadDatabaseName, path);
  const std::u16string full = files.RealPath(path);
  const std::u16string folder(FolderOfPath(full));
  if (!folder.empty() && !files.IsFolder(folder)) Raise(kErrInvalidPath, path);
  return full;
}

class JetDatabase : public dao::Database {
 public:
  explicit JetDatabase(ConnectionPtr connection)
      : connection_(std::move(connection)),
        tables_(MakeTableDefs(connection_)),
        relations_(MakeRelations(connection_)) {}
  ~JetDatabase() override {
    try {
      connection_->Close();
    } catch (const std::exception&) {
      // Abandoned without Close: nobody is left to be told.
    }
  }

  std::u16string Name() override {
    return Do([&] { return connection_->Name(); });
  }
  std::u16string Version() override {
    return Do([&] { return std::u16string(u"4.0"); });
  }
  bool Updatable() override {
    return Do([&] { return connection_->File().IsUpdatable(); });
  }
  std::int32_t RecordsAffected() override {
    return Do([&] { return affected_; });
  }
  std::shared_ptr<dao::Collection<dao::TableDef>> TableDefs() override {
    return Do([&] { return tables_; });
  }
  std::shared_ptr<dao::Collection<dao::Relation>> Relations() override {
    return Do([&] { return relations_; });
  }
  std::shared_ptr<dao::TableDef> CreateTableDef(std::u16string_view name) override {
    return Do([&] {
      auto state = std::make_shared<TableState>();
      state->connection = connection_;
      state->name = name;
      return std::make_shared<JetTableDef>(std::move(state));
    });
  }
  std::shared_ptr<dao::Relation> CreateRelation(std::u16string_view name, std::u16string_view table,
                                                std::u16string_view foreignTable,
                                                const dao::Value& attributes) override {
    return Do([&] {
      return MakeRelation(connection_, name, table, foreignTable,
                          dao::NumberArgument(attributes, dao::kSourceDatabase));
    });
  }
  std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view source, std::int32_t type) override {
    return Do([&] { return jet::OpenRecordset(connection_, source, type); });
  }
  void Execute(std::u16string_view statement, std::int32_t options) override {
    Do([&] {
      const bool failOnError = (options & dao::dbFailOnError) != 0;
      connection_->Change([&] { affected_ = connection_->Queries().Execute(statement, failOnError); });
    });
  }
  void NewPassword(std::u16string_view oldPassword, std::u16string_view newPassword) override {
    Do([&] {
      if (!connection_->IsExclusive()) Raise(kErrNotExclusive);
      connection_->Change([&] { connection_->File().ChangePassword(oldPassword, newPassword); });
    });
  }
  void Close() override {
    Do([&] { connection_->Close(); });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceDatabase, [&] {
      connection_->File();
      return work();
    });
  }

  ConnectionPtr connection_;
  std::shared_ptr<dao::Collection<dao::TableDef>> tables_;
  std::shared_ptr<dao::Collection<dao::Relation>> relations_;
  std::int32_t affected_ = 0;
};

class JetWorkspace : public dao::Workspace {
 public:
  explicit JetWorkspace(SurroundingsPtr surroundings) : surroundings_(std::move(surroundings)) {}

  std::shared_ptr<dao::Database> OpenDatabase(std::u16string_view path, bool exclusive, bool readOnly,
                                              std::u16string_view connect) override {
    return Do([&]() -> std::shared_ptr<dao::Database> {
      const std::u16string full = CheckPath(surroundings_->files, path);
      const std::u16string_view password = FindPart(connect, u"pwd").value_or(u"");
      auto file = OpenDatabaseFile(surroundings_->files, surroundings_->clock, full, readOnly, password,
                                   surroundings_->pulse);
      return Remember(std::make_shared<Connection>(std::move(file), full, exclusive));
    });
  }

  std::shared_ptr<dao::Database> CreateDatabase(std::u16string_view path, std::u16string_view locale,
                                                std::int32_t options) override {
    return Do([&]() -> std::shared_ptr<dao::Database> {
      if ((options & ~(dao::dbEncrypt | dao::dbVersion40)) != 0) Raise(kErrInvalidArgument);
      const std::u16string_view password = CheckLocale(locale);
      std::u16string full = CheckPath(surroundings_->files, path);
      if (NameOfPath(full).find(u'.') == std::u16string_view::npos) full += u".mdb";
      if (surroundings_->files.State(full)) Raise(kErrDatabaseExists, full);
      auto file = CreateDatabaseFile(surroundings_->files, surroundings_->clock, full,
                                     (options & dao::dbEncrypt) != 0, password, surroundings_->pulse);
      return Remember(std::make_shared<Connection>(std::move(file), full, true));
    });
  }

  void BeginTrans() override {
    Do([&] {
      if (depth_ >= kMaxTransactions) Raise(kErrTooManyTransactions);
      ForEach([](Connection& connection) { connection.Begin(); });
      ++depth_;
    });
  }
  void CommitTrans() override {
    EndTransaction([](Connection& connection) { connection.Commit(); });
  }
  void Rollback() override {
    EndTransaction([](Connection& connection) { connection.Rollback(); });
  }
  void Close() override {
    Do([&] {
      closed_ = true;
      ForEach([](Connection& connection) { connection.Close(); });
    });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceWorkspace, [&] {
      if (closed_) Raise(kErrObjectInvalid);
      return work();
    });
  }

  template <class End>
  void EndTransaction(End end) {
    Do([&] {
      if (depth_ == 0) Raise(kErrNoTransaction);
      ForEach(end);
      --depth_;  // a transaction that cannot be committed is still to be rolled back
    });
  }

  // A database opened within a transaction takes part in those that begin after it.
  std::shared_ptr<dao::Database> Remember(const ConnectionPtr& connection) {
    std::erase_if(connections_, [](const std::weak_ptr<Connection>& held) { return held.expired(); });
    connections_.push_back(connection);
    return std::make_shared<JetDatabase>(connection);
  }

  template <class Work>
  void ForEach(Work work) {
    for (const std::weak_ptr<Connection>& held : connections_) {
      const ConnectionPtr connection = held.lock();
      if (connection && connection->IsOpen()) work(*connection);
    }
  }

  SurroundingsPtr surroundings_;
  std::vector<std::weak_ptr<Connection>> connections_;
  int depth_ = 0;
  bool closed_ = false;
};

class JetEngine : public dao::Engine {
 public:
  explicit JetEngine(SurroundingsPtr surroundings) : surroundings_(std::move(surroundings)) {}

  std::u16string Name() override { return dao::kEmbeddedEngine; }
  std::u16string Version() override { return u"4.0"; }

  std::shared_ptr<dao::Workspace> CreateWorkspace(std::u16string_view, std::u16string_view user,
                                                  std::u16string_view password) override {
    return Member(dao::kSourceEngine, [&] {
      if (!EqualIgnoringCase(user, u"Admin") || !password.empty()) Raise(kErrInvalidAccount);
      return std::make_shared<JetWorkspace>(surroundings_);
    });
  }

  dao::RepairOutcome RepairDatabase(std::u16string_view path) override {
    return Member(dao::kSourceEngine, [&] {
      const RepairReport report =
          RepairDatabaseFile(surroundings_->files, surroundings_->clock,
                             CheckPath(surroundings_->files, path), RepairOf::Damaged, surroundings_->pulse);
      dao::RepairOutcome outcome{HasErrors(report.found), {}, report.keptFile};
      for (const RepairedTable& table : report.tables) {
        if (!table.IsHarmed()) continue;
        for (std::u16string& line : LinesOf(table)) outcome.losses.push_back(std::move(line));
      }
      return outcome;
    });
  }

 private:
  SurroundingsPtr surroundings_;
};

}  // namespace

std::shared_ptr<dao::Engine> MakeEngine(platform::Files& files, platform::Clock& clock,
                                        std::function<void()> pulse) {
  return std::make_shared<JetEngine>(
      std::make_shared<Surroundings>(Surroundings{files, clock, std::move(pulse)}));
}

}  // namespace zimbrat::jet

#include "dao_session.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dao_definitions.h"
#include "dao_recordset.h"

#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

constexpr std::u16string_view kJet4 = u"4.0";

// A database just closed may be in a state that prevents opening; it ends by itself.
constexpr int kOpenAttempts = 5;
constexpr std::uint32_t kOpenPause = 60;  // milliseconds

// The session with all that is open in it, shared by the workspace and its databases, so that it
// lasts as long as one of them.
class DaoSession {
 public:
  DaoSession(DaoContextPtr context, ComReference<IDispatch> object, Clock& clock)
      : clock_(clock),
        scope_(std::make_shared<DaoScope>(std::move(context))),
        object_(scope_, dao::kSourceWorkspace, std::move(object)) {}
  ~DaoSession() { object_.AskQuietly(u"Close"); }

  DaoObject& Object() { return object_; }
  const DaoScopePtr& Scope() const { return scope_; }

  // The scope of a database of the session.
  DaoScopePtr NewScope() {
    std::erase_if(databases_, [](const std::weak_ptr<DaoScope>& scope) { return scope.expired(); });
    auto scope = std::make_shared<DaoScope>(scope_->ContextPtr());
    databases_.push_back(scope);
    return scope;
  }

  // Transactions that are open are undone. Whatever it raises, no reference is left.
  void Close() {
    object_.Reference();
    for (const std::weak_ptr<DaoScope>& held : databases_) {
      if (const DaoScopePtr scope = held.lock()) scope->End();
    }
    const Ending ending{*scope_};
    object_.Ask(u"Close");
  }

  Clock& GetClock() { return clock_; }

 private:
  struct Ending {
    DaoScope& scope;
    ~Ending() { scope.End(); }
  };

  Clock& clock_;
  DaoScopePtr scope_;  // of the session and of its databases themselves
  DaoObject object_;
  std::vector<std::weak_ptr<DaoScope>> databases_;  // what belongs to each
};
using DaoSessionPtr = std::shared_ptr<DaoSession>;

// Undone unless committed.
class Transaction {
 public:
  explicit Transaction(DaoObject& workspace) : workspace_(workspace) {
    workspace_.Ask(u"BeginTrans");
  }
  ~Transaction() {
    if (!isCommitted_) workspace_.AskQuietly(u"Rollback");
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    workspace_.Ask(u"CommitTrans", NumberVariant(0));
    isCommitted_ = true;
  }

 private:
  DaoObject& workspace_;
  bool isCommitted_ = false;
};

// By its first word. The only SELECT that is executed is the one that makes a table.
bool ChangesDefinitions(std::u16string_view statement) {
  constexpr std::u16string_view kWords[] = {u"CREATE", u"ALTER", u"DROP", u"SELECT"};
  const std::size_t start = std::min(statement.find_first_not_of(u" \t\r\n"), statement.size());
  const std::u16string_view rest = statement.substr(start);
  return std::ranges::any_of(kWords, [&](std::u16string_view word) {
    return EqualIgnoringCase(rest.substr(0, word.size()), word);
  });
}

class DaoDatabase : public dao::Database, public DaoMembers {
 public:
  DaoDatabase(DaoSessionPtr session, ComReference<IDispatch> object)
      : DaoMembers(session->Scope(), dao::kSourceDatabase, std::move(object)),
        session_(std::move(session)),
        parts_(session_->NewScope()) {}
  ~DaoDatabase() override {
    parts_->End();
    object_.AskQuietly(u"Close");
    object_.GiveBack();  // before the session, which may be the last one to hold it
  }

  std::u16string Name() override { return Text(u"Name"); }
  std::u16string Version() override { return Text(u"Version"); }
  bool Updatable() override { return Flag(u"Updatable"); }
  std::int32_t RecordsAffected() override { return Number(u"RecordsAffected"); }

  std::shared_ptr<dao::Collection<dao::TableDef>> TableDefs() override {
    return Definitions(tables_, u"TableDefs", dao::kSourceTableDefs);
  }
  std::shared_ptr<dao::Collection<dao::Relation>> Relations() override {
    return Definitions(relations_, u"Relations", dao::kSourceRelations);
  }
  std::shared_ptr<dao::TableDef> CreateTableDef(std::u16string_view name) override {
    return std::make_shared<DaoTableDef>(parts_,
                                         object_.AskObject(u"CreateTableDef", TextVariant(name)));
  }
  std::shared_ptr<dao::Relation> CreateRelation(std::u16string_view name, std::u16string_view table,
                                                std::u16string_view foreignTable,
                                                const dao::Value& attributes) override {
    Variant number = NumberVariant(dao::NumberArgument(attributes, dao::kSourceDatabase));
    return std::make_shared<DaoRelation>(
        parts_, object_.AskObject(u"CreateRelation", TextVariant(name), TextVariant(table),
                                  TextVariant(foreignTable), std::move(number)));
  }
  std::shared_ptr<dao::Recordset> OpenRecordset(std::u16string_view source,
                                                std::int32_t type) override {
    return std::make_shared<DaoRecordset>(
        parts_, object_.AskObject(u"OpenRecordset", TextVariant(source), NumberVariant(type)));
  }

  void Execute(std::u16string_view statement, std::int32_t options) override {
    const bool isWhole = (options & dao::dbFailOnError) != 0;
    if (!isWhole || !ExecuteWhole(statement, options)) Run(statement, options);
    if (ChangesDefinitions(statement)) parts_->NoteChange();
  }
  void NewPassword(std::u16string_view oldPassword, std::u16string_view newPassword) override {
    object_.Ask(u"NewPassword", TextVariant(oldPassword), TextVariant(newPassword));
  }
  void Close() override {
    object_.Reference();
    parts_->End();
    const Releasing releasing{object_};
    object_.Ask(u"Close");
  }

 private:
  struct Releasing {
    DaoObject& object;
    ~Releasing() { object.GiveBack(); }
  };

  // One of each for the database: it knows how far it has followed the changes.
  template <class C>
  const std::shared_ptr<C>& Definitions(std::shared_ptr<C>& kept, const char16_t* member,
                                        std::u16string_view source) {
    object_.Reference();
    if (kept) return kept;
    kept = std::make_shared<C>(parts_, source, object_.AskObject(member), Follows::Changes);
    return kept;
  }

  void Run(std::u16string_view statement, std::int32_t options) {
    object_.Ask(u"Execute", TextVariant(statement), NumberVariant(options));
  }

  // In a transaction of its own: the engines do not promise that a statement which fails leaves
  // nothing. False, with nothing done, for what has to go without one.
  bool ExecuteWhole(std::u16string_view statement, std::int32_t options) {
    object_.Reference();
    try {
      Transaction transaction(session_->Object());
      Run(statement, options);
      transaction.Commit();
      return true;
    } catch (const RunTimeError& error) {
      const bool isTooDeep = error.Number() == kErrTooManyTransactions;
      if (isTooDeep || error.Number() == kErrNotInTransaction) return false;
      throw;
    }
  }

  DaoSessionPtr session_;
  DaoScopePtr parts_;
  std::shared_ptr<DaoCollection<dao::TableDef, DaoTableDef>> tables_;
  std::shared_ptr<DaoCollection<dao::Relation, DaoRelation>> relations_;
};

class DaoWorkspace : public dao::Workspace {
 public:
  explicit DaoWorkspace(DaoSessionPtr session) : session_(std::move(session)) {}

  std::shared_ptr<dao::Database> OpenDatabase(std::u16string_view path, bool exclusive,
                                              bool readOnly, std::u16string_view connect) override {
    for (int left = kOpenAttempts - 1;; --left) {
      try {
        return OpenOnce(path, exclusive, readOnly, connect);
      } catch (const RunTimeError& error) {
        const bool isPassing =
            error.Number() == kErrBeingClosed || error.Number() == kErrBeingClosedByUser;
        if (!isPassing || left == 0) throw;
      }
      session_->GetClock().Sleep(kOpenPause);
    }
  }

  std::shared_ptr<dao::Database> CreateDatabase(std::u16string_view path,
                                                std::u16string_view locale,
                                                std::int32_t options) override {
    // Newer engines make the files of Access 2007 unless they are told; DAO 3.6 may be told too.
    options |= dao::dbVersion40;
    const auto database = std::make_shared<DaoDatabase>(
        session_, Object().AskObject(u"CreateDatabase", TextVariant(path), TextVariant(locale),
                                     NumberVariant(options)));
    const std::u16string version = database->Version();
    if (version != kJet4) {
      database->Close();
      Object().Raise(kErrUnrecognizedFormat, path, u" (" + version + u")");
    }
    return database;
  }

  void BeginTrans() override { Object().Ask(u"BeginTrans"); }
  void CommitTrans() override { Object().Ask(u"CommitTrans"); }
  void Rollback() override { Object().Ask(u"Rollback"); }
  void Close() override { session_->Close(); }

 private:
  DaoObject& Object() { return session_->Object(); }

  std::shared_ptr<dao::Database> OpenOnce(std::u16string_view path, bool exclusive, bool readOnly,
                                          std::u16string_view connect) {
    Variant connection = connect.empty() ? MissingVariant() : TextVariant(connect);
    return std::make_shared<DaoDatabase>(
        session_, Object().AskObject(u"OpenDatabase", TextVariant(path), FlagVariant(exclusive),
                                     FlagVariant(readOnly), std::move(connection)));
  }

  DaoSessionPtr session_;
};

}  // namespace

std::shared_ptr<dao::Workspace> MakeDaoWorkspace(DaoObject& engine, Clock& clock,
                                                 std::u16string_view name, std::u16string_view user,
                                                 std::u16string_view password) {
  ComReference<IDispatch> object = engine.AskObject(u"CreateWorkspace", TextVariant(name),
                                                    TextVariant(user), TextVariant(password));
  return std::make_shared<DaoWorkspace>(
      std::make_shared<DaoSession>(engine.Scope()->ContextPtr(), std::move(object), clock));
}

}  // namespace zimbrat::platform

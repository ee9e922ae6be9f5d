#include "small_database.h"

#include <string_view>

#include "base_databases.h"
#include "jet/check/check.h"
#include "jet/engine.h"
#include "outcome.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::fuzz {

namespace {

constexpr int kMostPulses = 20;
constexpr std::size_t kRoom = 16u << 20;

constexpr std::u16string_view kStatements[] = {
    u"CREATE TABLE T (Id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, A TEXT(20), N LONG, W CURRENCY, D DATETIME, "
    u"Z BIT, M MEMO)",
    u"CREATE TABLE J (Nr SHORT CONSTRAINT PrimaryKey PRIMARY KEY)",
    u"CREATE TABLE K (B BYTE, I SHORT, S REAL, F FLOAT, G GUID, X BINARY(4))",
    u"CREATE INDEX A ON T (A, N DESC)",
    u"INSERT INTO J VALUES (1)",
    u"INSERT INTO J VALUES (2)",
    u"INSERT INTO T (A, N, W, D, Z, M) VALUES ('Łódź', 1, 1.5, #2/3/2001#, True, String(600, 'm'))",
    u"INSERT INTO T (A, N, W, D) VALUES ('gęśl', -7, 0.0001, #2001-12-31 13:45:06#)",
    u"INSERT INTO T (A, N) VALUES ('O''Neil', Null)",
    u"INSERT INTO T (N, M) VALUES (31, 'nota')",
    u"INSERT INTO K (B, I, S, F) VALUES (1, 1, 0.5, 1e100)",
    u"INSERT INTO K (B, I, S, F) VALUES (255, 2, -1e30, 0)",
    u"INSERT INTO K (I, F) VALUES (1, -2.5)",
    u"INSERT INTO K (B) VALUES (0)",
};

tests::FileBytes MakeBytes() {
  tests::MemoryFiles files;
  tests::FakeClock clock;
  const auto workspace = jet::MakeEngine(files, clock, {})->CreateWorkspace(u"", u"Admin", u"");
  const auto database = workspace->CreateDatabase(kDatabasePath, dao::dbLangGeneral, 0);
  for (const std::u16string_view statement : kStatements) database->Execute(statement, dao::dbFailOnError);
  const auto relation = database->CreateRelation(
      u"JK", u"J", u"K", std::int32_t{dao::dbRelationUpdateCascade | dao::dbRelationDeleteCascade});
  const auto field = relation->CreateField(u"Nr");
  field->SetForeignName(u"I");
  relation->Fields()->Append(field);
  database->Relations()->Append(relation);
  database->Close();
  return files.BytesOf(kDatabasePath);
}

}  // namespace

SmallDatabase::SmallDatabase() {
  static const tests::FileBytes bytes = MakeBytes();
  files_.room = kRoom;
  files_.BytesOf(kDatabasePath) = bytes;
  workspace_ = jet::MakeEngine(files_, clock_, [this] { Pulse(); })->CreateWorkspace(u"", u"Admin", u"");
}

void SmallDatabase::Pulse() {
  if (++pulses_ > kMostPulses) throw platform::OwnError(platform::kErrUserInterrupt);
}

dao::Database& SmallDatabase::Open() {
  database_ = workspace_->OpenDatabase(kDatabasePath, true, false);
  return *database_;
}

void SmallDatabase::Close() {
  BeginPatience();
  database_->Close();
}

void SmallDatabase::Check() {
  for (const jet::Fault& fault : jet::CheckFile(files_, kDatabasePath)) {
    Fail(platform::Utf8FromUtf16(fault.place + u": " + fault.text));
  }
}

}  // namespace zimbrat::fuzz

#include "compaction.h"

#include "platform/error_numbers.h"
#include "platform/file_contents.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

constexpr const char16_t* kSource = u"DAO.DbEngine";

// A damaged catalogue does not matter; path, sharing, format and password do.
void RequireOpening(dao::Engine& engine, std::u16string_view path, std::u16string_view connect) try {
  engine.CreateWorkspace(u"", u"Admin", u"")->OpenDatabase(path, true, true, connect)->Close();
} catch (const RunTimeError& error) {
  if (error.Number() != kErrCannotOpenDatabase) throw RunTimeError(error.Number(), kSource, error.Description());
}

void Copy(Files& files, std::u16string_view source, std::u16string_view target) try {
  const auto from = files.Open(source, OpenMode::Read, Sharing::None);
  const auto to = files.Open(target, OpenMode::CreateNew, Sharing::None);
  CopyContents(*from, *to, {});
} catch (const RunTimeError& error) {
  if (error.Number() == kErrDiskFull) Fail(kErrNoDiskSpace, kSource);
  Fail(error.Number() == kErrPathNotFound ? kErrInvalidPath : kErrCannotOpenFile, kSource);
}

void ListLosses(dao::Engine& engine, std::u16string_view path, std::u16string_view connect,
                const std::vector<std::u16string>& losses) {
  const auto database = engine.CreateWorkspace(u"", u"Admin", u"")->OpenDatabase(path, true, false, connect);
  database->Execute(u"CREATE TABLE MSysCompactError (ErrorCode LONG, ErrorDescription MEMO, ErrorTable TEXT(255))");
  const auto rows = database->OpenRecordset(u"MSysCompactError");
  for (const std::u16string& loss : losses) {
    rows->AddNew();
    rows->Fields()->Item(u"ErrorDescription")->SetValue(loss);
    rows->Update();
  }
  rows->Close();
  database->Close();
}

}  // namespace

void Compact(ServerState& state, std::u16string_view source, std::u16string_view target, std::u16string_view connect) {
  RequireOpening(*state.engine, source, connect);
  if (state.files.State(target)) Fail(kErrDatabaseExists, kSource);
  Copy(state.files, source, target);
  const dao::RepairOutcome outcome = state.engine->RepairDatabase(target);
  if (!outcome.keptFile.empty()) state.files.Delete(outcome.keptFile);
  if (!outcome.losses.empty()) ListLosses(*state.engine, target, connect, outcome.losses);
}

}  // namespace zimbrat::tests

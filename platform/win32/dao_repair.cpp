#include "dao_repair.h"

#include <memory>
#include <optional>
#include <string>

#include "dao_session.h"

#include "platform/dao_connect.h"
#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/file_contents.h"
#include "platform/text.h"
#include "platform/working_file.h"

namespace zimbrat::platform {
namespace {

// Rows in which an engine tells what it did not save.
constexpr std::u16string_view kLossTables[] = {u"MSysCompactError", u"MSysCompactErrors"};
constexpr std::u16string_view kSystemTables = u"MSYS";
constexpr int kMostLosses = 3;  // told

class EngineRepair {
 public:
  EngineRepair(DaoObject& engine, const InstalledEngineNeeds& needs, std::u16string_view path)
      : engine_(engine), needs_(needs), path_(needs.files.RealPath(path)) {}

  void Run();

 private:
  template <class Work>
  void WithPassword(Work work);
  template <class Work>
  void InDatabase(const std::u16string& path, Work work);

  std::optional<int> FormerTables();
  void Repair(const std::u16string& copy);
  bool RepairCopy(const std::u16string& copy);
  void Verify(const std::u16string& copy, std::optional<int> formerTables);
  void RequireNoLoss(dao::Database& database, std::u16string_view table);
  [[noreturn]] void Refuse(std::u16string_view why) { engine_.Raise(kErrCannotRepair, u": " + std::u16string(why)); }
  void PutInPlace(WorkingFile& copy, const FileState& former);

  DaoObject& engine_;
  const InstalledEngineNeeds& needs_;
  std::u16string path_;
  Secret password_;
  bool isAsked_ = false;
};

// The first refusal makes somebody be asked; the second one stands.
template <class Work>
void EngineRepair::WithPassword(Work work) {
  try {
    return work();
  } catch (const RunTimeError& error) {
    if (error.Number() != kErrInvalidPassword || isAsked_) throw;
    isAsked_ = true;
    std::optional<Secret> password = needs_.password(path_);
    if (!password) throw;
    password_ = std::move(*password);
  }
  work();
}

template <class Work>
void EngineRepair::InDatabase(const std::u16string& path, Work work) {
  const auto workspace = MakeDaoWorkspace(engine_, needs_.clock, u"", u"Admin", u"");
  const auto database = workspace->OpenDatabase(path, true, false, dao::ConnectText(password_));
  work(*database);
  database->Close();
  workspace->Close();
}

int CountTables(dao::Database& database) {
  const auto tables = database.TableDefs();
  int users = 0;
  for (int i = 0; i < tables->Count(); ++i) {
    if (!UpperCase(tables->Item(i)->Name()).starts_with(kSystemTables)) ++users;
  }
  return users;
}

// Nothing for a file that does not open, which is why it is to be repaired.
std::optional<int> EngineRepair::FormerTables() {
  std::optional<int> count;
  try {
    WithPassword([&] { InDatabase(path_, [&](dao::Database& database) { count = CountTables(database); }); });
  } catch (const RunTimeError& error) {
    if (error.Number() == kErrInvalidPassword) throw;
  }
  return count;
}

// In place, on a copy. False, with no copy left, when the engine does not do it.
bool EngineRepair::RepairCopy(const std::u16string& copy) {
  {
    const auto from = needs_.files.Open(path_, OpenMode::Read, Sharing::None);
    const auto to = needs_.files.Open(copy, OpenMode::CreatePrivate, Sharing::None);
    CopyContents(*from, *to, needs_.pulse);
  }
  try {
    engine_.Ask(u"RepairDatabase", TextVariant(copy));
    return true;
  } catch (const RunTimeError& error) {
    const std::int32_t number = error.Number();
    if (number != kErrNotSupported && number != kErrNoSuchMember && number != kErrActionNotSupported) throw;
  }
  needs_.files.Delete(copy);
  return false;
}

void EngineRepair::Repair(const std::u16string& copy) {
  if (RepairCopy(copy)) return;
  needs_.pulse();
  WithPassword([&] {
    // What an attempt without the password left.
    if (needs_.files.State(copy)) needs_.files.Delete(copy);
    Variant connect = password_.IsEmpty() ? MissingVariant() : TextVariant(dao::ConnectText(password_));
    engine_.Ask(u"CompactDatabase", TextVariant(path_), TextVariant(copy), MissingVariant(), MissingVariant(),
                std::move(connect));
  });
}

void EngineRepair::RequireNoLoss(dao::Database& database, std::u16string_view table) {
  const auto tables = database.TableDefs();
  bool isThere = false;
  for (int i = 0; i < tables->Count() && !isThere; ++i) isThere = EqualIgnoringCase(tables->Item(i)->Name(), table);
  if (!isThere) return;
  std::u16string told = u"aparat bazy danych straciłby część danych";
  const auto rows = database.OpenRecordset(table, dao::dbOpenSnapshot);
  for (int left = kMostLosses; left > 0 && !rows->EndOfFile(); --left, rows->MoveNext()) {
    const dao::Value why = rows->Fields()->Item(u"ErrorDescription")->Value();
    if (const auto* text = std::get_if<std::u16string>(&why)) told.append(u"; ").append(*text);
  }
  rows->Close();
  Refuse(told + u". Plik pozostał bez zmian; więcej odzyskuje silnik wbudowany");
}

void EngineRepair::Verify(const std::u16string& copy, std::optional<int> formerTables) {
  InDatabase(copy, [&](dao::Database& database) {
    for (const std::u16string_view table : kLossTables) RequireNoLoss(database, table);
    const int tables = CountTables(database);
    if (formerTables && tables < *formerTables) {
      Refuse(u"z " + DecimalText(*formerTables) + u" tabel zostałoby " + DecimalText(tables));
    }
  });
}

// Held against writers from before the look at it to the rename.
void EngineRepair::PutInPlace(WorkingFile& copy, const FileState& former) {
  needs_.files.Open(copy.Path(), OpenMode::ReadWrite, Sharing::None)->Flush();
  auto held = needs_.files.Open(path_, OpenMode::Read, Sharing::None);
  const auto state = needs_.files.State(path_);
  const bool isSame = state && state->IsSameFile(former) && state->size == former.size && state->modified == former.modified;
  if (!isSame) Refuse(u"plik zmienił się w czasie naprawy");
  copy.PutInPlaceOf(path_, std::move(held));
}

void EngineRepair::Run() {
  WorkingFile copy(needs_.files, path_, kRepairSuffix);
  const std::optional<int> tables = FormerTables();
  const auto former = needs_.files.State(path_);
  needs_.pulse();
  Repair(copy.Path());
  needs_.pulse();
  Verify(copy.Path(), tables);
  needs_.pulse();
  if (former) PutInPlace(copy, *former);
}

}  // namespace

void RepairByEngine(DaoObject& engine, const InstalledEngineNeeds& needs, std::u16string_view path) {
  try {
    EngineRepair(engine, needs, path).Run();
  } catch (const std::exception&) {
    dao::RethrowAs(dao::kSourceEngine);
  }
}

}  // namespace zimbrat::platform

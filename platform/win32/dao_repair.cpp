#include "dao_repair.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "dao_session.h"
#include "stored_tables.h"

#include "platform/dao_connect.h"
#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/file_contents.h"
#include "platform/file_errors.h"
#include "platform/kept_file.h"
#include "platform/patience.h"
#include "platform/text.h"
#include "platform/working_file.h"

namespace zimbrat::platform {
namespace {

constexpr std::u16string_view kJet4 = u"4.0";

class EngineRepair {
 public:
  EngineRepair(DaoObject& engine, const InstalledEngineNeeds& needs, std::u16string_view path)
      : engine_(engine), needs_(needs), path_(needs.files.RealPath(path)) {}

  dao::RepairOutcome Run();

 private:
  template <class Work>
  void WithPassword(Work work);
  template <class Work>
  void InDatabase(const std::u16string& path, bool readOnly, std::u16string_view password,
                  Work work);
  void Patiently(const std::function<void()>& step) {
    platform::Patiently(needs_.clock, needs_.pulse, step);
  }

  FileState StateOfFile();
  std::optional<StoredTables> FormerTables();
  bool DoesRepair(const std::u16string& nothing);
  bool RepairCopy(const std::u16string& copy);
  void Compact(const std::u16string& copy);
  void Write(const std::u16string& copy);
  void Verify(const std::u16string& copy, const std::optional<StoredTables>& former);
  void Compare(dao::Database& copy, const std::optional<StoredTables>& former);
  bool IsProtected(const std::u16string& copy);
  std::unique_ptr<File> Hold();
  void PutInPlace(WorkingFile& copy, KeptFile& kept, const FileState& state,
                  std::unique_ptr<File> held);
  [[noreturn]] void Refuse(std::u16string_view why) {
    engine_.Raise(kErrCannotRepair, u": " + std::u16string(why));
  }

  DaoObject& engine_;
  const InstalledEngineNeeds& needs_;
  std::u16string path_;
  Secret password_;  // empty until the file turns out to be protected
  dao::RepairOutcome outcome_;
};

bool IsWrongPassword(const RunTimeError& error) {
  return error.Number() == kErrInvalidPassword;
}

template <class Work>
std::optional<RunTimeError> RefusalOf(Work work) {
  try {
    work();
    return std::nullopt;
  } catch (const RunTimeError& error) {
    if (!IsWrongPassword(error)) throw;
    return error;
  }
}

// With the password so far, with the one that is held, with one that is typed; then the refusal
// stands.
template <class Work>
void EngineRepair::WithPassword(Work work) {
  std::optional<RunTimeError> refusal = RefusalOf(work);
  for (const bool isTyped : {false, true}) {
    if (!refusal) return;
    std::optional<Secret> password = needs_.password(path_, isTyped);
    if (!password) continue;
    password_ = std::move(*password);
    refusal = RefusalOf(work);
  }
  if (refusal) throw *refusal;
}

template <class Work>
void EngineRepair::InDatabase(const std::u16string& path, bool readOnly,
                              std::u16string_view password, Work work) {
  const auto workspace = MakeDaoWorkspace(engine_, needs_.clock, u"", u"Admin", u"");
  const auto database = workspace->OpenDatabase(path, true, readOnly, dao::ConnectText(password));
  work(*database);
  database->Close();
  workspace->Close();
}

FileState EngineRepair::StateOfFile() {
  const std::optional<FileState> state = needs_.files.State(path_);
  if (!state) engine_.Raise(kErrCouldNotFindFile, path_);
  if (state->isReadOnly) throw FileError(kErrPathAccess, u"plik tylko do odczytu", path_);
  return *state;
}

// Errors that say nothing of what is in the file.
bool IsOfSurroundings(const RunTimeError& error) {
  constexpr std::int32_t kNumbers[] = {kErrCouldNotFindFile, kErrNoDiskSpace, kErrInvalidPassword,
                                       kErrDiskIo, kErrInvalidPath};
  const std::int32_t number = error.Number();
  return !error.Source().starts_with(u"DAO.") || IsSomebodyElses(number) ||
         std::ranges::find(kNumbers, number) != std::end(kNumbers);
}

// Nothing for a file that does not open, which is why it is to be repaired.
std::optional<StoredTables> EngineRepair::FormerTables() {
  std::optional<StoredTables> tables;
  try {
    Patiently([&] {
      WithPassword([&] {
        InDatabase(path_, true, password_,
                   [&](dao::Database& database) { tables = TablesOf(database); });
      });
    });
  } catch (const RunTimeError& error) {
    if (IsOfSurroundings(error)) throw;
    tables.reset();
  }
  return tables;
}

// An engine that repairs misses a file that is not there; the others refuse (3251), or do nothing.
bool EngineRepair::DoesRepair(const std::u16string& nothing) {
  try {
    engine_.Ask(u"RepairDatabase", TextVariant(nothing));
    return false;
  } catch (const RunTimeError& error) {
    return error.Number() == kErrCouldNotFindFile;
  }
}

// False when the engine refuses after all.
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
    if (error.Number() != kErrNotSupported) throw;
    return false;
  }
}

void EngineRepair::Compact(const std::u16string& copy) {
  // What an attempt before left.
  if (needs_.files.State(copy)) needs_.files.Delete(copy);
  Variant connect =
      password_.IsEmpty() ? MissingVariant() : TextVariant(dao::ConnectText(password_));
  engine_.Ask(u"CompactDatabase", TextVariant(path_), TextVariant(copy), MissingVariant(),
              MissingVariant(), std::move(connect));
}

void EngineRepair::Write(const std::u16string& copy) {
  if (DoesRepair(copy) && RepairCopy(copy)) return;
  Patiently([&] { WithPassword([&] { Compact(copy); }); });
}

void EngineRepair::Compare(dao::Database& copy, const std::optional<StoredTables>& former) {
  const std::u16string version = copy.Version();
  if (version != kJet4) Refuse(u"aparat bazy danych zapisał plik w formacie " + version);
  const StoredTables tables = TablesOf(copy);
  const std::u16string losses = TextOfNewLosses(former.value_or(StoredTables()), tables);
  if (!losses.empty()) {
    Refuse(u"aparat bazy danych straciłby część danych (" + losses +
           u"). Plik pozostał bez zmian; więcej odzyskuje silnik wbudowany");
  }
  if (!former && tables.rows.empty()) Refuse(u"aparat bazy danych nie odzyskał żadnej tabeli");
  std::u16string missing;
  outcome_.losses =
      former ? ShorterTables(*former, tables, missing)
             : std::vector<std::u16string>{u"tego, czego aparat bazy danych nie odczytał"};
  if (!missing.empty()) Refuse(u"po naprawie brakowałoby tabeli " + missing);
  outcome_.wasDamaged = !outcome_.losses.empty();
}

bool EngineRepair::IsProtected(const std::u16string& copy) {
  return RefusalOf([&] { InDatabase(copy, true, {}, [](dao::Database&) {}); }).has_value();
}

// Engines pass over a password that a file does not want, and not all of them keep it.
void EngineRepair::Verify(const std::u16string& copy, const std::optional<StoredTables>& former) {
  WithPassword([&] {
    InDatabase(copy, true, password_, [&](dao::Database& database) { Compare(database, former); });
  });
  if (password_.IsEmpty() || IsProtected(copy)) return;
  InDatabase(copy, false, {},
             [&](dao::Database& database) { database.NewPassword(u"", password_); });
  if (!IsProtected(copy)) Refuse(u"nie udało się zachować hasła bazy");
}

std::unique_ptr<File> EngineRepair::Hold() {
  std::unique_ptr<File> held;
  Patiently([&] { held = needs_.files.Open(path_, OpenMode::Read, Sharing::None); });
  return held;
}

// A rename that fails has let go of the file: what became of it meanwhile is looked at.
void EngineRepair::PutInPlace(WorkingFile& copy, KeptFile& kept, const FileState& state,
                              std::unique_ptr<File> held) {
  Patiently([&] { needs_.files.Open(copy.Path(), OpenMode::ReadWrite, Sharing::None)->Flush(); });
  Patiently([&] {
    if (!held) held = needs_.files.Open(path_, OpenMode::Read, Sharing::None);
    const FileState now = StateOfFile();
    const bool isSame =
        now.IsSameFile(state) && now.size == state.size && now.modified == state.modified;
    if (!isSame) Refuse(u"plik zmienił się w czasie naprawy");
    if (outcome_.wasDamaged) kept.Make(*held, needs_.pulse);
    copy.PutInPlaceOf(path_, std::move(held));
  });
  outcome_.keptFile = kept.Path();
}

dao::RepairOutcome EngineRepair::Run() {
  WorkingFile copy(needs_.files, path_, kRepairSuffix);
  KeptFile kept(needs_.files, path_, copy.Path());
  StateOfFile();
  const std::optional<StoredTables> former = FormerTables();
  needs_.pulse();
  Write(copy.Path());
  // The engine had the file for itself until now; from here to the rename nobody writes to it.
  std::unique_ptr<File> held = Hold();
  const FileState state = StateOfFile();
  // The engine made the copy with the rights of the folder.
  needs_.files.CopyAttributes(path_, copy.Path());
  needs_.pulse();
  Patiently([&] { Verify(copy.Path(), former); });
  needs_.pulse();
  PutInPlace(copy, kept, state, std::move(held));
  return outcome_;
}

}  // namespace

dao::RepairOutcome RepairByEngine(DaoObject& engine, const InstalledEngineNeeds& needs,
                                  std::u16string_view path) {
  try {
    return EngineRepair(engine, needs, path).Run();
  } catch (const std::exception&) {
    dao::RethrowAs(dao::kSourceEngine);
  }
}

}  // namespace zimbrat::platform

#include "jet/catalog/database_file.h"

#include <array>
#include <utility>

#include "jet/catalog/new_database.h"
#include "jet/file/errors.h"
#include "jet/file/lock_file.h"

namespace zimbrat::jet {

namespace {

constexpr std::uint64_t kMinPages = 6;

FileHeader OpenHeader(platform::File& file, std::u16string_view path, std::u16string_view given) {
  std::array<std::byte, kPageSize> page;
  if (file.ReadAt(0, page) < kPageSize) Raise(platform::kErrUnrecognizedFormat, path);
  const FileHeader header = DecodeHeader(page, path);
  if (file.Size() < kMinPages * kPageSize) RaiseDamaged(u"plik jest ucięty");
  const platform::Secret password = DecodePassword(page);
  if (!password.IsEmpty() && password.View() != given) Raise(platform::kErrInvalidPassword);
  return header;
}

// With a good header, a wrong page 2 means damage.
void CheckCatalogPage(Pager& pager) {
  if (Get8(pager.Get(kObjectsPage).Read(), 0) != kPageDefinition) {
    RaiseDamagedPage(kObjectsPage, u"nie zawiera definicji katalogu");
  }
}

}  // namespace

std::unique_ptr<platform::File> OpenUnused(platform::Files& files, std::u16string_view path, bool readOnly) {
  std::unique_ptr<platform::File> file;
  try {
    file = files.Open(path, readOnly ? platform::OpenMode::Read : platform::OpenMode::ReadWrite,
                      readOnly ? platform::Sharing::Readers : platform::Sharing::None);
  } catch (const platform::RunTimeError& error) {
    if (error.Number() != platform::kErrPermissionDenied) throw;
    RaiseInUse(path, FindDatabaseUser(files, path));
  }
  // Where the system lets us open what others share, their locks still tell of them.
  const std::optional<DatabaseUser> user = FindDatabaseUser(files, path);
  if (user && user->isPresent) RaiseInUse(path, user);
  return file;
}

DatabaseFile::DatabaseFile(platform::Files& files, platform::Clock& clock,
                           std::unique_ptr<platform::File> file, std::u16string path,
                           const FileHeader& header, bool readOnly)
    : clock_(clock),
      header_(header),
      readOnly_(readOnly),
      pager_(files, std::move(file), std::move(path), header.encodingKey),
      allocator_(pager_),
      catalog_({pager_, allocator_}, clock) {}

void DatabaseFile::RequireWritable() const {
  if (readOnly_) Raise(platform::kErrReadOnly);
  if (!header_.HasGeneralOrder()) RaiseForeignOrder();
}

void DatabaseFile::ChangePassword(std::u16string_view former, std::u16string_view password) {
  RequireWritable();
  PageRef page = pager_.GetHeader();
  if (former != DecodePassword(page.Read()).View()) Raise(platform::kErrInvalidPassword);
  WritePassword(page.Change(), password);
}

std::unique_ptr<DatabaseFile> OpenDatabaseFile(platform::Files& files, platform::Clock& clock,
                                               std::u16string_view path, bool readOnly,
                                               std::u16string_view password,
                                               const std::function<void()>& pulse) {
  const std::optional<platform::FileState> state = files.State(path);
  readOnly = readOnly || (state && state->isReadOnly);
  auto file = OpenUnused(files, path, readOnly);
  const FileHeader header = OpenHeader(*file, path, password);
  auto database = std::make_unique<DatabaseFile>(files, clock, std::move(file), std::u16string(path),
                                                 header, readOnly);
  database->Pages().pulse = pulse;
  CheckCatalogPage(database->Pages());
  database->GetCatalog().Objects();
  return database;
}

std::unique_ptr<DatabaseFile> CreateDatabaseFile(platform::Files& files, platform::Clock& clock,
                                                 std::u16string_view path, bool encode,
                                                 std::u16string_view password,
                                                 const std::function<void()>& pulse) {
  auto file = files.Open(path, platform::OpenMode::CreateNew, platform::Sharing::None);
  std::uint32_t key = 0;
  while (encode && key == 0) key = clock.Random();
  std::array<std::byte, kPageSize> page;
  BuildHeader(page, kGeneralOrigin, key);
  WritePassword(page, password);
  file->WriteAt(0, page);
  auto database = std::make_unique<DatabaseFile>(files, clock, std::move(file), std::u16string(path),
                                                 DecodeHeader(page, path), false);
  database->Pages().pulse = pulse;
  BuildSystemTables(database->GetStorage(), clock.Now());
  return database;
}

}  // namespace zimbrat::jet

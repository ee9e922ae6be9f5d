#include "jet/repair.h"

#include <algorithm>
#include <array>
#include <utility>

#include "connection.h"
#include "rebuild.h"
#include "jet/catalog/new_database.h"
#include "jet/file/errors.h"
#include "platform/kept_file.h"
#include "platform/working_file.h"

namespace zimbrat::jet {

namespace {

using platform::OpenMode;
using platform::Sharing;

class Repair {
 public:
  Repair(platform::Files& files, platform::Clock& clock, std::u16string path, RepairOf which,
         const std::function<void()>& pulse)
      : files_(files),
        clock_(clock),
        pulse_(pulse),
        path_(std::move(path)),
        which_(which),
        standard_(StandardSystemDefinitions()) {}

  RepairReport Run();

 private:
  RebuildResult Write(platform::File& source, const std::u16string& workingPath);
  std::unique_ptr<DatabaseFile> Create(ConstBytes header, const std::u16string& workingPath);
  void Verify(const std::u16string& workingPath, const RebuildResult& expected);
  std::vector<Fault> Check(platform::File& file, const std::u16string& path);

  platform::Files& files_;
  platform::Clock& clock_;
  const std::function<void()>& pulse_;
  std::u16string path_;
  RepairOf which_;
  check::StandardDefinitions standard_;
};

// Page 0 is the former one: password, sort order, creation time and what depends on it.
std::unique_ptr<DatabaseFile> Repair::Create(ConstBytes header, const std::u16string& workingPath) {
  const FileHeader former = DecodeHeader(header, path_);
  if (!former.HasGeneralOrder()) {
    Raise(platform::kErrCannotRepair,
          u": jej porządek sortowania jest inny niż ogólny, a indeksów tekstowych w takim porządku "
          u"nie "
          u"da się odbudować");
  }
  std::uint32_t key = 0;
  while (former.encodingKey != 0 && key == 0) key = clock_.Random();
  std::array<std::byte, kPageSize> page;
  std::copy(header.begin(), header.end(), page.begin());
  RenewHeader(page, key);
  auto file = files_.Open(workingPath, OpenMode::CreatePrivate, Sharing::None);
  file->WriteAt(0, page);
  auto database = std::make_unique<DatabaseFile>(files_, clock_, std::move(file), workingPath,
                                                 DecodeHeader(page, path_), false);
  database->Pages().pulse = pulse_;
  BuildEmptySystemTables(database->GetStorage());
  return database;
}

RebuildResult Repair::Write(platform::File& source, const std::u16string& workingPath) {
  check::Rescue rescue(source, path_, standard_, pulse_);
  const std::unique_ptr<DatabaseFile> database = Create(rescue.Header(), workingPath);
  RebuildResult result = RebuildDatabase(rescue, *database);
  database->Pages().Flush();
  return result;
}

// By the checker, which shares nothing with the engine that wrote the file; and every row that was
// meant to be there is.
void Repair::Verify(const std::u16string& workingPath, const RebuildResult& expected) {
  const auto file = files_.Open(workingPath, OpenMode::ReadWrite, Sharing::None);
  const std::vector<Fault> faults = Check(*file, workingPath);
  const auto error = std::ranges::find_if(faults, &Fault::isError);
  if (error != faults.end()) {
    Raise(platform::kErrCannotRepair,
          u": nowy plik ma błąd: " + error->place + u": " + error->text);
  }
  check::Rescue written(*file, workingPath, standard_, pulse_);
  for (const auto& [page, rows] : expected.rows) {
    const std::optional<check::RescuedTable> table = written.ReadTable(page);
    const bool isWhole = table && written.ReadRows(table->layout, [](const auto&) {}).saved == rows;
    if (!isWhole) Raise(platform::kErrCannotRepair, u": w nowym pliku brakuje wierszy");
  }
  file->Flush();
}

std::vector<Fault> Repair::Check(platform::File& file, const std::u16string& path) {
  CheckOptions options;
  options.pulse = pulse_;
  return CheckFile(file, path, options);
}

RepairReport Repair::Run() {
  std::unique_ptr<platform::File> source = OpenUnused(files_, path_, false);
  platform::WorkingFile working(files_, path_, platform::kRepairSuffix);
  platform::KeptFile kept(files_, path_, working.Path());
  RepairReport report;
  report.found = Check(*source, path_);
  if (which_ == RepairOf::Damaged && !HasErrors(report.found)) return report;
  RebuildResult result = Write(*source, working.Path());
  Verify(working.Path(), result);
  report.tables = std::move(result.tables);
  if (report.IsAnythingLost()) kept.Make(*source, pulse_);
  report.keptFile = kept.Path();
  working.PutInPlaceOf(path_, std::move(source));
  return report;
}

}  // namespace

RepairReport RepairDatabaseFile(platform::Files& files, platform::Clock& clock,
                                std::u16string_view path, RepairOf which,
                                const std::function<void()>& pulse) {
  return Member(dao::kSourceEngine, [&] {
    // Behind a link it is the file itself that is replaced.
    return Repair(files, clock, files.RealPath(path), which, pulse).Run();
  });
}

}  // namespace zimbrat::jet

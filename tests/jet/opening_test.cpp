// Opening what others use or what this engine must not change.
#include <gtest/gtest.h>

#include <span>
#include <string>

#include "jet/catalog/database_file.h"
#include "jet/engine.h"
#include "jet/file/lock_file.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

namespace {

using tests::ErrorOf;

class Opening : public ::testing::Test {
 protected:
  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Workspace> workspace_ =
      MakeEngine(*system_.files, clock_, {})->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path_ = folder_.PathOf(u"Baza.mdb");

  std::shared_ptr<dao::Database> Open() { return workspace_->OpenDatabase(path_, true, false, u""); }
  // The description of the error that opening ends in.
  std::string Refusal() {
    try {
      Open();
    } catch (const platform::RunTimeError& error) {
      return std::to_string(error.Number()) + " " + platform::Utf8FromUtf16(error.Description());
    }
    return {};
  }
};

// As a disk has them that nobody may write to.
class ProtectedFiles : public tests::MemoryFiles {
 public:
  std::unique_ptr<platform::File> Open(std::u16string_view path, platform::OpenMode mode,
                                       platform::Sharing sharing) override {
    if (mode != platform::OpenMode::Read) throw platform::RunTimeError(platform::kErrPathAccess, u"", u"");
    return MemoryFiles::Open(path, mode, sharing);
  }
  std::optional<platform::FileState> State(std::u16string_view path) override {
    auto state = MemoryFiles::State(path);
    if (state) state->isReadOnly = true;
    return state;
  }
};

std::string Slot(std::string_view computer, std::string_view user) {
  std::string slot;
  for (const std::string_view text : {computer, user}) {
    std::string part(text);
    part += '\0';
    part.resize(32, ' ');
    slot += part;
  }
  return slot;
}

}  // namespace

TEST_F(Opening, TheLockFileNamesWhoHasTheDatabase) {
  workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0)->Close();
  const std::string slots = Slot("KSI\xCAGOWO\x8C\xC6", "Admin") + Slot("DRUGI", "Ewa");
  folder_.Write(u"Baza.ldb", slots);
  const auto held = Open();  // what a crash left behind stops nobody
  const std::string refusal = Refusal();
  EXPECT_TRUE(refusal.starts_with("3045 ")) << refusal;
  EXPECT_NE(refusal.find("Admin"), std::string::npos) << refusal;
  EXPECT_NE(refusal.find("KSIĘGOWOŚĆ"), std::string::npos) << refusal;
  held->Close();
  EXPECT_EQ(folder_.Read(u"Baza.ldb"), slots);
  EXPECT_FALSE(folder_.Exists(u"Baza.laccdb"));
}

TEST_F(Opening, ALockFileMayHoldAnything) {
  workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0)->Close();
  const auto held = Open();
  for (const std::string& content : {std::string(), std::string("x"), std::string(40, '\xFF'),
                                     std::string(64, '\0'), std::string(64, '\x01')}) {
    folder_.Write(u"Baza.ldb", content);
    EXPECT_TRUE(Refusal().starts_with("3045 "));
  }
  EXPECT_EQ(FindDatabaseUser(*system_.files, folder_.PathOf(u"Inna.mdb")), std::nullopt);
  EXPECT_EQ(FindDatabaseUser(*system_.files, folder_.PathOf(u"Baza.ldb")), std::nullopt);
}

TEST_F(Opening, ProtectedFilesAreReadAndNotChanged) {
  workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0)->Close();
  const std::string content = folder_.Read(u"Baza.mdb");
  ProtectedFiles files;
  const auto bytes = std::as_bytes(std::span(content));
  files.BytesOf(u"b.mdb").assign(bytes.begin(), bytes.end());
  const auto workspace = MakeEngine(files, clock_, {})->CreateWorkspace(u"", u"Admin", u"");
  const auto database = workspace->OpenDatabase(u"b.mdb", true, false, u"");
  EXPECT_FALSE(database->Updatable());
  EXPECT_EQ(database->TableDefs()->Count(), 4);
  EXPECT_EQ(ErrorOf([&] { database->Execute(u"CREATE TABLE T (a LONG)", 0); }), platform::kErrReadOnly);
}

TEST_F(Opening, OtherSortOrdersAreReadAndNotChanged) {
  workspace_->CreateDatabase(path_, dao::dbLangGeneral, 0)->Close();
  {
    const auto file = system_.files->Open(path_, platform::OpenMode::ReadWrite, platform::Sharing::None);
    std::array<std::byte, kPageSize> page;
    file->ReadAt(0, page);
    ToggleHeaderMask(page);
    Put16(page, 0x6E, 0x0415);  // Polish
    ToggleHeaderMask(page);
    file->WriteAt(0, page);
  }
  const std::string before = folder_.Read(u"Baza.mdb");
  const auto database = Open();
  EXPECT_FALSE(database->Updatable());
  EXPECT_EQ(database->TableDefs()->Count(), 4);
  auto table = database->CreateTableDef(u"T");
  table->Fields()->Append(table->CreateField(u"A", std::int32_t{dao::dbLong}, std::int32_t{4}));
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Append(table); }), platform::kErrReadOnly);
  database->Close();
  EXPECT_EQ(folder_.Read(u"Baza.mdb"), before);
}

}  // namespace zimbrat::jet

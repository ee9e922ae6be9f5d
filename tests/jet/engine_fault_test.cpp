// Every call to the disk fails once, at each place of a run that creates, fills and reads a database.
#include <gtest/gtest.h>

#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "tests/support/failing_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;
using tests::Fault;

struct Size {
  int rows;
  std::size_t memo;  // characters
};
constexpr Size kSmall{12, 5'000};
// More pages than the cache and the images of one statement keep in memory.
constexpr Size kLarge{150, 80'000};

void Work(Files& files, Clock& clock, std::u16string_view path, Size size) {
  auto engine = MakeEngine(files, clock, {});
  auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  auto database = workspace->CreateDatabase(path, dao::dbLangGeneral, dao::dbEncrypt);
  auto table = database->CreateTableDef(u"T");
  table->Fields()->Append(table->CreateField(u"A", std::int32_t{dao::dbText}, std::int32_t{250}));
  table->Fields()->Append(table->CreateField(u"B", std::int32_t{dao::dbMemo}, std::int32_t{0}));
  auto index = table->CreateIndex(u"I");
  index->Fields()->Append(index->CreateField(u"A"));
  table->Indexes()->Append(index);
  database->TableDefs()->Append(table);
  auto rows = database->OpenRecordset(u"T");
  for (int i = 0; i < size.rows; ++i) {
    rows->AddNew();
    rows->Fields()->Item(u"A")->SetValue(std::u16string(200, static_cast<char16_t>(u'a' + i % 20)));
    rows->Fields()->Item(u"B")->SetValue(std::u16string(size.memo, u'ł'));
    rows->Update();
  }
  rows->Close();
  database->Execute(u"UPDATE T SET B = A", dao::dbFailOnError);
  database->Close();
  workspace->OpenDatabase(path, true, false, u"")->Close();
}

// The number that came, 0 when the work went through.
std::int32_t NumberOf(Files& files, Clock& clock, std::u16string_view path, Size size) {
  try {
    Work(files, clock, path, size);
    return 0;
  } catch (const RunTimeError& error) {
    EXPECT_FALSE(error.Description().empty());
    EXPECT_TRUE(error.Source().starts_with(u"DAO.")) << error.what();
    return error.Number();
  }
}

class EngineFaults : public ::testing::Test {
 protected:
  struct Kind {
    Fault how;
    std::int32_t error;
    std::int32_t expected;
  };

  // The n-th call fails; false when the work has fewer.
  bool TryCall(std::uint64_t n, const Kind& kind, Size size) {
    tests::FailingFiles files(*system_.files);
    files.plan = {.call = n, .how = kind.how, .error = kind.error};
    const std::int32_t number = NumberOf(files, clock_, path_, size);
    if (folder_.Exists(u"a.mdb")) system_.files->Delete(path_);
    // A short read or an undisturbed close may be a damaged page or nothing at all.
    const bool plausible = number == kind.expected || number == kErrCannotOpenDatabase ||
                           number == kErrUnrecognizedFormat || number == kErrInvalidPath || number == 0;
    EXPECT_TRUE(plausible) << files.FailedCall() << " " << n << " gave " << number;
    return files.HasFailed();
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  System system_ = MakeSystem(0, nullptr);
  std::u16string path_ = folder_.PathOf(u"a.mdb");
};

}  // namespace

TEST_F(EngineFaults, EachFailedCallIsAnErrorWithDaosNumber) {
  for (const Kind& kind : {Kind{Fault::Error, kErrDiskFull, kErrNoDiskSpace},
                           Kind{Fault::Error, kErrDeviceIo, kErrDiskIo},
                           Kind{Fault::Half, kErrDiskFull, kErrNoDiskSpace}}) {
    std::uint64_t n = 1;
    while (TryCall(n, kind, kSmall)) ++n;
    EXPECT_GT(n, 30u);
  }
}

TEST_F(EngineFaults, AStatementLargerThanMemoryFailsTheSameWay) {
  const Kind kind{Fault::Error, kErrDiskFull, kErrNoDiskSpace};
  std::uint64_t n = 500;
  while (TryCall(n, kind, kLarge)) n += 2'500;
  EXPECT_GT(n, 3'000u);
}

}  // namespace zimbrat::jet

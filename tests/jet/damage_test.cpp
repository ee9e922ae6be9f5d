// Databases damaged at random: opened, read, changed, checked and repaired, each ends well or with an error that
// says why. What repair returns without complaint is sound.
//
//   ZIMBRAT_SEED     the seed, to see a failure again
//   ZIMBRAT_DAMAGES  how many damages for each file, instead of some two hundred
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "jet/file/format.h"
#include "jet/repair.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {

namespace {

constexpr const char16_t* kPath = u"baza.mdb";
// Nothing here takes a tenth of it; what goes beyond counts as hanging.
constexpr std::chrono::seconds kPatience{20};

long NumberFrom(const char* variable, long otherwise) {
  const char* given = std::getenv(variable);
  return given ? std::atol(given) : otherwise;
}

class Damage {
 public:
  explicit Damage(std::uint32_t seed) : random_(seed) {}

  std::string Plant(tests::FileBytes& bytes) {
    switch (Below(8)) {
      case 0: return ZeroPage(bytes);
      case 1: return SwapPages(bytes);
      case 2: return Cut(bytes);
      case 3: return Overwrite(bytes, 2 + Below(40));
      case 4: return Overwrite(bytes, 4);
      case 5: return PlantNumber(bytes);
      default: return FlipBit(bytes);
    }
  }

 private:
  std::size_t Below(std::size_t most) { return static_cast<std::size_t>(random_()) % most; }
  std::size_t PageOf(const tests::FileBytes& bytes) { return Below(bytes.size() / kPageSize); }
  // Mostly where the structure is: the beginning of a page, or its end, where rows and maps lie.
  std::size_t PlaceIn(const tests::FileBytes& bytes) {
    const std::size_t page = PageOf(bytes) * kPageSize;
    switch (Below(3)) {
      case 0: return page + Below(64);
      case 1: return page + kPageSize - 1 - Below(600);
      default: return page + Below(kPageSize);
    }
  }
  static std::string Tell(const char* what, std::size_t place) { return std::string(what) + " " + std::to_string(place); }

  std::string ZeroPage(tests::FileBytes& bytes) {
    const std::size_t page = PageOf(bytes);
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page * kPageSize), kPageSize, std::byte{0});
    return Tell("zeroed page", page);
  }
  std::string SwapPages(tests::FileBytes& bytes) {
    const std::size_t a = PageOf(bytes), b = PageOf(bytes);
    const auto at = [&](std::size_t page) { return bytes.begin() + static_cast<std::ptrdiff_t>(page * kPageSize); };
    std::swap_ranges(at(a), at(a) + kPageSize, at(b));
    return Tell("swapped pages", a) + Tell(" and", b);
  }
  std::string Cut(tests::FileBytes& bytes) {
    bytes.resize(Below(4) == 0 ? Below(bytes.size()) : PageOf(bytes) * kPageSize);
    return Tell("cut to", bytes.size());
  }
  std::string Overwrite(tests::FileBytes& bytes, std::size_t count) {
    const std::size_t place = PlaceIn(bytes);
    for (std::size_t i = place; i < std::min(place + count, bytes.size()); ++i) bytes[i] = static_cast<std::byte>(random_());
    return Tell("overwritten at", place) + Tell(" bytes", count);
  }
  // A number that means something: a page, a length, a count.
  std::string PlantNumber(tests::FileBytes& bytes) {
    const std::size_t place = PlaceIn(bytes);
    const std::uint32_t number = Below(2) == 0 ? static_cast<std::uint32_t>(PageOf(bytes)) : 0xFFFFFFFF >> Below(32);
    for (std::size_t i = 0; i < 4 && place + i < bytes.size(); ++i) {
      bytes[place + i] = static_cast<std::byte>(number >> (8 * i));
    }
    return Tell("number at", place);
  }
  std::string FlipBit(tests::FileBytes& bytes) {
    const std::size_t place = PlaceIn(bytes);
    bytes[place] ^= static_cast<std::byte>(1u << Below(8));
    return Tell("flipped a bit at", place);
  }

  std::mt19937 random_;
};

class DamagedFiles : public ::testing::TestWithParam<std::string> {
 protected:
  // Whether it went well; an error must tell something.
  bool Try(const std::function<void()>& work) {
    try {
      work();
      return true;
    } catch (const platform::RunTimeError& error) {
      EXPECT_NE(error.Number(), 0);
      EXPECT_FALSE(error.Description().empty());
      return false;
    }
  }

  void ReadAndChange() {
    std::shared_ptr<dao::Database> database;
    if (!Try([&] { database = workspace_->OpenDatabase(kPath, true, false, u";pwd=password;"); })) return;
    std::vector<std::shared_ptr<dao::TableDef>> tables;
    Try([&] {
      for (int i = 0; i < database->TableDefs()->Count(); ++i) tables.push_back(database->TableDefs()->Item(i));
    });
    for (const auto& table : tables) {
      Try([&] { DescribeTable(*table); });
      Try([&] { ReadRows(*database, table->Name()); });
      Try([&] { ChangeRows(*database, table->Name()); });
    }
    Try([&] {
      for (int i = 0; i < database->Relations()->Count(); ++i) database->Relations()->Item(i)->Fields()->Count();
    });
    Try([&] { database->Close(); });
  }
  static void DescribeTable(dao::TableDef& table) {
    for (int i = 0; i < table.Fields()->Count(); ++i) table.Fields()->Item(i)->DefaultValue();
    for (int i = 0; i < table.Indexes()->Count(); ++i) table.Indexes()->Item(i)->Fields()->Count();
  }
  void ReadRows(dao::Database& database, const std::u16string& name) {
    const auto rows = database.OpenRecordset(u"[" + name + u"]", dao::dbOpenSnapshot);
    const auto fields = rows->Fields();
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      for (int i = 0; i < fields->Count(); ++i) Try([&] { fields->Item(i)->Value(); });
    }
  }
  void ChangeRows(dao::Database& database, const std::u16string& name) {
    const auto rows = database.OpenRecordset(u"[" + name + u"]");
    Try([&] {
      rows->AddNew();
      rows->Update();
    });
    Try([&] {
      if (!rows->EndOfFile()) rows->Delete();
    });
  }

  void CheckAndRepair() {
    Try([&] { CheckFile(files_, kPath); });
    if (!Try([&] { RepairDatabaseFile(files_, clock_, kPath); })) return;
    for (const Fault& fault : CheckFile(files_, kPath)) {
      ADD_FAILURE() << platform::Utf8FromUtf16(fault.place) << ": " << platform::Utf8FromUtf16(fault.text);
    }
  }

  tests::MemoryFiles files_;
  tests::FakeClock clock_;
  std::shared_ptr<dao::Engine> engine_ = MakeEngine(files_, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
};

}  // namespace

TEST_P(DamagedFiles, EndWellOrWithAClearError) {
  if (!tests::HasAccessFiles()) GTEST_SKIP() << "no fixtures";
  const auto seed = static_cast<std::uint32_t>(NumberFrom("ZIMBRAT_SEED", std::random_device{}() & 0x7FFFFFFF));
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
  Damage damage(seed);
  const tests::FileBytes sound = tests::BytesOfFile(tests::AccessFile(GetParam()));
  const long damages = NumberFrom("ZIMBRAT_DAMAGES", 200);
  for (long i = 0; i < damages && !HasFailure(); ++i) {
    tests::FileBytes damaged = sound;
    std::string what = damage.Plant(damaged);
    if (i % 3 == 0) what += ", " + damage.Plant(damaged.size() < kPageSize ? damaged = sound : damaged);
    SCOPED_TRACE(what);
    const auto start = std::chrono::steady_clock::now();
    files_.BytesOf(kPath) = damaged;
    ReadAndChange();
    files_.BytesOf(kPath) = damaged;
    CheckAndRepair();
    EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedFiles, ::testing::ValuesIn(tests::SoundAccessNames()),
                         [](const auto& file) { return tests::TestNameOf(file.param); });

}  // namespace zimbrat::jet

// Damaged databases, and files that are none: read and changed, checked, repaired.
#include "base_databases.h"
#include "damage.h"
#include "jet/check/check.h"
#include "jet/repair.h"
#include "outcome.h"
#include "platform/run_time_error.h"
#include "tests/support/error_of.h"
#include "walk.h"

namespace zimbrat::fuzz {

namespace {

// What no file of these sizes needs; who writes beyond it has believed a number of the file.
constexpr std::size_t kRoom = 16u << 20;

struct Disk {
  explicit Disk(tests::FileBytes bytes) {
    files.room = kRoom;
    files.BytesOf(kDatabasePath) = std::move(bytes);
  }

  tests::MemoryFiles files;
  tests::FakeClock clock;
};

bool IsSound(Disk& disk) {
  bool isSound = false;
  Attempt([&] {
    jet::CheckOptions options;
    options.reportUnused = true;
    isSound = !jet::HasErrors(jet::CheckFile(disk.files, kDatabasePath, options));
  });
  return isSound;
}

// A repair verifies what it wrote; that it had to refuse it is a finding.
void Repair(Disk& disk) {
  Attempt([&] {
    try {
      jet::RepairDatabaseFile(disk.files, disk.clock, kDatabasePath);
    } catch (const platform::RunTimeError& error) {
      Require(!tests::BlamesNewFile(error.Description()), error.what());
      throw;
    }
  });
}

}  // namespace

void ReadDatabase(Input input) {
  Disk disk(DamagedDatabase(input));
  WalkDatabase(disk.files, disk.clock);
}

void CheckDatabase(Input input) {
  Disk disk(DamagedDatabase(input));
  if (!IsSound(disk)) return;
  Require(!WalkDatabase(disk.files, disk.clock), "the engine meets damage that the check does not find");
  Require(IsSound(disk), "changes of a sound database leave faults");
}

void RepairDatabase(Input input) {
  Disk disk(DamagedDatabase(input));
  Repair(disk);
}

// An input with an odd last byte goes on as an empty database does: else no file but one made of nothing had tables.
void RawFile(Input input) {
  const auto start = std::as_bytes(input);
  tests::FileBytes bytes(start.begin(), start.end());
  if (!input.empty() && input.back() % 2 != 0) {
    bytes.pop_back();
    const tests::FileBytes& empty = BaseDatabases()[1];
    bytes.insert(bytes.end(), empty.begin() + static_cast<std::ptrdiff_t>(std::min(bytes.size(), empty.size())), empty.end());
  }
  Disk disk(std::move(bytes));
  IsSound(disk);
  WalkDatabase(disk.files, disk.clock);
  Repair(disk);
}

}  // namespace zimbrat::fuzz

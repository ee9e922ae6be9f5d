// One database in memory, to be damaged, repaired and read.
#pragma once

#include <string>
#include <vector>

#include "contents.h"
#include "jet/repair.h"
#include "tests/support/access_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::tests {

inline constexpr const char16_t* kPath = u"baza.mdb";

class RepairBench {
 public:
  explicit RepairBench(FileBytes file) { bytes() = std::move(file); }
  explicit RepairBench(const std::filesystem::path& path) : RepairBench(BytesOfFile(path)) {}

  FileBytes& bytes() { return files.BytesOf(kPath); }
  std::size_t PageCount() { return bytes().size() / jet::kPageSize; }
  std::span<std::byte> Page(std::size_t page) {
    return std::span(bytes()).subspan(page * jet::kPageSize, jet::kPageSize);
  }
  jet::RepairReport Repair() { return jet::RepairDatabaseFile(files, clock, kPath); }
  Contents Read(std::u16string_view password = {}) {
    return ReadContents(*jet::OpenDatabaseFile(files, clock, kPath, false, password, {}));
  }

  MemoryFiles files;
  FakeClock clock;
};

// Tables and what they lost, a line each.
std::string LossesOf(const jet::RepairReport& report);

}  // namespace zimbrat::tests

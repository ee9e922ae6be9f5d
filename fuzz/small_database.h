// A small database in memory, equal at each start, for what is run on a sound one. Work that takes too long is
// ended as a user would end it.
#pragma once

#include <memory>

#include "platform/dao.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"

namespace zimbrat::fuzz {

// T (Id counter, A text 20, N long, W currency, D date, Z boolean, M memo) and
// K (B byte, I integer, S single, F double, G GUID, X binary 4), four rows each; I refers to J (Nr integer) with
// cascades.
class SmallDatabase {
 public:
  SmallDatabase();
  SmallDatabase(const SmallDatabase&) = delete;
  SmallDatabase& operator=(const SmallDatabase&) = delete;

  dao::Database& Open();
  // The pulses that the next work may take begin anew; then it is interrupted with error 18.
  void BeginPatience() { pulses_ = 0; }
  void Close();
  // Of the closed file: a fault is a finding.
  void Check();

 private:
  void Pulse();

  int pulses_ = 0;
  tests::MemoryFiles files_;
  tests::FakeClock clock_;
  std::shared_ptr<dao::Workspace> workspace_;
  std::shared_ptr<dao::Database> database_;
};

}  // namespace zimbrat::fuzz

// What all objects of one server share, and the databases that are open in it.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/run_time_error.h"
#include "platform/win32/win32_files.h"
#include "dao_server.h"

namespace zimbrat::tests {

struct ServerState {
  std::shared_ptr<dao::Engine> engine;
  bool makesNewerFiles = false;
  platform::Win32Files files;

  long objects = 0;
  int unclosed = 0;  // sessions and databases that ended without Close
  int calls = 0;
  int callsToFailure = 0;
  std::int32_t failure = 0;
  std::vector<std::string> log;
  bool keepsLog = false;
  bool isTerse = false;
  bool repairsInPlace = false;

  // Of the last failure, the lowest layer first.
  std::vector<platform::RunTimeError> errors;
  // Full paths, in capitals.
  std::set<std::u16string> newerFiles;
};

// A database holds its file as the real one does: until it is closed and no object got from it is left.
class OpenDatabase {
 public:
  OpenDatabase(ServerState& state, std::shared_ptr<dao::Database> database, bool isNewer)
      : state_(state), database_(std::move(database)), isNewer_(isNewer) {}
  ~OpenDatabase() { state_.unclosed += isClosed_ ? 0 : 1; }
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;

  bool IsClosed() const { return isClosed_; }
  bool IsNewer() const { return isNewer_; }
  void Close() {
    isClosed_ = true;
    if (children_ == 0) database_->Close();
  }
  void ChildMade() { ++children_; }
  void ChildGone() noexcept;

  // Tables that a statement made are not in the collection before its Refresh.
  std::set<std::u16string> unseenTables;

 private:
  ServerState& state_;
  std::shared_ptr<dao::Database> database_;
  bool isNewer_;
  bool isClosed_ = false;
  int children_ = 0;
};
using OpenDatabasePtr = std::shared_ptr<OpenDatabase>;

// Raises an error of the server's own.
[[noreturn]] void Fail(std::int32_t number, std::u16string source);

}  // namespace zimbrat::tests

// Takes the place of DAO in the registry of this machine and in this process: the object model by its names,
// over an engine of our own. It is stricter than the real one where a caller could get away with a mistake.
//
// Use it on one thread. Only one process at a time offers a program id; the others wait.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::tests {

struct ServerState;

class DaoServer {
 public:
  // Until destroyed. "DAO.DBEngine.36" makes Jet 4 files, any other id what stands for newer ones unless it is
  // told dbVersion40: their Version reads "12.0".
  explicit DaoServer(std::shared_ptr<dao::Engine> engine,
                     std::wstring programId = L"DAO.DBEngine.120");
  ~DaoServer();
  DaoServer(const DaoServer&) = delete;
  DaoServer& operator=(const DaoServer&) = delete;

  // References to objects that were not given back yet, an object counted once.
  long Objects() const;
  // Sessions and databases so far that nobody closed before the last reference was gone.
  int Unclosed() const;
  // Calls of Invoke since the start.
  int Calls() const;
  // The call with that number from now on (1: the next) raises `number` with the source "DAO.Awaria" instead
  // of being done; 0: none. Once.
  void FailAt(int call, std::int32_t number);

 private:
  std::shared_ptr<ServerState> state_;

 public:
  // One line a call, "Database.Execute", "Field.Required=", while `keepsLog` is set.
  std::vector<std::string>& log;
  bool& keepsLog;
  // Errors come with their number alone; DBEngine.Errors tells the rest.
  bool& isTerse;
  // RepairDatabase works in place, as in old versions; it raises 3251 otherwise.
  bool& repairsInPlace;

 private:
  class Offer;
  std::unique_ptr<Offer> offer_;
};

}  // namespace zimbrat::tests

// An open database as all DAO objects got from it share it; after Close each of their members raises 3420.
// Here too is the envelope of every member: it names the object as the error's source.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/database_file.h"
#include "jet/catalog/relationships.h"
#include "jet/catalog/schema.h"
#include "jet/file/errors.h"
#include "jet/sql/query.h"
#include "platform/dao_errors.h"
#include "platform/run_time_error.h"

namespace zimbrat::jet {

template <class Work>
auto Member(std::u16string_view source, Work work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception&) {
    dao::RethrowAs(source);
  }
}

class Connection {
 public:
  Connection(std::unique_ptr<DatabaseFile> file, std::u16string name, bool exclusive);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool IsOpen() const { return file_ != nullptr; }
  bool IsExclusive() const { return exclusive_; }
  const std::u16string& Name() const { return name_; }
  // Each raises 3420 once the database is closed.
  DatabaseFile& File();
  Catalog& GetCatalog() { return File().GetCatalog(); }
  Relationships GetRelationships() { return {File().GetStorage(), GetCatalog()}; }
  Schema GetSchema() { return {File().GetStorage(), GetCatalog()}; }
  QueryRunner& Queries();

  // A change of structure or data: whole or not at all.
  void Change(const std::function<void()>& work);
  // What the collections know is stale when this differs.
  std::uint64_t Version();

  // Error 3009 while rows of the table are open.
  void RequireUnused(PageNumber table);
  void RowsOpened(PageNumber table) { ++openRows_[table]; }
  void RowsClosed(PageNumber table);

  void Begin();
  void Commit();
  void Rollback();
  // Writes everything; open transactions are undone first.
  void Close();

 private:
  std::unique_ptr<DatabaseFile> file_;
  std::unique_ptr<QueryRunner> queries_;
  std::u16string name_;
  bool exclusive_;
  std::uint64_t changes_ = 0;
  int transactions_ = 0;
  std::map<PageNumber, int> openRows_;
};
using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace zimbrat::jet

#include "connection.h"

#include "platform/text.h"

namespace zimbrat::jet {

Connection::Connection(std::unique_ptr<DatabaseFile> file, std::u16string name, bool exclusive)
    : file_(std::move(file)),
      queries_(std::make_unique<QueryRunner>(*file_)),
      name_(std::move(name)),
      exclusive_(exclusive) {
  queries_->requireUnused = [this](PageNumber table) { RequireUnused(table); };
}

Connection::~Connection() {
  try {
    Close();
  } catch (const std::exception&) {
    // Nobody is left to be told.
  }
}

DatabaseFile& Connection::File() {
  if (!file_) Raise(platform::kErrObjectInvalid);
  return *file_;
}

QueryRunner& Connection::Queries() {
  File();
  return *queries_;
}

void Connection::Change(const std::function<void()>& work) {
  File().RequireWritable();
  Atomic atomic(File().Pages());
  work();
  atomic.Commit();
  ++changes_;
}

std::uint64_t Connection::Version() { return changes_ + File().Pages().Generation(); }

void Connection::RequireUnused(PageNumber table) {
  const auto found = openRows_.find(table);
  if (found == openRows_.end() || found->second == 0) return;
  const CatalogObject* object = GetCatalog().FindTableByPage(table);
  Raise(platform::kErrTableInUse, object ? object->name : std::u16string());
}

void Connection::RowsClosed(PageNumber table) {
  const auto found = openRows_.find(table);
  if (found != openRows_.end() && --found->second == 0) openRows_.erase(found);
}

void Connection::Begin() {
  File().Pages().Begin();
  ++transactions_;
}

void Connection::Commit() {
  if (!file_ || transactions_ == 0) return;
  file_->Pages().Commit();
  --transactions_;
}

void Connection::Rollback() {
  if (!file_ || transactions_ == 0) return;
  --transactions_;
  file_->Pages().Rollback();
}

void Connection::Close() {
  if (!file_) return;
  while (transactions_ > 0) Rollback();
  // Closed whatever happens: a second attempt would not go better.
  const std::unique_ptr<QueryRunner> queries = std::move(queries_);
  const std::unique_ptr<DatabaseFile> file = std::move(file_);
  if (!file->IsReadOnly()) file->Pages().Flush();
}

}  // namespace zimbrat::jet

#include "dao_recordset.h"

#include <algorithm>
#include <optional>

#include "refusing_field.h"
#include "jet/sql/defaults.h"
#include "jet/table/convert.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

enum class EditMode { None, Edit, AddNew };

// Shared by the recordset and its fields, so that a held field says 3420 after the close.
class RowSet {
 public:
  RowSet(ConnectionPtr connection, QueryResult result, bool readOnly)
      : connection_(std::move(connection)), result_(std::move(result)), readOnly_(readOnly) {
    connection_->RowsOpened(result_.table->Page());
  }
  ~RowSet() { Close(); }
  RowSet(const RowSet&) = delete;
  RowSet& operator=(const RowSet&) = delete;

  void Close() {
    if (!open_) return;
    open_ = false;
    connection_->RowsClosed(result_.table->Page());
  }
  bool IsOpen() const { return open_; }
  void Require() {
    connection_->File();
    if (!open_) Raise(kErrObjectInvalid);
  }

  QueryResult& Result() { return result_; }
  Table& Rows() { return *result_.table; }
  Connection& GetConnection() { return *connection_; }

  bool AtEnd() const { return position_ >= result_.rows.size(); }
  bool AtBegin() const { return result_.rows.empty() || before_; }
  std::size_t Position() const { return position_; }
  void MoveTo(std::size_t position) {
    position_ = position;
    before_ = false;
    mode_ = EditMode::None;
  }
  RowPointer CurrentRow() {
    if (AtEnd()) Raise(kErrNoCurrentRecord);
    return result_.rows[position_];
  }

  dao::Value ValueAt(std::size_t column) {
    if (mode_ != EditMode::None) return buffer_[column];
    const std::optional<RowFields> fields = Rows().FindRow(CurrentRow());
    if (!fields) Raise(kErrNoCurrentRecord);
    return Rows().ValueOf(column, (*fields)[column]);
  }

  void PutValue(std::size_t column, const dao::Value& value) {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    const Column& c = Rows().Definition().columns[column];
    if (c.IsCounter()) Raise(kErrFieldNotUpdatable, c.name);
    buffer_[column] = ConvertToColumn(c, value);
    changed_[column] = true;
  }

  void AddNew() {
    RequireUpdatable();
    if (!defaults_) defaults_.emplace(connection_->GetCatalog(), Rows());
    buffer_ = defaults_->Values(Rows(), connection_->File().GetClock().Now());
    for (std::size_t i = 0; i < buffer_.size(); ++i) {
      if (Rows().Definition().columns[i].IsCounter()) buffer_[i] = Rows().NextCounter();
    }
    StartEdit(EditMode::AddNew);
  }

  void Edit() {
    RequireUpdatable();
    const std::optional<RowFields> fields = Rows().FindRow(CurrentRow());
    if (!fields) Raise(kErrNoCurrentRecord);
    buffer_.clear();
    for (std::size_t i = 0; i < fields->size(); ++i) buffer_.push_back(Rows().ValueOf(i, (*fields)[i]));
    StartEdit(EditMode::Edit);
  }

  void Update() {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    RowStore& store = connection_->Queries().Rows();
    if (mode_ == EditMode::AddNew) {
      RowPointer row;
      connection_->Change([&] { row = store.Insert(Rows(), buffer_); });
      const bool wasAtEnd = AtEnd();
      result_.rows.push_back(row);
      if (wasAtEnd) position_ = result_.rows.size();  // no row was current, and none is now
    } else {
      std::vector<ColumnChange> changes;
      for (std::size_t i = 0; i < buffer_.size(); ++i) {
        if (changed_[i]) changes.emplace_back(i, buffer_[i]);
      }
      connection_->Change([&] { store.Update(Rows(), CurrentRow(), changes); });
    }
    mode_ = EditMode::None;
  }

  void CancelUpdate() {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    mode_ = EditMode::None;
  }

  void Delete() {
    RequireUpdatable();
    const RowPointer row = CurrentRow();
    if (!Rows().FindRow(row)) Raise(kErrNoCurrentRecord);
    connection_->Change([&] { connection_->Queries().Rows().Delete(Rows(), row); });
    mode_ = EditMode::None;
  }

 private:
  void RequireUpdatable() {
    if (readOnly_) Raise(kErrNotSupported);
    connection_->File().RequireWritable();
    const CatalogObject* object = connection_->GetCatalog().FindTableByPage(Rows().Page());
    if (!object || object->IsSystem()) Raise(kErrReadOnly);
  }
  void StartEdit(EditMode mode) {
    mode_ = mode;
    changed_.assign(buffer_.size(), false);
  }

  ConnectionPtr connection_;
  QueryResult result_;
  bool readOnly_;
  bool open_ = true;
  bool before_ = false;
  std::size_t position_ = 0;
  EditMode mode_ = EditMode::None;
  std::vector<dao::Value> buffer_;
  std::vector<bool> changed_;
  std::optional<RowDefaults> defaults_;
};
using RowSetPtr = std::shared_ptr<RowSet>;

class RecordsetField : public RefusingField {
 public:
  RecordsetField(RowSetPtr rows, std::size_t column) : rows_(std::move(rows)), column_(column) {}

  std::u16string Name() override {
    return Member(kSourceField, [&] { return Definition().name; });
  }
  std::int16_t Type() override {
    return Member(kSourceField, [&]() -> std::int16_t {
      const std::uint8_t type = Definition().type;
      return type == kTypeDecimal ? dao::dbDecimal : static_cast<std::int16_t>(type);
    });
  }
  std::int32_t Size() override {
    return Member(kSourceField, [&]() -> std::int32_t {
      const Column& column = Definition();
      return column.type == kTypeText ? column.length / 2 : column.length;
    });
  }
  dao::Value Value() override {
    return Member(kSourceField, [&] {
      rows_->Require();
      return rows_->ValueAt(column_);
    });
  }
  void SetValue(const dao::Value& value) override {
    Member(kSourceField, [&] {
      rows_->Require();
      rows_->PutValue(column_, value);
    });
  }

 private:
  const Column& Definition() {
    rows_->Require();
    return rows_->Rows().Definition().columns[column_];
  }
  RowSetPtr rows_;
  std::size_t column_;
};

class RecordsetFields : public dao::Collection<dao::Field> {
 public:
  explicit RecordsetFields(RowSetPtr rows) : rows_(std::move(rows)) {}

  int Count() override {
    return Member(kSourceFields, [&] {
      rows_->Require();
      return static_cast<int>(rows_->Result().columns.size());
    });
  }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Member(kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      rows_->Require();
      const std::vector<std::size_t>& columns = rows_->Result().columns;
      if (position < 0 || position >= static_cast<int>(columns.size())) {
        Raise(kErrItemNotFound, DecimalText(position));
      }
      return std::make_shared<RecordsetField>(rows_, columns[static_cast<std::size_t>(position)]);
    });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Member(kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      rows_->Require();
      for (const std::size_t column : rows_->Result().columns) {
        if (EqualIgnoringCase(rows_->Rows().Definition().columns[column].name, name)) {
          return std::make_shared<RecordsetField>(rows_, column);
        }
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::Field>&) override {
    Member(kSourceFields, [&] { Raise(kErrInvalidOperation); });
  }
  void Delete(std::u16string_view) override {
    Member(kSourceFields, [&] { Raise(kErrInvalidOperation); });
  }
  void Refresh() override {}

 private:
  RowSetPtr rows_;
};

class JetRecordset : public dao::Recordset {
 public:
  explicit JetRecordset(RowSetPtr rows) : rows_(std::move(rows)) {}
  ~JetRecordset() override { rows_->Close(); }

  bool EndOfFile() override {
    return Do([&] { return rows_->AtEnd(); });
  }
  bool BeginOfFile() override {
    return Do([&] { return rows_->AtBegin(); });
  }
  void MoveFirst() override {
    Do([&] {
      if (rows_->Result().rows.empty()) Raise(kErrNoCurrentRecord);
      rows_->MoveTo(0);
    });
  }
  void MoveNext() override {
    Do([&] {
      if (rows_->AtEnd()) Raise(kErrNoCurrentRecord);
      rows_->MoveTo(rows_->Position() + 1);
    });
  }
  // Rows visited, as a dynaset counts.
  std::int32_t RecordCount() override {
    return Do([&] {
      const std::size_t rows = rows_->Result().rows.size();
      return static_cast<std::int32_t>(std::min(rows, rows_->Position() + 1));
    });
  }
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override {
    return Do([&] { return std::make_shared<RecordsetFields>(rows_); });
  }
  void AddNew() override {
    Do([&] { rows_->AddNew(); });
  }
  void Edit() override {
    Do([&] { rows_->Edit(); });
  }
  void Update() override {
    Do([&] { rows_->Update(); });
  }
  void CancelUpdate() override {
    Do([&] { rows_->CancelUpdate(); });
  }
  void Delete() override {
    Do([&] { rows_->Delete(); });
  }
  void Close() override {
    Do([&] { rows_->Close(); });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(kSourceRecordset, [&] {
      rows_->Require();
      return work();
    });
  }
  RowSetPtr rows_;
};

}  // namespace

std::shared_ptr<dao::Recordset> OpenRecordset(const ConnectionPtr& connection, std::u16string_view source,
                                              std::int32_t type) {
  if (type != dao::dbOpenTable && type != dao::dbOpenDynaset && type != dao::dbOpenSnapshot) {
    Raise(kErrInvalidArgument);
  }
  const bool readOnly = type == dao::dbOpenSnapshot;
  auto rows = std::make_shared<RowSet>(connection, connection->Queries().Open(source), readOnly);
  return std::make_shared<JetRecordset>(std::move(rows));
}

}  // namespace zimbrat::jet

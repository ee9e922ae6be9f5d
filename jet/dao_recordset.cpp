#include "dao_recordset.h"

#include <algorithm>
#include <array>
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
    for (const PageNumber table : result_.tables) connection_->RowsOpened(table);
  }
  ~RowSet() { Close(); }
  RowSet(const RowSet&) = delete;
  RowSet& operator=(const RowSet&) = delete;

  void Close() {
    if (!open_) return;
    open_ = false;
    for (const PageNumber table : result_.tables) connection_->RowsClosed(table);
  }
  bool IsOpen() const { return open_; }
  void Require() {
    connection_->File();
    if (!open_) Raise(kErrObjectInvalid);
  }

  const std::vector<ScopeColumn>& Columns() { return result_.plan->Columns(); }

  std::uint64_t Count() const { return result_.places->Count(); }
  bool AtEnd() const { return position_ >= Count(); }
  bool AtBegin() const { return Count() == 0; }
  std::uint64_t Position() const { return position_; }
  void MoveTo(std::uint64_t position) {
    position_ = position;
    mode_ = EditMode::None;
  }

  dao::Value ValueAt(std::size_t column) {
    const std::optional<std::size_t> edited = EditedColumn(column);
    if (mode_ != EditMode::None && edited) return buffer_[*edited];
    if (mode_ == EditMode::AddNew) return dao::Null{};
    LoadCurrent();
    return result_.plan->ValueAt(column);
  }

  void PutValue(std::size_t column, const dao::Value& value) {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    const std::optional<std::size_t> edited = EditedColumn(column);
    if (!edited) Raise(kErrFieldNotUpdatable, Columns()[column].name);
    const Column& c = EditedRows().Definition().columns[*edited];
    if (c.IsCounter()) Raise(kErrFieldNotUpdatable, c.name);
    buffer_[*edited] = ConvertToColumn(c, value);
    changed_[*edited] = true;
  }

  void AddNew() {
    Table& table = RequireUpdatable();
    if (!defaults_) defaults_.emplace(connection_->GetCatalog(), table);
    buffer_ = defaults_->Values(table, connection_->File().GetClock().Now());
    for (std::size_t i = 0; i < buffer_.size(); ++i) {
      if (table.Definition().columns[i].IsCounter()) buffer_[i] = table.NextCounter();
    }
    StartEdit(EditMode::AddNew);
  }

  void Edit() {
    Table& table = RequireUpdatable();
    const RowFields fields = LoadCurrent().Fields();
    buffer_.clear();
    for (std::size_t i = 0; i < fields.size(); ++i) buffer_.push_back(table.ValueOf(i, fields[i]));
    StartEdit(EditMode::Edit);
  }

  void Update() {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    if (mode_ == EditMode::AddNew) {
      Insert();
    } else {
      std::vector<ColumnChange> changes;
      for (std::size_t i = 0; i < buffer_.size(); ++i) {
        if (changed_[i]) changes.emplace_back(i, buffer_[i]);
      }
      const RowPointer row = LoadCurrent().Place();
      connection_->Change([&] { connection_->Queries().Rows().Update(EditedRows(), row, changes); });
    }
    mode_ = EditMode::None;
  }

  void CancelUpdate() {
    if (mode_ == EditMode::None) Raise(kErrNoEdit);
    mode_ = EditMode::None;
  }

  void Delete() {
    Table& table = RequireUpdatable();
    const RowPointer row = LoadCurrent().Place();
    connection_->Change([&] { connection_->Queries().Rows().Delete(table, row); });
    mode_ = EditMode::None;
  }

 private:
  TableSource* Edited() { return result_.plan->EditedTable(); }
  Table& EditedRows() { return *Edited()->GetTable(); }
  std::optional<std::size_t> EditedColumn(std::size_t column) {
    return Edited() ? result_.plan->EditedColumn(column) : std::nullopt;
  }

  // Makes the current row that of the plan; its table, when the rows are those of one. Error 3021 when there is
  // none, or none any more.
  struct Current {
    TableSource* table;
    const RowFields& Fields() const { return table->Fields(); }
    RowPointer Place() const {
      table->Fields();
      return table->Place();
    }
  };
  Current LoadCurrent() {
    if (AtEnd()) Raise(kErrNoCurrentRecord);
    ConstBytes place = result_.places->At(position_);
    result_.plan->Rows().Load(place);
    return {Edited()};
  }

  void Insert() {
    const bool wasAtEnd = AtEnd();
    RowPointer row;
    connection_->Change([&] { row = connection_->Queries().Rows().Insert(EditedRows(), buffer_); });
    std::array<std::byte, sizeof(std::uint32_t)> place;
    Put32(place, 0, row.Packed());
    result_.places->Add(place);
    if (wasAtEnd) position_ = Count();  // no row was current, and none is now
  }

  Table& RequireUpdatable() {
    if (readOnly_) Raise(kErrNotSupported);
    if (!Edited()) Raise(kErrReadOnly);
    connection_->File().RequireWritable();
    const CatalogObject* object = connection_->GetCatalog().FindTableByPage(EditedRows().Page());
    if (!object || object->IsSystem()) Raise(kErrReadOnly);
    return EditedRows();
  }
  void StartEdit(EditMode mode) {
    mode_ = mode;
    changed_.assign(buffer_.size(), false);
  }

  ConnectionPtr connection_;
  QueryResult result_;
  bool readOnly_;
  bool open_ = true;
  std::uint64_t position_ = 0;
  EditMode mode_ = EditMode::None;
  std::vector<dao::Value> buffer_;  // of the edited table's columns
  std::vector<bool> changed_;
  std::optional<RowDefaults> defaults_;
};
using RowSetPtr = std::shared_ptr<RowSet>;

class RecordsetField : public RefusingField {
 public:
  RecordsetField(RowSetPtr rows, std::size_t column) : rows_(std::move(rows)), column_(column) {}

  std::u16string Name() override {
    return Member(dao::kSourceField, [&] { return Description().name; });
  }
  std::int16_t Type() override {
    return Member(dao::kSourceField, [&] { return Description().type; });
  }
  std::int32_t Size() override {
    return Member(dao::kSourceField, [&] { return Description().size; });
  }
  dao::Value Value() override {
    return Member(dao::kSourceField, [&] {
      rows_->Require();
      return rows_->ValueAt(column_);
    });
  }
  void SetValue(const dao::Value& value) override {
    Member(dao::kSourceField, [&] {
      rows_->Require();
      rows_->PutValue(column_, value);
    });
  }

 private:
  const ScopeColumn& Description() {
    rows_->Require();
    return rows_->Columns()[column_];
  }
  RowSetPtr rows_;
  std::size_t column_;
};

class RecordsetFields : public dao::Collection<dao::Field> {
 public:
  explicit RecordsetFields(RowSetPtr rows) : rows_(std::move(rows)) {}

  int Count() override {
    return Member(dao::kSourceFields, [&] {
      rows_->Require();
      return static_cast<int>(rows_->Columns().size());
    });
  }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Member(dao::kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      rows_->Require();
      if (position < 0 || position >= static_cast<int>(rows_->Columns().size())) {
        Raise(kErrItemNotFound, DecimalText(position));
      }
      return std::make_shared<RecordsetField>(rows_, static_cast<std::size_t>(position));
    });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Member(dao::kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      rows_->Require();
      const std::vector<ScopeColumn>& columns = rows_->Columns();
      for (std::size_t i = 0; i < columns.size(); ++i) {
        if (EqualIgnoringCase(columns[i].name, name)) return std::make_shared<RecordsetField>(rows_, i);
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::Field>&) override {
    Member(dao::kSourceFields, [&] { Raise(kErrInvalidOperation); });
  }
  void Delete(std::u16string_view) override {
    Member(dao::kSourceFields, [&] { Raise(kErrInvalidOperation); });
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
      if (rows_->Count() == 0) Raise(kErrNoCurrentRecord);
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
      return static_cast<std::int32_t>(std::min(rows_->Count(), rows_->Position() + 1));
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
    return Member(dao::kSourceRecordset, [&] {
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
  QueryRunner& queries = connection->Queries();
  QueryResult result = type == dao::dbOpenTable ? queries.OpenTable(source) : queries.Open(source);
  auto rows = std::make_shared<RowSet>(connection, std::move(result), readOnly);
  return std::make_shared<JetRecordset>(std::move(rows));
}

}  // namespace zimbrat::jet

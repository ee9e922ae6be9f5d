// TableDef, its fields and indexes: pending in memory until appended, live afterwards. The same objects serve
// both: an append turns them over.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "connection.h"
#include "jet/catalog/field_spec.h"
#include "jet/catalog/schema.h"
#include "platform/dao.h"

namespace zimbrat::jet {

class JetField;
class JetIndex;

// Which table it is: what a TableDef, its fields and its indexes share.
struct TableState {
  ConnectionPtr connection;
  std::u16string name;
  PageNumber page = 0;             // 0: pending
  bool isLink = false;
  std::uint32_t flags = 0;         // of the catalogue

  bool IsLive() const { return page != 0; }
  // Error 3420 when the table was dropped or the database closed.
  void RequireThere();
  std::shared_ptr<Table> Open();
  std::int32_t ObjectId() const { return static_cast<std::int32_t>(page); }
  // Error 3027 for a system table.
  void RequireOwn();
  // A change of the live table's structure or properties. Errors 3027, 3009.
  void ChangeStructure(const std::function<void(Schema&)>& work);
  void ChangeProperties(const std::function<void(PropertyBlob&)>& work);
};
using TableStatePtr = std::shared_ptr<TableState>;

// The members of a TableDef's collections. They know their table; the table does not know them.
struct TableParts {
  TableStatePtr state;
  std::uint64_t fieldsVersion = ~std::uint64_t{0};
  std::uint64_t indexesVersion = ~std::uint64_t{0};
  std::vector<std::shared_ptr<JetField>> fields;
  std::vector<std::shared_ptr<JetIndex>> indexes;
};
using TablePartsPtr = std::shared_ptr<TableParts>;
inline TablePartsPtr MakeParts(TableStatePtr state) {
  auto parts = std::make_shared<TableParts>();
  parts->state = std::move(state);
  return parts;
}

class JetField : public dao::Field {
 public:
  JetField(TableStatePtr table, FieldSpec spec) : table_(std::move(table)), spec_(std::move(spec)) {}
  JetField(TableStatePtr table, std::uint16_t columnId) : table_(std::move(table)), columnId_(columnId) {}

  bool IsLive() const { return columnId_.has_value(); }
  const FieldSpec& Spec() const { return spec_; }
  const TableStatePtr& Owner() const { return table_; }
  std::uint16_t ColumnId() const { return *columnId_; }
  void BecomeLive(std::uint16_t columnId) { columnId_ = columnId; }

  std::u16string Name() override;
  void SetName(std::u16string_view name) override;
  std::int16_t Type() override;
  std::int32_t Size() override;
  std::int32_t Attributes() override;
  void SetAttributes(std::int32_t attributes) override;
  bool Required() override;
  void SetRequired(bool required) override;
  bool AllowZeroLength() override;
  void SetAllowZeroLength(bool allow) override;
  std::u16string DefaultValue() override;
  void SetDefaultValue(std::u16string_view expression) override;
  std::u16string ValidationRule() override;
  void SetValidationRule(std::u16string_view expression) override;
  std::u16string ValidationText() override;
  void SetValidationText(std::u16string_view text) override;
  std::u16string ForeignName() override;
  void SetForeignName(std::u16string_view name) override;
  dao::Value Value() override;
  void SetValue(const dao::Value& value) override;

 private:
  Column LiveColumn();
  FieldRules LiveRules();
  void RequireExpressionAllowed(std::u16string_view text);
  void PutText(std::u16string_view property, std::uint8_t type, std::u16string FieldSpec::*slot,
               std::u16string_view text);
  void PutBoolean(std::u16string_view property, bool FieldSpec::*slot, bool value);

  TableStatePtr table_;
  FieldSpec spec_;
  std::optional<std::uint16_t> columnId_;
};

class JetIndex : public dao::Index, public std::enable_shared_from_this<JetIndex> {
 public:
  JetIndex(TableStatePtr table, std::u16string name) : table_(std::move(table)) {
    spec_.name = std::move(name);
  }
  JetIndex(TableStatePtr table, std::uint32_t number) : table_(std::move(table)), number_(number) {}

  bool IsLive() const { return number_.has_value(); }
  void BecomeLive(std::uint32_t number) { number_ = number; }
  const TableStatePtr& Owner() const { return table_; }
  const NewIndex& Spec() const { return spec_; }
  void AddPendingField(IndexFieldSpec field) { spec_.fields.push_back(std::move(field)); }
  std::vector<IndexFieldSpec> FieldList();
  // Error 3420 when it was deleted or the database closed.
  void RequireThere();

  std::u16string Name() override;
  void SetName(std::u16string_view name) override;
  bool Primary() override;
  void SetPrimary(bool primary) override;
  bool Unique() override;
  void SetUnique(bool unique) override;
  bool Required() override;
  void SetRequired(bool required) override;
  bool IgnoreNulls() override;
  void SetIgnoreNulls(bool ignore) override;
  bool Foreign() override;
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name) override;
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override;

 private:
  LogicalIndex LiveEntry();
  bool LiveFlag(std::uint8_t flag);
  void PutFlag(bool NewIndex::*slot, bool value);

  TableStatePtr table_;
  NewIndex spec_;
  std::optional<std::uint32_t> number_;
};

class JetTableDef : public dao::TableDef {
 public:
  explicit JetTableDef(TableStatePtr state)
      : state_(std::move(state)), parts_(MakeParts(state_)) {}
  const TableStatePtr& State() const { return state_; }
  TableParts& Parts() { return *parts_; }

  std::u16string Name() override;
  void SetName(std::u16string_view name) override;
  bool Updatable() override;
  std::int32_t Attributes() override;
  std::int32_t RecordCount() override;
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name, const dao::Value& type,
                                          const dao::Value& size) override;
  std::shared_ptr<dao::Index> CreateIndex(std::u16string_view name) override;
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override;
  std::shared_ptr<dao::Collection<dao::Index>> Indexes() override;

 private:
  TableStatePtr state_;
  TablePartsPtr parts_;
};

// Database.TableDefs.
std::shared_ptr<dao::Collection<dao::TableDef>> MakeTableDefs(const ConnectionPtr& connection);

}  // namespace zimbrat::jet

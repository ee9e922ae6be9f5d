// The collections of tables: TableDefs, and the Fields and Indexes of one.
#include "dao_table.h"

#include <algorithm>

#include "jet/index/collation.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

// The object at a position or of a name, for every collection that keeps a list.
template <class T>
std::shared_ptr<T> ItemAt(const std::vector<std::shared_ptr<T>>& list, int position) {
  if (position < 0 || position >= static_cast<int>(list.size())) Raise(kErrItemNotFound, DecimalText(position));
  return list[static_cast<std::size_t>(position)];
}

template <class T>
std::shared_ptr<T> FindNamed(const std::vector<std::shared_ptr<T>>& list, std::u16string_view name) {
  for (const std::shared_ptr<T>& object : list) {
    if (EqualIgnoringCase(object->Name(), name)) return object;
  }
  return nullptr;
}

void LoadFields(TableParts& parts) {
  TableState& state = *parts.state;
  if (!state.IsLive()) return;
  const std::shared_ptr<Table> table = state.Open();
  if (parts.fieldsVersion == state.connection->Version()) return;
  std::vector<Column> columns = table->Definition().columns;
  std::stable_sort(columns.begin(), columns.end(),
                   [](const Column& a, const Column& b) { return a.displayOrder < b.displayOrder; });
  // Program and collection keep the same objects for the columns that stay.
  const std::vector<std::shared_ptr<JetField>> former = std::move(parts.fields);
  parts.fields.clear();
  for (const Column& column : columns) {
    const auto known = std::find_if(former.begin(), former.end(), [&](const std::shared_ptr<JetField>& field) {
      return field->ColumnId() == column.id;
    });
    parts.fields.push_back(known != former.end() ? *known : std::make_shared<JetField>(parts.state, column.id));
  }
  parts.fieldsVersion = state.connection->Version();
}

void LoadIndexes(TableParts& parts) {
  TableState& state = *parts.state;
  if (!state.IsLive()) return;
  const std::shared_ptr<Table> table = state.Open();
  if (parts.indexesVersion == state.connection->Version()) return;
  parts.indexes.clear();
  for (const LogicalIndex& entry : table->Definition().logicalIndexes) {
    if (entry.end == kEndReferenced) continue;  // the hidden counterpart of a relation
    parts.indexes.push_back(std::make_shared<JetIndex>(parts.state, entry.number));
  }
  parts.indexesVersion = state.connection->Version();
}

class TableFields : public dao::Collection<dao::Field> {
 public:
  explicit TableFields(TablePartsPtr parts) : parts_(std::move(parts)), state_(parts_->state) {}

  int Count() override {
    return Member(dao::kSourceFields, [&] { return static_cast<int>(List().size()); });
  }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Member(dao::kSourceFields, [&] { return ItemAt(List(), position); });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Member(dao::kSourceFields, [&] {
      std::shared_ptr<JetField> field = FindNamed(List(), name);
      if (!field) Raise(kErrItemNotFound, name);
      return field;
    });
  }
  void Append(const std::shared_ptr<dao::Field>& object) override {
    Member(dao::kSourceFields, [&] {
      const auto field = std::dynamic_pointer_cast<JetField>(object);
      if (!field || field->IsLive()) Raise(kErrFieldAppendedTwice, object->Name());
      MakeColumnSpec(field->Spec());
      if (state_->IsLive()) return AppendLive(field);
      if (FindNamed(List(), field->Name())) Raise(kErrDuplicateName, field->Name());
      parts_->fields.push_back(field);
    });
  }
  void Delete(std::u16string_view name) override {
    Member(dao::kSourceFields, [&] {
      const std::shared_ptr<JetField> field = FindNamed(List(), name);
      if (!field) Raise(kErrItemNotFound, name);
      if (state_->IsLive()) {
        state_->ChangeStructure([&](Schema& schema) { schema.DropField(state_->page, field->ColumnId()); });
      }
      std::erase(parts_->fields, field);
    });
  }
  void Refresh() override { parts_->fieldsVersion = ~std::uint64_t{0}; }

 private:
  const std::vector<std::shared_ptr<JetField>>& List() {
    LoadFields(*parts_);
    return parts_->fields;
  }

  void AppendLive(const std::shared_ptr<JetField>& field) {
    LoadFields(*parts_);
    std::uint16_t columnId = 0;
    state_->ChangeStructure([&](Schema& schema) { columnId = schema.AddField(state_->page, field->Spec()); });
    field->BecomeLive(columnId);
    parts_->fields.push_back(field);
    parts_->fieldsVersion = state_->connection->Version();
  }

  TablePartsPtr parts_;
  TableStatePtr state_;
};

class TableIndexes : public dao::Collection<dao::Index> {
 public:
  explicit TableIndexes(TablePartsPtr parts) : parts_(std::move(parts)), state_(parts_->state) {}

  int Count() override {
    return Member(dao::kSourceIndexes, [&] { return static_cast<int>(List().size()); });
  }
  std::shared_ptr<dao::Index> Item(int position) override {
    return Member(dao::kSourceIndexes, [&] { return ItemAt(List(), position); });
  }
  std::shared_ptr<dao::Index> Item(std::u16string_view name) override {
    return Member(dao::kSourceIndexes, [&] {
      std::shared_ptr<JetIndex> index = FindNamed(List(), name);
      if (!index) Raise(kErrItemNotFound, name);
      return index;
    });
  }
  void Append(const std::shared_ptr<dao::Index>& object) override {
    Member(dao::kSourceIndexes, [&] {
      const auto index = std::dynamic_pointer_cast<JetIndex>(object);
      if (!index || index->IsLive()) Raise(kErrIndexAppendedTwice, object->Name());
      if (state_->IsLive()) return AppendLive(index);
      if (FindNamed(List(), index->Name())) Raise(kErrIndexExists, index->Name());
      parts_->indexes.push_back(index);
    });
  }
  void Delete(std::u16string_view name) override {
    Member(dao::kSourceIndexes, [&] {
      if (!state_->IsLive()) Raise(kErrItemNotFound, name);
      state_->ChangeStructure([&](Schema& schema) { schema.DropIndex(state_->page, name); });
    });
  }
  void Refresh() override { parts_->indexesVersion = ~std::uint64_t{0}; }

 private:
  const std::vector<std::shared_ptr<JetIndex>>& List() {
    LoadIndexes(*parts_);
    return parts_->indexes;
  }

  void AppendLive(const std::shared_ptr<JetIndex>& index) {
    std::uint32_t number = 0;
    state_->ChangeStructure([&](Schema& schema) { number = schema.AddIndex(state_->page, index->Spec()); });
    index->BecomeLive(number);
  }

  TablePartsPtr parts_;
  TableStatePtr state_;
};

// The catalogue's tables in the order of their names, new ones at the end.
class TableList : public dao::Collection<dao::TableDef> {
 public:
  explicit TableList(ConnectionPtr connection) : connection_(std::move(connection)) {}

  int Count() override {
    return Member(dao::kSourceTableDefs, [&] { return static_cast<int>(List().size()); });
  }
  std::shared_ptr<dao::TableDef> Item(int position) override {
    return Member(dao::kSourceTableDefs, [&] { return ItemAt(List(), position); });
  }
  std::shared_ptr<dao::TableDef> Item(std::u16string_view name) override {
    return Member(dao::kSourceTableDefs, [&] {
      for (const std::shared_ptr<JetTableDef>& table : List()) {
        if (EqualText(table->State()->name, name)) return table;
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::TableDef>& object) override {
    Member(dao::kSourceTableDefs, [&] {
      const auto table = std::dynamic_pointer_cast<JetTableDef>(object);
      if (!table || table->State()->IsLive()) Raise(kErrDuplicateName, object->Name());
      List();
      AppendTable(table->Parts());
      list_.push_back(table);
      version_ = connection_->Version();
    });
  }
  void Delete(std::u16string_view name) override {
    Member(dao::kSourceTableDefs, [&] { DeleteTable(name); });
  }
  void Refresh() override {
    Member(dao::kSourceTableDefs, [&] {
      connection_->File();
      list_.clear();
      loaded_ = false;
    });
  }

 private:
  const std::vector<std::shared_ptr<JetTableDef>>& List() {
    connection_->File();
    if (!loaded_ || version_ != connection_->Version()) Load();
    return list_;
  }

  void Load() {
    std::vector<CatalogObject> objects;
    for (const CatalogObject& object : connection_->GetCatalog().Objects()) {
      if (object.IsTableOrLink()) objects.push_back(object);
    }
    // As long as the names are the same, program and collection keep the same objects.
    if (!loaded_) {
      std::stable_sort(objects.begin(), objects.end(), [](const CatalogObject& a, const CatalogObject& b) {
        return UpperCase(a.name) < UpperCase(b.name);
      });
    }
    std::erase_if(list_, [&](const std::shared_ptr<JetTableDef>& table) {
      return std::none_of(objects.begin(), objects.end(),
                          [&](const CatalogObject& object) { return IsSame(*table->State(), object); });
    });
    for (const CatalogObject& object : objects) {
      const auto known = std::find_if(list_.begin(), list_.end(), [&](const std::shared_ptr<JetTableDef>& table) {
        return IsSame(*table->State(), object);
      });
      if (known != list_.end()) {
        (*known)->State()->name = object.name;
      } else {
        list_.push_back(std::make_shared<JetTableDef>(MakeState(object)));
      }
    }
    loaded_ = true;
    version_ = connection_->Version();
  }

  static bool IsSame(const TableState& state, const CatalogObject& object) {
    if (state.isLink || object.IsLink()) return state.isLink && object.IsLink() && state.name == object.name;
    return state.page == static_cast<PageNumber>(object.id);
  }

  TableStatePtr MakeState(const CatalogObject& object) {
    auto state = std::make_shared<TableState>();
    state->connection = connection_;
    state->name = object.name;
    state->flags = object.flags;
    state->isLink = object.IsLink();
    // A link has no pages; any number keeps it from counting as pending.
    state->page = state->isLink ? ~PageNumber{0} : static_cast<PageNumber>(object.id);
    return state;
  }

  void AppendTable(TableParts& parts) {
    TableState& state = *parts.state;
    std::vector<FieldSpec> fields;
    for (const std::shared_ptr<JetField>& field : parts.fields) fields.push_back(field->Spec());
    std::vector<NewIndex> indexes;
    for (const std::shared_ptr<JetIndex>& index : parts.indexes) indexes.push_back(index->Spec());
    PageNumber page = 0;
    connection_->Change([&] { page = connection_->GetSchema().CreateTable(state.name, fields, indexes); });
    state.page = page;
    for (std::size_t i = 0; i < parts.fields.size(); ++i) {
      parts.fields[i]->BecomeLive(static_cast<std::uint16_t>(i));
    }
    for (std::size_t i = 0; i < parts.indexes.size(); ++i) {
      parts.indexes[i]->BecomeLive(static_cast<std::uint32_t>(i));
    }
    parts.fieldsVersion = connection_->Version();
  }

  void DeleteTable(std::u16string_view name) {
    const CatalogObject* found = connection_->GetCatalog().FindTable(name);
    if (found && found->Is(ObjectType::Table)) connection_->RequireUnused(static_cast<PageNumber>(found->id));
    connection_->Change([&] { connection_->GetSchema().DropTable(name); });
  }

  ConnectionPtr connection_;
  std::vector<std::shared_ptr<JetTableDef>> list_;
  bool loaded_ = false;
  std::uint64_t version_ = 0;
};

}  // namespace

std::shared_ptr<dao::Collection<dao::Field>> JetTableDef::Fields() {
  return std::make_shared<TableFields>(parts_);
}

std::shared_ptr<dao::Collection<dao::Index>> JetTableDef::Indexes() {
  return std::make_shared<TableIndexes>(parts_);
}

std::shared_ptr<dao::Collection<dao::TableDef>> MakeTableDefs(const ConnectionPtr& connection) {
  return std::make_shared<TableList>(connection);
}

}  // namespace zimbrat::jet

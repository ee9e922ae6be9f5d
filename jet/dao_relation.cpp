#include "dao_relation.h"

#include <algorithm>

#include "jet/index/collation.h"
#include "refusing_field.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

class RelationFieldObject : public RefusingField {
 public:
  explicit RelationFieldObject(std::u16string name) : field_{std::move(name), {}} {}
  RelationFieldObject(RelationField field, bool live) : field_(std::move(field)), live_(live) {}

  const RelationField& Content() const { return field_; }
  void BecomeLive() { live_ = true; }

  std::u16string Name() override { return field_.name; }
  void SetName(std::u16string_view name) override {
    if (live_) Refuse();
    field_.name = name;
  }
  std::u16string ForeignName() override { return field_.foreignName; }
  void SetForeignName(std::u16string_view name) override {
    if (live_) Refuse();
    field_.foreignName = name;
  }

 private:
  RelationField field_;
  bool live_ = false;
};

struct RelationState {
  std::u16string name;
  std::u16string table;
  std::u16string foreignTable;
  std::uint32_t attributes = 0;
  bool live = false;
  std::vector<std::shared_ptr<RelationFieldObject>> fields;
};
using RelationStatePtr = std::shared_ptr<RelationState>;

class RelationFields : public dao::Collection<dao::Field> {
 public:
  explicit RelationFields(RelationStatePtr state) : state_(std::move(state)) {}

  int Count() override { return static_cast<int>(state_->fields.size()); }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Member(dao::kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      if (position < 0 || position >= Count()) Raise(kErrItemNotFound, DecimalText(position));
      return state_->fields[static_cast<std::size_t>(position)];
    });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Member(dao::kSourceFields, [&]() -> std::shared_ptr<dao::Field> {
      const auto found = Find(name);
      if (!found) Raise(kErrItemNotFound, name);
      return found;
    });
  }
  void Append(const std::shared_ptr<dao::Field>& object) override {
    Member(dao::kSourceFields, [&] {
      if (state_->live) Raise(kErrInvalidOperation);
      const auto field = std::dynamic_pointer_cast<RelationFieldObject>(object);
      if (!field) Raise(kErrInvalidOperation);
      if (Find(field->Name())) Raise(kErrDuplicateName, field->Name());
      state_->fields.push_back(field);
    });
  }
  void Delete(std::u16string_view) override {
    Member(dao::kSourceFields, [&] { Raise(kErrInvalidOperation); });
  }
  void Refresh() override {}

 private:
  std::shared_ptr<RelationFieldObject> Find(std::u16string_view name) const {
    for (const auto& field : state_->fields) {
      if (EqualIgnoringCase(field->Content().name, name)) return field;
    }
    return nullptr;
  }
  RelationStatePtr state_;
};

class JetRelation : public dao::Relation {
 public:
  explicit JetRelation(RelationStatePtr state) : state_(std::move(state)) {}
  const RelationStatePtr& State() const { return state_; }

  std::u16string Name() override { return state_->name; }
  void SetName(std::u16string_view name) override {
    Member(dao::kSourceRelation, [&] {
      if (state_->live && state_->name != name) Raise(kErrInvalidOperation);
      state_->name = name;
    });
  }
  std::u16string Table() override { return state_->table; }
  std::u16string ForeignTable() override { return state_->foreignTable; }
  std::int32_t Attributes() override { return static_cast<std::int32_t>(state_->attributes); }
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name) override {
    return std::make_shared<RelationFieldObject>(std::u16string(name));
  }
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override {
    return std::make_shared<RelationFields>(state_);
  }

 private:
  RelationStatePtr state_;
};

RelationStatePtr MakeState(const Relationship& relationship) {
  auto state = std::make_shared<RelationState>();
  state->name = relationship.name;
  state->table = relationship.table;
  state->foreignTable = relationship.foreignTable;
  state->attributes = relationship.attributes;
  state->live = true;
  for (const RelationField& field : relationship.fields) {
    state->fields.push_back(std::make_shared<RelationFieldObject>(field, true));
  }
  return state;
}

class RelationList : public dao::Collection<dao::Relation> {
 public:
  explicit RelationList(ConnectionPtr connection) : connection_(std::move(connection)) {}

  int Count() override {
    return Member(dao::kSourceRelations, [&] { return static_cast<int>(List().size()); });
  }
  std::shared_ptr<dao::Relation> Item(int position) override {
    return Member(dao::kSourceRelations, [&]() -> std::shared_ptr<dao::Relation> {
      const auto& list = List();
      if (position < 0 || position >= static_cast<int>(list.size())) {
        Raise(kErrItemNotFound, DecimalText(position));
      }
      return list[static_cast<std::size_t>(position)];
    });
  }
  std::shared_ptr<dao::Relation> Item(std::u16string_view name) override {
    return Member(dao::kSourceRelations, [&]() -> std::shared_ptr<dao::Relation> {
      for (const auto& relation : List()) {
        if (EqualText(relation->Name(), name)) return relation;
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::Relation>& object) override {
    Member(dao::kSourceRelations, [&] {
      const auto relation = std::dynamic_pointer_cast<JetRelation>(object);
      if (!relation || relation->State()->live) Raise(kErrDuplicateName, object->Name());
      List();
      AppendRelation(*relation->State());
      list_.push_back(relation);
      version_ = connection_->Version();
    });
  }
  void Delete(std::u16string_view name) override {
    Member(dao::kSourceRelations, [&] {
      RequireUnused(name);
      connection_->Change([&] { connection_->GetRelationships().Remove(name); });
    });
  }
  void Refresh() override { loaded_ = false; }

 private:
  const std::vector<std::shared_ptr<JetRelation>>& List() {
    connection_->File();
    if (loaded_ && version_ == connection_->Version()) return list_;
    list_.clear();
    for (const Relationship& relationship : connection_->GetRelationships().List()) {
      list_.push_back(std::make_shared<JetRelation>(MakeState(relationship)));
    }
    loaded_ = true;
    version_ = connection_->Version();
    return list_;
  }

  void RequireTableUnused(std::u16string_view table) {
    const CatalogObject* object = connection_->GetCatalog().FindTable(table);
    if (object && object->Is(ObjectType::Table)) connection_->RequireUnused(static_cast<PageNumber>(object->id));
  }

  void RequireUnused(std::u16string_view name) {
    for (const Relationship& r : connection_->GetRelationships().List()) {
      if (!EqualText(r.name, name)) continue;
      RequireTableUnused(r.table);
      RequireTableUnused(r.foreignTable);
    }
  }

  void AppendRelation(RelationState& state) {
    Relationship relationship{state.name, state.table, state.foreignTable, state.attributes, {}};
    for (const auto& field : state.fields) relationship.fields.push_back(field->Content());
    RequireTableUnused(state.table);
    RequireTableUnused(state.foreignTable);
    connection_->Change([&] { connection_->GetRelationships().Add(relationship); });
    state.live = true;
    for (const auto& field : state.fields) field->BecomeLive();
  }

  ConnectionPtr connection_;
  std::vector<std::shared_ptr<JetRelation>> list_;
  bool loaded_ = false;
  std::uint64_t version_ = 0;
};

}  // namespace

std::shared_ptr<dao::Relation> MakeRelation(std::u16string_view name, std::u16string_view table,
                                            std::u16string_view foreignTable, std::int32_t attributes) {
  auto state = std::make_shared<RelationState>();
  state->name = name;
  state->table = table;
  state->foreignTable = foreignTable;
  state->attributes = static_cast<std::uint32_t>(attributes);
  return std::make_shared<JetRelation>(state);
}

std::shared_ptr<dao::Collection<dao::Relation>> MakeRelations(const ConnectionPtr& connection) {
  return std::make_shared<RelationList>(connection);
}

}  // namespace zimbrat::jet

#include "dao_relation.h"

#include <algorithm>
#include <optional>

#include "jet/index/collation.h"
#include "refusing_field.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

// Which relation it is: what a Relation and its fields share.
struct RelationHome {
  ConnectionPtr connection;
  std::u16string name;
  bool live = false;
  std::optional<std::uint64_t> losses = {};  // of the catalogue, when its object was there

  // Error 3420 when it was deleted or the database closed.
  void RequireThere() {
    connection->File();
    if (!live) return;
    Catalog& catalog = connection->GetCatalog();
    if (losses == catalog.Losses()) return;
    if (catalog.FindRelationship(name)) {
      losses = catalog.Losses();
    } else if (!IsListed()) {
      Raise(kErrObjectInvalid);
    }
  }

 private:
  // Some files have rows of a relationship without its object, which go without a loss of the catalogue.
  bool IsListed() {
    const std::vector<Relationship> all = connection->GetRelationships().List();
    return std::any_of(all.begin(), all.end(), [&](const Relationship& r) { return EqualText(r.name, name); });
  }
};
using RelationHomePtr = std::shared_ptr<RelationHome>;

class RelationFieldObject : public RefusingField {
 public:
  RelationFieldObject(RelationHomePtr home, RelationField field) : home_(std::move(home)), field_(std::move(field)) {}

  const RelationField& Content() const { return field_; }

  std::u16string Name() override {
    return Do([&] { return field_.name; });
  }
  void SetName(std::u16string_view name) override {
    Do([&] { Pending().name = name; });
  }
  std::u16string ForeignName() override {
    return Do([&] { return field_.foreignName; });
  }
  void SetForeignName(std::u16string_view name) override {
    Do([&] { Pending().foreignName = name; });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceField, [&] {
      home_->RequireThere();
      return work();
    });
  }
  RelationField& Pending() {
    if (home_->live) Raise(kErrInvalidOperation);
    return field_;
  }

  RelationHomePtr home_;
  RelationField field_;
};

struct RelationState {
  RelationHomePtr home;
  std::u16string table;
  std::u16string foreignTable;
  std::uint32_t attributes = 0;
  std::vector<std::shared_ptr<RelationFieldObject>> fields;
};
using RelationStatePtr = std::shared_ptr<RelationState>;

class RelationFields : public dao::Collection<dao::Field> {
 public:
  explicit RelationFields(RelationStatePtr state) : state_(std::move(state)) {}

  int Count() override {
    return Do([&] { return static_cast<int>(state_->fields.size()); });
  }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Do([&]() -> std::shared_ptr<dao::Field> {
      if (position < 0 || position >= Count()) Raise(kErrItemNotFound, DecimalText(position));
      return state_->fields[static_cast<std::size_t>(position)];
    });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Do([&]() -> std::shared_ptr<dao::Field> {
      const auto found = Find(name);
      if (!found) Raise(kErrItemNotFound, name);
      return found;
    });
  }
  void Append(const std::shared_ptr<dao::Field>& object) override {
    Do([&] {
      if (state_->home->live) Raise(kErrInvalidOperation);
      const auto field = std::dynamic_pointer_cast<RelationFieldObject>(object);
      if (!field) Raise(kErrInvalidOperation);
      if (Find(field->Content().name)) Raise(kErrDuplicateName, field->Content().name);
      state_->fields.push_back(field);
    });
  }
  void Delete(std::u16string_view) override {
    Do([&] { Raise(kErrInvalidOperation); });
  }
  void Refresh() override {
    Do([] {});
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceFields, [&] {
      state_->home->RequireThere();
      return work();
    });
  }
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

  std::u16string Name() override {
    return Do([&] { return state_->home->name; });
  }
  void SetName(std::u16string_view name) override {
    Do([&] {
      if (state_->home->live && state_->home->name != name) Raise(kErrInvalidOperation);
      state_->home->name = name;
    });
  }
  std::u16string Table() override {
    return Do([&] { return state_->table; });
  }
  std::u16string ForeignTable() override {
    return Do([&] { return state_->foreignTable; });
  }
  std::int32_t Attributes() override {
    return Do([&] { return static_cast<std::int32_t>(state_->attributes); });
  }
  // Of a relation that exists it is a field for nothing: none can be appended.
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name) override {
    return Do([&] {
      return std::make_shared<RelationFieldObject>(state_->home, RelationField{std::u16string(name), {}});
    });
  }
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override {
    return Do([&] { return std::make_shared<RelationFields>(state_); });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceRelation, [&] {
      state_->home->RequireThere();
      return work();
    });
  }

  RelationStatePtr state_;
};

RelationStatePtr MakeState(const ConnectionPtr& connection, const Relationship& relationship) {
  auto state = std::make_shared<RelationState>();
  state->home = std::make_shared<RelationHome>(RelationHome{connection, relationship.name});
  state->home->live = true;
  state->table = relationship.table;
  state->foreignTable = relationship.foreignTable;
  state->attributes = relationship.attributes;
  for (const RelationField& field : relationship.fields) {
    state->fields.push_back(std::make_shared<RelationFieldObject>(state->home, field));
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
        if (EqualText(relation->State()->home->name, name)) return relation;
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::Relation>& object) override {
    Member(dao::kSourceRelations, [&] {
      const auto relation = std::dynamic_pointer_cast<JetRelation>(object);
      if (!relation || relation->State()->home->live) Raise(kErrDuplicateName, object->Name());
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
  void Refresh() override {
    Member(dao::kSourceRelations, [&] {
      connection_->File();
      loaded_ = false;
    });
  }

 private:
  const std::vector<std::shared_ptr<JetRelation>>& List() {
    connection_->File();
    if (loaded_ && version_ == connection_->Version()) return list_;
    list_.clear();
    for (const Relationship& relationship : connection_->GetRelationships().List()) {
      list_.push_back(std::make_shared<JetRelation>(MakeState(connection_, relationship)));
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
    Relationship relationship{state.home->name, state.table, state.foreignTable, state.attributes, {}};
    for (const auto& field : state.fields) relationship.fields.push_back(field->Content());
    RequireTableUnused(state.table);
    RequireTableUnused(state.foreignTable);
    connection_->Change([&] { connection_->GetRelationships().Add(relationship); });
    state.home->live = true;
  }

  ConnectionPtr connection_;
  std::vector<std::shared_ptr<JetRelation>> list_;
  bool loaded_ = false;
  std::uint64_t version_ = 0;
};

}  // namespace

std::shared_ptr<dao::Relation> MakeRelation(const ConnectionPtr& connection, std::u16string_view name,
                                            std::u16string_view table, std::u16string_view foreignTable,
                                            std::int32_t attributes) {
  auto state = std::make_shared<RelationState>();
  state->home = std::make_shared<RelationHome>(RelationHome{connection, std::u16string(name)});
  state->table = table;
  state->foreignTable = foreignTable;
  state->attributes = static_cast<std::uint32_t>(attributes);
  return std::make_shared<JetRelation>(state);
}

std::shared_ptr<dao::Collection<dao::Relation>> MakeRelations(const ConnectionPtr& connection) {
  return std::make_shared<RelationList>(connection);
}

}  // namespace zimbrat::jet

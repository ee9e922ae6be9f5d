#include "dao_table.h"

namespace zimbrat::jet {

using namespace zimbrat::platform;

void TableState::RequireThere() {
  connection->File();
  if (!IsLive()) return;
  Catalog& catalog = connection->GetCatalog();
  if (isLink ? !catalog.FindTable(name) : !catalog.FindTableByPage(page)) Raise(kErrObjectInvalid);
}

std::shared_ptr<Table> TableState::Open() {
  RequireThere();
  if (isLink) Raise(kErrNotSupported);
  return connection->GetCatalog().Open(page);
}

void TableState::RequireOwn() {
  Open();
  if ((flags & 0x80000002u) != 0) Raise(kErrReadOnly);  // system tables are the engine's own business
}

void TableState::ChangeStructure(const std::function<void(Schema&)>& work) {
  RequireOwn();
  connection->RequireUnused(page);
  connection->Change([&] {
    Schema schema = connection->GetSchema();
    work(schema);
  });
}

void TableState::ChangeProperties(const std::function<void(PropertyBlob&)>& work) {
  RequireOwn();
  Catalog& catalog = connection->GetCatalog();
  PropertyBlob properties = catalog.Properties(ObjectId());
  work(properties);
  if (properties == catalog.Properties(ObjectId())) return;  // nothing to write
  connection->RequireUnused(page);
  connection->Change([&] { connection->GetCatalog().PutProperties(ObjectId(), properties); });
}

std::u16string JetTableDef::Name() {
  return Member(dao::kSourceTableDef, [&] {
    state_->RequireThere();
    return state_->name;
  });
}

void JetTableDef::SetName(std::u16string_view name) {
  Member(dao::kSourceTableDef, [&] {
    state_->RequireThere();
    if (!state_->IsLive()) {
      state_->name = name;
      return;
    }
    if (state_->name == name) return;
    if (state_->isLink) Raise(kErrNotSupported);
    if ((state_->flags & 0x80000002u) != 0) Raise(kErrInvalidOperation);
    state_->ChangeStructure([&](Schema& schema) { schema.RenameTable(state_->page, name); });
    state_->name = name;
  });
}

bool JetTableDef::Updatable() {
  return Member(dao::kSourceTableDef, [&] {
    state_->RequireThere();
    return !state_->isLink;
  });
}

std::int32_t JetTableDef::Attributes() {
  return Member(dao::kSourceTableDef, [&]() -> std::int32_t {
    state_->RequireThere();
    if (state_->isLink) return dao::dbAttachedTable;
    std::int32_t attributes = static_cast<std::int32_t>(state_->flags & 0x80000002u);
    if ((state_->flags & 8u) != 0) attributes |= dao::dbHiddenObject;
    return attributes;
  });
}

std::int32_t JetTableDef::RecordCount() {
  return Member(dao::kSourceTableDef, [&]() -> std::int32_t {
    state_->RequireThere();
    if (!state_->IsLive()) return 0;
    if (state_->isLink) return -1;
    return static_cast<std::int32_t>(state_->Open()->Definition().rows);
  });
}

std::shared_ptr<dao::Field> JetTableDef::CreateField(std::u16string_view name, const dao::Value& type,
                                                     const dao::Value& size) {
  return Member(dao::kSourceTableDef, [&] {
    FieldSpec spec;
    spec.name = name;
    spec.type = dao::NumberArgument(type, dao::kSourceTableDef);
    spec.size = dao::NumberArgument(size, dao::kSourceTableDef);
    return std::make_shared<JetField>(state_, spec);
  });
}

std::shared_ptr<dao::Index> JetTableDef::CreateIndex(std::u16string_view name) {
  return Member(dao::kSourceTableDef,
                [&] { return std::make_shared<JetIndex>(state_, std::u16string(name)); });
}

}  // namespace zimbrat::jet

#include "dao_definitions.h"

#include "dao_values.h"

namespace zimbrat::platform {
namespace {

// Collections know their names only through their owner's member.
template <class C>
std::shared_ptr<C> PartsOf(DaoObject& owner, const char16_t* member, std::u16string_view source,
                           Follows follows = Follows::Nothing) {
  return std::make_shared<C>(owner.Scope(), source, owner.AskObject(member), follows);
}

}  // namespace

// The type is asked for only where the value looks like a GUID.
dao::Value DaoField::Value() {
  dao::Value value = ValueIn(object_.Ask(u"Value"));
  const std::optional<dao::Guid> guid = FindGuid(value);
  if (guid && Type() == dao::dbGUID) return *guid;
  return value;
}

void DaoField::SetValue(const dao::Value& value) {
  object_.Put(u"Value", VariantOf(value));
}

std::shared_ptr<dao::Field> DaoIndex::CreateField(std::u16string_view name) {
  return Made<DaoField>(u"CreateField", TextVariant(name));
}

std::shared_ptr<dao::Collection<dao::Field>> DaoIndex::Fields() {
  return PartsOf<DaoFields>(object_, u"Fields", dao::kSourceIndexFields);
}

std::shared_ptr<dao::Field> DaoTableDef::CreateField(std::u16string_view name,
                                                     const dao::Value& type,
                                                     const dao::Value& size) {
  // Converted here, as the embedded engine does: servers differ in what they make of a text.
  Variant typeNumber = NumberVariant(dao::NumberArgument(type, dao::kSourceTableDef));
  Variant sizeNumber = NumberVariant(dao::NumberArgument(size, dao::kSourceTableDef));
  return Made<DaoField>(u"CreateField", TextVariant(name), std::move(typeNumber),
                        std::move(sizeNumber));
}

std::shared_ptr<dao::Index> DaoTableDef::CreateIndex(std::u16string_view name) {
  return Made<DaoIndex>(u"CreateIndex", TextVariant(name));
}

std::shared_ptr<dao::Collection<dao::Field>> DaoTableDef::Fields() {
  return PartsOf<DaoFields>(object_, u"Fields", dao::kSourceFields, follows_);
}

std::shared_ptr<dao::Collection<dao::Index>> DaoTableDef::Indexes() {
  return PartsOf<DaoIndexes>(object_, u"Indexes", dao::kSourceIndexes, follows_);
}

std::shared_ptr<dao::Field> DaoRelation::CreateField(std::u16string_view name) {
  return Made<DaoField>(u"CreateField", TextVariant(name));
}

std::shared_ptr<dao::Collection<dao::Field>> DaoRelation::Fields() {
  return PartsOf<DaoFields>(object_, u"Fields", dao::kSourceFields);
}

}  // namespace zimbrat::platform

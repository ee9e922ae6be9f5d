// Tables, fields, indexes and relations of an installed engine, behind platform/dao.h.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "dao_object.h"

#include "platform/dao.h"
#include "platform/dao_errors.h"
#include "platform/error_numbers.h"

namespace zimbrat::platform {

// What all of them share: an object, and calls in terms of texts, numbers and flags.
class DaoMembers {
 public:
  DaoMembers(DaoScopePtr scope, std::u16string_view source, ComReference<IDispatch> object)
      : object_(std::move(scope), source, std::move(object)) {}

  DaoObject& Object() { return object_; }

 protected:
  std::u16string Text(const char16_t* member) { return TextIn(object_.Ask(member)); }
  std::int32_t Number(const char16_t* member) { return NumberIn(object_.Ask(member)); }
  bool Flag(const char16_t* member) { return FlagIn(object_.Ask(member)); }
  void Put(const char16_t* member, std::u16string_view text) {
    object_.Put(member, TextVariant(text));
  }
  void Put(const char16_t* member, std::int32_t number) {
    object_.Put(member, NumberVariant(number));
  }
  void Put(const char16_t* member, bool flag) { object_.Put(member, FlagVariant(flag)); }
  // Of a stored object: the engine's collections know the former name until they are refreshed.
  void Rename(std::u16string_view name) {
    Put(u"Name", name);
    object_.Scope()->NoteChange();
  }
  // What a member gives, as an object of that class in the same scope.
  template <class T, class... Arguments>
  std::shared_ptr<T> Made(const char16_t* member, Arguments... arguments) {
    return std::make_shared<T>(object_.Scope(), object_.AskObject(member, std::move(arguments)...));
  }

  DaoObject object_;
};

// Whether a collection is one of what is stored in the database, and so has to be refreshed after
// changes.
enum class Follows { Nothing, Changes };

// A collection of T whose members this program wraps as Wrapper.
template <class T, class Wrapper>
class DaoCollection : public dao::Collection<T>, public DaoMembers {
 public:
  DaoCollection(DaoScopePtr scope, std::u16string_view source, ComReference<IDispatch> object,
                Follows follows = Follows::Nothing)
      : DaoMembers(std::move(scope), source, std::move(object)), follows_(follows) {}

  int Count() override {
    CatchUp();
    return Number(u"Count");
  }
  std::shared_ptr<T> Item(int position) override { return Found(NumberVariant(position)); }
  std::shared_ptr<T> Item(std::u16string_view name) override { return Found(TextVariant(name)); }
  // Error 3001 for an object of another engine.
  void Append(const std::shared_ptr<T>& object) override {
    auto* const ours = dynamic_cast<Wrapper*>(object.get());
    if (ours == nullptr) object_.Raise(kErrInvalidArgument);
    CatchUp();
    object_.Ask(u"Append", ObjectVariant(ours->Object().Reference()));
  }
  void Delete(std::u16string_view name) override {
    CatchUp();
    object_.Ask(u"Delete", TextVariant(name));
  }
  void Refresh() override { object_.Ask(u"Refresh"); }

 private:
  void CatchUp() {
    if (follows_ == Follows::Nothing || seen_ == object_.Scope()->Changes()) return;
    Refresh();
    seen_ = object_.Scope()->Changes();
  }
  std::shared_ptr<T> Found(Variant which) {
    CatchUp();
    auto found = Made<Wrapper>(u"Item", std::move(which));
    if constexpr (std::is_same_v<T, dao::TableDef>) found->BecomeStored();
    return found;
  }

  Follows follows_;
  int seen_ = 0;  // of the scope's changes
};

class DaoField : public dao::Field, public DaoMembers {
 public:
  DaoField(DaoScopePtr scope, ComReference<IDispatch> object)
      : DaoMembers(std::move(scope), dao::kSourceField, std::move(object)) {}

  std::u16string Name() override { return Text(u"Name"); }
  void SetName(std::u16string_view name) override { Rename(name); }
  std::int16_t Type() override { return static_cast<std::int16_t>(Number(u"Type")); }
  std::int32_t Size() override { return Number(u"Size"); }
  std::int32_t Attributes() override { return Number(u"Attributes"); }
  void SetAttributes(std::int32_t attributes) override { Put(u"Attributes", attributes); }
  bool Required() override { return Flag(u"Required"); }
  void SetRequired(bool required) override { Put(u"Required", required); }
  bool AllowZeroLength() override { return Flag(u"AllowZeroLength"); }
  void SetAllowZeroLength(bool allow) override { Put(u"AllowZeroLength", allow); }
  std::u16string DefaultValue() override { return Text(u"DefaultValue"); }
  void SetDefaultValue(std::u16string_view expression) override {
    Put(u"DefaultValue", expression);
  }
  std::u16string ValidationRule() override { return Text(u"ValidationRule"); }
  void SetValidationRule(std::u16string_view expression) override {
    Put(u"ValidationRule", expression);
  }
  std::u16string ValidationText() override { return Text(u"ValidationText"); }
  void SetValidationText(std::u16string_view text) override { Put(u"ValidationText", text); }
  std::u16string ForeignName() override { return Text(u"ForeignName"); }
  void SetForeignName(std::u16string_view name) override { Put(u"ForeignName", name); }
  dao::Value Value() override;
  void SetValue(const dao::Value& value) override;
};

using DaoFields = DaoCollection<dao::Field, DaoField>;

class DaoIndex : public dao::Index, public DaoMembers {
 public:
  DaoIndex(DaoScopePtr scope, ComReference<IDispatch> object)
      : DaoMembers(std::move(scope), dao::kSourceIndex, std::move(object)) {}

  std::u16string Name() override { return Text(u"Name"); }
  void SetName(std::u16string_view name) override { Rename(name); }
  bool Primary() override { return Flag(u"Primary"); }
  void SetPrimary(bool primary) override { Put(u"Primary", primary); }
  bool Unique() override { return Flag(u"Unique"); }
  void SetUnique(bool unique) override { Put(u"Unique", unique); }
  bool Required() override { return Flag(u"Required"); }
  void SetRequired(bool required) override { Put(u"Required", required); }
  bool IgnoreNulls() override { return Flag(u"IgnoreNulls"); }
  void SetIgnoreNulls(bool ignore) override { Put(u"IgnoreNulls", ignore); }
  bool Foreign() override { return Flag(u"Foreign"); }
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name) override;
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override;
};

using DaoIndexes = DaoCollection<dao::Index, DaoIndex>;

class DaoTableDef : public dao::TableDef, public DaoMembers {
 public:
  DaoTableDef(DaoScopePtr scope, ComReference<IDispatch> object)
      : DaoMembers(std::move(scope), dao::kSourceTableDef, std::move(object)) {}

  std::u16string Name() override { return Text(u"Name"); }
  void SetName(std::u16string_view name) override { Rename(name); }
  bool Updatable() override { return Flag(u"Updatable"); }
  std::int32_t Attributes() override { return Number(u"Attributes"); }
  std::int32_t RecordCount() override { return Number(u"RecordCount"); }
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name, const dao::Value& type,
                                          const dao::Value& size) override;
  std::shared_ptr<dao::Index> CreateIndex(std::u16string_view name) override;
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override;
  std::shared_ptr<dao::Collection<dao::Index>> Indexes() override;

  // It was found in the database.
  void BecomeStored() { follows_ = Follows::Changes; }

 private:
  Follows follows_ = Follows::Nothing;
};

class DaoRelation : public dao::Relation, public DaoMembers {
 public:
  DaoRelation(DaoScopePtr scope, ComReference<IDispatch> object)
      : DaoMembers(std::move(scope), dao::kSourceRelation, std::move(object)) {}

  std::u16string Name() override { return Text(u"Name"); }
  void SetName(std::u16string_view name) override { Rename(name); }
  std::u16string Table() override { return Text(u"Table"); }
  std::u16string ForeignTable() override { return Text(u"ForeignTable"); }
  std::int32_t Attributes() override { return Number(u"Attributes"); }
  std::shared_ptr<dao::Field> CreateField(std::u16string_view name) override;
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override;
};

}  // namespace zimbrat::platform

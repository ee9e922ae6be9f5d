// The objects of an installed engine as this program holds them.
//
// A reference into a database keeps its file open, whatever was closed. Therefore every object
// belongs to a scope, a database's or a session's, and when that ends all its references are given
// back at once, whoever still holds the objects: their members raise 3420 from then on.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "com_apartment.h"
#include "dispatch.h"

#include "platform/run_time_error.h"

namespace zimbrat::platform {

// One engine: its automation object, and the numbers of the members that were called. A source is a
// text of dao_errors.h and stands for a class.
class DaoContext {
 public:
  explicit DaoContext(ComReference<IDispatch> engine) : engine_(std::move(engine)) {}

  IDispatch& Engine() { return *engine_.Get(); }
  DISPID IdOf(IDispatch& object, std::u16string_view source, const char16_t* member);
  // With what the engine's own list of errors adds.
  [[noreturn]] void RaiseOf(AutomationError error, std::u16string_view source);

 private:
  std::optional<Variant> Ask(IDispatch& object, std::u16string_view member,
                             std::span<const Variant> arguments = {});
  void AddFromErrors(AutomationError& error);

  Apartment apartment_;  // outlives the reference
  ComReference<IDispatch> engine_;
  std::map<std::pair<std::u16string_view, std::u16string_view>, DISPID> ids_;
};
using DaoContextPtr = std::shared_ptr<DaoContext>;

class DaoObject;

class DaoScope {
 public:
  explicit DaoScope(DaoContextPtr context) : context_(std::move(context)) {}

  DaoContext& Context() { return *context_; }
  const DaoContextPtr& ContextPtr() { return context_; }
  // Gives back every reference of its objects.
  void End() noexcept;

  // How often a statement or another name changed definitions, which the engine's collections do
  // not notice by themselves.
  int Changes() const { return changes_; }
  void NoteChange() { ++changes_; }

 private:
  friend class DaoObject;

  DaoContextPtr context_;
  std::set<DaoObject*> objects_;
  int changes_ = 0;
};
using DaoScopePtr = std::shared_ptr<DaoScope>;

class DaoObject {
 public:
  DaoObject(DaoScopePtr scope, std::u16string_view source, ComReference<IDispatch> object);
  ~DaoObject();
  DaoObject(const DaoObject&) = delete;
  DaoObject& operator=(const DaoObject&) = delete;

  const DaoScopePtr& Scope() const { return scope_; }
  bool IsSet() const { return object_.IsOpen(); }
  // Error 3420 once the reference was given back.
  IDispatch& Reference() const;

  // Calls the method, or asks for the property. Arguments as dispatch.h makes them.
  template <class... Arguments>
  Variant Ask(const char16_t* member, Arguments... arguments) {
    const Variant values[] = {std::move(arguments)..., Variant()};
    return Do(member, Access::Call, {values, sizeof...(arguments)});
  }
  void Put(const char16_t* member, Variant value) { Do(member, Access::Put, {&value, 1}); }
  // An object that a member gives; error 91 when it gives none.
  template <class... Arguments>
  ComReference<IDispatch> AskObject(const char16_t* member, Arguments... arguments) {
    return ObjectOrRaise(Ask(member, std::move(arguments)...));
  }

  // A member, Close for one, of which nobody wants to hear any more.
  void AskQuietly(const char16_t* member) noexcept;
  void GiveBack() noexcept;
  [[noreturn]] void Raise(std::int32_t number, std::u16string_view a = {},
                          std::u16string_view b = {}) const;

 private:
  Variant Do(const char16_t* member, Access access, std::span<const Variant> arguments);
  ComReference<IDispatch> ObjectOrRaise(const Variant& value) const;

  DaoScopePtr scope_;
  std::u16string_view source_;
  ComReference<IDispatch> object_;
};

}  // namespace zimbrat::platform

#include "dao_object.h"

#include "platform/dao_errors.h"
#include "platform/error_numbers.h"

namespace zimbrat::platform {

DISPID DaoContext::IdOf(IDispatch& object, std::u16string_view source, const char16_t* member) {
  const auto known = ids_.find({source, member});
  if (known != ids_.end()) return known->second;
  DISPID id = DISPID_UNKNOWN;
  if (const auto error = FindMember(object, member, id)) RaiseOf(*error, source);
  ids_.emplace(std::pair(source, member), id);
  return id;
}

void DaoContext::RaiseOf(AutomationError error, std::u16string_view source) {
  try {
    if (error.source.empty() || error.description.empty()) AddFromErrors(error);
  } catch (const std::exception&) {
    // A list that makes no sense; what the call itself told is kept.
  }
  if (error.source.empty()) error.source = source;
  if (error.description.empty() && error.number > 0) error.description = dao::ErrorText(error.number);
  platform::Raise(error);
}

// By hand: what fails here must not replace the error that is told.
std::optional<Variant> DaoContext::Ask(IDispatch& object, std::u16string_view member,
                                       std::span<const Variant> arguments) {
  DISPID id = DISPID_UNKNOWN;
  Variant result;
  if (FindMember(object, member, id)) return std::nullopt;
  if (CallMember(object, id, Access::Call, arguments, result)) return std::nullopt;
  return result;
}

// The last of the list is the error of the call. An older one stays in it: the number tells them
// apart.
void DaoContext::AddFromErrors(AutomationError& error) {
  const bool isFromDao =
      error.code == DISP_E_EXCEPTION || HRESULT_FACILITY(error.code) == FACILITY_CONTROL;
  if (!isFromDao) return;
  const auto list = Ask(Engine(), u"Errors");
  const ComReference<IDispatch> errors = list ? ObjectIn(*list) : ComReference<IDispatch>();
  const auto count = errors.IsOpen() ? Ask(*errors.Get(), u"Count") : std::nullopt;
  const std::int32_t size = count ? NumberIn(*count) : 0;
  if (size <= 0) return;
  const Variant last = NumberVariant(size - 1);
  const auto item = Ask(*errors.Get(), u"Item", {&last, 1});
  const ComReference<IDispatch> entry = item ? ObjectIn(*item) : ComReference<IDispatch>();
  const auto number = entry.IsOpen() ? Ask(*entry.Get(), u"Number") : std::nullopt;
  if (!number || (error.number != 0 && NumberIn(*number) != error.number)) return;
  const auto source = Ask(*entry.Get(), u"Source"), text = Ask(*entry.Get(), u"Description");
  error = {error.code, NumberIn(*number), source ? TextIn(*source) : error.source,
           text ? TextIn(*text) : error.description};
}

void DaoScope::End() noexcept {
  while (!objects_.empty()) (*objects_.begin())->GiveBack();
}

DaoObject::DaoObject(DaoScopePtr scope, std::u16string_view source, ComReference<IDispatch> object)
    : scope_(std::move(scope)), source_(source), object_(std::move(object)) {
  scope_->objects_.insert(this);
}

DaoObject::~DaoObject() {
  GiveBack();
}

IDispatch& DaoObject::Reference() const {
  if (!object_.IsOpen()) Raise(kErrObjectInvalid);
  return *object_.Get();
}

void DaoObject::GiveBack() noexcept {
  scope_->objects_.erase(this);
  const ComReference<IDispatch> last = std::move(object_);
}

void DaoObject::Raise(std::int32_t number, std::u16string_view a, std::u16string_view b) const {
  throw RunTimeError(number, std::u16string(source_), dao::ErrorText(number, a, b));
}

void DaoObject::AskQuietly(const char16_t* member) noexcept {
  try {
    if (IsSet()) Ask(member);
  } catch (const std::exception&) {
    // An earlier error, or the end of the program, is what matters.
  }
}

Variant DaoObject::Do(const char16_t* member, Access access, std::span<const Variant> arguments) {
  IDispatch& object = Reference();
  const DISPID id = scope_->Context().IdOf(object, source_, member);
  Variant result;
  if (const auto error = CallMember(object, id, access, arguments, result))
    scope_->Context().RaiseOf(*error, source_);
  return result;
}

ComReference<IDispatch> DaoObject::ObjectOrRaise(const Variant& value) const {
  ComReference<IDispatch> object = ObjectIn(value);
  if (!object.IsOpen()) {
    throw RunTimeError(kErrObjectNotSet, std::u16string(source_),
                       std::u16string(TextOfError(kErrObjectNotSet)));
  }
  return object;
}

}  // namespace zimbrat::platform

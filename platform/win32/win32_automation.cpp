#include "win32_automation.h"

#include <windows.h>

#include <oleauto.h>

#include "com_apartment.h"
#include "dispatch.h"
#include "handles.h"
#include "wide_text.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {
namespace {

Variant ArgumentOf(const AutomationArgument& argument) {
  if (const auto* number = std::get_if<std::int32_t>(&argument)) return NumberVariant(*number);
  return TextVariant(std::get<std::u16string>(argument));
}

class DispatchObject : public AutomationObject {
 public:
  explicit DispatchObject(ComReference<IDispatch> object) : object_(std::move(object)) {}

  void Put(std::u16string_view property, std::u16string_view text) override {
    const Variant value = TextVariant(text);
    Do(property, Access::Put, {&value, 1});
  }

  std::unique_ptr<AutomationObject> Call(std::u16string_view member,
                                         const std::vector<AutomationArgument>& arguments) override {
    std::vector<Variant> values;
    for (const AutomationArgument& argument : arguments) values.push_back(ArgumentOf(argument));
    ComReference<IDispatch> given = ObjectIn(Do(member, Access::Call, values));
    return given.IsOpen() ? std::make_unique<DispatchObject>(std::move(given)) : nullptr;
  }

 private:
  Variant Do(std::u16string_view member, Access access, std::span<const Variant> arguments) {
    DISPID id = 0;
    Variant result;
    if (const auto error = FindMember(*object_.Get(), member, id)) Raise(*error);
    if (const auto error = CallMember(*object_.Get(), id, access, arguments, result)) Raise(*error);
    return result;
  }

  Apartment apartment_;  // outlives the reference
  ComReference<IDispatch> object_;
};

}  // namespace

std::unique_ptr<AutomationObject> Win32Automation::Create(std::u16string_view programId) {
  const Apartment apartment;
  CLSID type = {};
  ComReference<IDispatch> object;
  HRESULT code = ::CLSIDFromProgID(Lend(std::u16string(programId)), &type);
  if (SUCCEEDED(code)) {
    code = ::CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(object.Receive()));
  }
  if (FAILED(code)) throw OwnError(kErrCannotCreateObject);
  return std::make_unique<DispatchObject>(std::move(object));
}

}  // namespace zimbrat::platform

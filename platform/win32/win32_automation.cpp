#include "win32_automation.h"

#include <windows.h>

#include <oleauto.h>

#include "com_apartment.h"
#include "handles.h"
#include "wide_text.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {
namespace {

Bstr MakeBstr(std::u16string_view text) {
  Bstr made(::SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size())));
  if (!made.IsOpen()) throw OwnError(kErrOutOfMemory);
  return made;
}

std::u16string TextOf(const Bstr& text) {
  if (!text.IsOpen()) return {};
  return FromWide({text.Get(), ::SysStringLen(text.Get())});
}

// The numbers of Visual Basic travel in codes of the facility "control".
std::int32_t NumberOf(HRESULT code) {
  constexpr HRESULT kUnknownName = DISP_E_UNKNOWNNAME, kNotFound = DISP_E_MEMBERNOTFOUND;
  if (code == kUnknownName || code == kNotFound) return kErrNoSuchMember;
  if (code == DISP_E_TYPEMISMATCH) return kErrTypeMismatch;
  if (code == E_OUTOFMEMORY) return kErrOutOfMemory;
  return HRESULT_FACILITY(code) == FACILITY_CONTROL ? HRESULT_CODE(code) : static_cast<std::int32_t>(code);
}

std::u16string SystemText(HRESULT code) {
  std::u16string text(512, u'\0');
  const DWORD length =
      ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(code), 0, LendRoom(text), static_cast<DWORD>(text.size()), nullptr);
  text.resize(length);
  text.resize(text.find_last_not_of(u"\r\n ") + 1);
  return text.empty() ? std::u16string(TextOfError(kErrAutomation)) : text;
}

[[noreturn]] void Raise(HRESULT code) {
  const std::int32_t number = NumberOf(code);
  const std::u16string_view own = TextOfError(number);
  throw RunTimeError(number, kOwnErrorSource, own.empty() ? SystemText(code) : std::u16string(own));
}

// What the object said of its failure.
[[noreturn]] void Raise(EXCEPINFO& said) {
  if (said.pfnDeferredFillIn != nullptr) said.pfnDeferredFillIn(&said);
  const Bstr source(said.bstrSource), description(said.bstrDescription), help(said.bstrHelpFile);
  std::int32_t number = said.wCode != 0 ? said.wCode : NumberOf(said.scode);
  if (number == 0) number = kErrAutomation;
  const std::u16string text = TextOf(description);
  throw RunTimeError(number, TextOf(source), text.empty() ? SystemText(said.scode) : text);
}

void Fill(VARIANT& variant, const AutomationArgument& argument) {
  if (const auto* number = std::get_if<std::int32_t>(&argument)) {
    variant.vt = VT_I4;
    variant.lVal = *number;
    return;
  }
  variant.bstrVal = MakeBstr(std::get<std::u16string>(argument)).Detach();
  variant.vt = VT_BSTR;
}

class DispatchObject : public AutomationObject {
 public:
  explicit DispatchObject(ComReference<IDispatch> object) : object_(std::move(object)) {}

  void Put(std::u16string_view property, std::u16string_view text) override {
    const DISPID id = Find(property);
    Variant value;
    Fill(*value.Get(), std::u16string(text));
    DISPID role = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {value.Get(), &role, 1, 1};
    Invoke(id, DISPATCH_PROPERTYPUT, parameters, nullptr);
  }

  std::unique_ptr<AutomationObject> Call(std::u16string_view member,
                                         const std::vector<AutomationArgument>& arguments) override {
    const DISPID id = Find(member);
    // The last argument stands first.
    std::vector<Variant> kept(arguments.size());
    std::vector<VARIANTARG> values;
    for (std::size_t i = arguments.size(); i-- > 0;) {
      Fill(*kept[i].Get(), arguments[i]);
      values.push_back(*kept[i].Get());
    }
    DISPPARAMS parameters = {values.data(), nullptr, static_cast<UINT>(values.size()), 0};
    Variant result;
    Invoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, result.Get());
    if (result.Get()->vt != VT_DISPATCH || result.Get()->pdispVal == nullptr) return nullptr;
    result.Get()->vt = VT_EMPTY;
    return std::make_unique<DispatchObject>(ComReference<IDispatch>(result.Get()->pdispVal));
  }

 private:
  DISPID Find(std::u16string_view member) {
    std::u16string name(member);
    wchar_t* names = LendRoom(name);
    DISPID id = 0;
    const HRESULT code = object_.Get()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(code)) Raise(code);
    return id;
  }

  void Invoke(DISPID id, WORD kind, DISPPARAMS& parameters, VARIANT* result) {
    EXCEPINFO said = {};
    const HRESULT code = object_.Get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result,
                                               &said, nullptr);
    if (code == DISP_E_EXCEPTION) Raise(said);
    if (FAILED(code)) Raise(code);
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

#include "dispatch.h"

#include <utility>
#include <vector>

#include "floating_point.h"
#include "wide_text.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {
namespace {

constexpr LCID kEnglish = 0x0409;

Bstr MakeBstr(std::u16string_view text) {
  Bstr made(::SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()),
                                static_cast<UINT>(text.size())));
  if (!made.IsOpen()) throw OwnError(kErrOutOfMemory);
  return made;
}

std::u16string TextOf(const Bstr& text) {
  if (!text.IsOpen()) return {};
  return FromWide({text.Get(), ::SysStringLen(text.Get())});
}

struct CodeNumber {
  std::uint32_t code;
  std::int32_t number;
};

// As Visual Basic tells them.
constexpr CodeNumber kCodeNumbers[] = {
    {0x80004001, kErrActionNotSupported},   // E_NOTIMPL
    {0x80004002, kErrNoInterface},          // E_NOINTERFACE
    {0x80004004, kErrAborted},              // E_ABORT
    {0x80020003, kErrNoSuchMember},         // DISP_E_MEMBERNOTFOUND
    {0x80020004, kErrArgumentNotFound},     // DISP_E_PARAMNOTFOUND
    {0x80020005, kErrTypeMismatch},         // DISP_E_TYPEMISMATCH
    {0x80020006, kErrNoSuchMember},         // DISP_E_UNKNOWNNAME
    {0x80020007, kErrNoNamedArguments},     // DISP_E_NONAMEDARGS
    {0x80020008, kErrTypeMismatch},         // DISP_E_BADVARTYPE
    {0x8002000A, kErrOverflow},             // DISP_E_OVERFLOW
    {0x8002000B, kErrSubscript},            // DISP_E_BADINDEX
    {0x8002000E, kErrWrongArguments},       // DISP_E_BADPARAMCOUNT
    {0x8002000F, kErrArgumentNotOptional},  // DISP_E_PARAMNOTOPTIONAL
    {0x80020012, kErrDivisionByZero},       // DISP_E_DIVBYZERO
    {0x80040111, kErrCannotCreateObject},   // CLASS_E_CLASSNOTAVAILABLE
    {0x80040112, kErrCannotCreateObject},   // CLASS_E_NOTLICENSED
    {0x80040154, kErrCannotCreateObject},   // REGDB_E_CLASSNOTREG
    {0x800401F3, kErrCannotCreateObject},   // CO_E_CLASSSTRING
    {0x80070005, kErrPermissionDenied},     // E_ACCESSDENIED
    {0x8007000E, kErrOutOfMemory},          // E_OUTOFMEMORY
    {0x80070057, kErrInvalidCall},          // E_INVALIDARG
    {0x8007007E, kErrCannotCreateObject},   // a library is missing
    {0x800700C1, kErrCannotCreateObject},   // a library of the other bitness
    {0x8007045A, kErrCannotCreateObject},   // a library that does not start
};

std::u16string SystemText(HRESULT code) {
  std::u16string text(512, u'\0');
  const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                        nullptr, static_cast<DWORD>(code), 0, LendRoom(text),
                                        static_cast<DWORD>(text.size()), nullptr);
  text.resize(length);
  text.resize(text.find_last_not_of(u"\r\n ") + 1);
  return text.empty() ? std::u16string(TextOfError(kErrAutomation)) : text;
}

AutomationError ErrorOfCode(HRESULT code) {
  return {code, NumberOfCode(code), {}, {}};
}

// What the object said of its failure; the texts in it are ours to release.
AutomationError ErrorOfObject(EXCEPINFO& said) {
  if (said.pfnDeferredFillIn != nullptr) said.pfnDeferredFillIn(&said);
  const Bstr source(said.bstrSource), description(said.bstrDescription), help(said.bstrHelpFile);
  const bool isNamed = said.wCode != 0 || said.scode == 0;
  return {isNamed ? DISP_E_EXCEPTION : said.scode, isNamed ? said.wCode : NumberOfCode(said.scode),
          TextOf(source), TextOf(description)};
}

// `value` as another type; what it stays valid for is up to the caller.
Variant Converted(const Variant& value, VARTYPE type) {
  Variant converted;
  const VARTYPE from = value.Get()->vt;
  if (from == VT_NULL || from == VT_EMPTY) return converted;
  const HRESULT code = ::VariantChangeTypeEx(converted.Get(), value.Get(), kEnglish, 0, type);
  if (FAILED(code)) Raise(ErrorOfCode(code));
  return converted;
}

}  // namespace

Variant TextVariant(std::u16string_view text) {
  Variant value;
  value.Get()->bstrVal = MakeBstr(text).Detach();
  value.Get()->vt = VT_BSTR;
  return value;
}

Variant NumberVariant(std::int32_t number) {
  Variant value;
  value.Get()->vt = VT_I4;
  value.Get()->lVal = number;
  return value;
}

Variant FlagVariant(bool flag) {
  Variant value;
  value.Get()->vt = VT_BOOL;
  value.Get()->boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

Variant ObjectVariant(IDispatch& object) {
  Variant value;
  object.AddRef();
  value.Get()->vt = VT_DISPATCH;
  value.Get()->pdispVal = &object;
  return value;
}

Variant MissingVariant() {
  Variant value;
  value.Get()->vt = VT_ERROR;
  value.Get()->scode = DISP_E_PARAMNOTFOUND;
  return value;
}

std::u16string TextIn(const Variant& value) {
  const Variant text = Converted(value, VT_BSTR);
  if (text.Get()->vt != VT_BSTR) return {};
  return FromWide({text.Get()->bstrVal, ::SysStringLen(text.Get()->bstrVal)});
}

std::int32_t NumberIn(const Variant& value) {
  const Variant number = Converted(value, VT_I4);
  return number.Get()->vt == VT_I4 ? number.Get()->lVal : 0;
}

bool FlagIn(const Variant& value) {
  const Variant flag = Converted(value, VT_BOOL);
  return flag.Get()->vt == VT_BOOL && flag.Get()->boolVal != VARIANT_FALSE;
}

ComReference<IDispatch> ObjectIn(const Variant& value) {
  ComReference<IDispatch> object;
  const VARIANT& in = *value.Get();
  const bool isObject = in.vt == VT_DISPATCH || in.vt == VT_UNKNOWN;
  if (isObject && in.punkVal != nullptr) {
    in.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(object.Receive()));
  }
  return object;
}

std::int32_t NumberOfCode(HRESULT code) {
  const auto bits = static_cast<std::uint32_t>(code);
  // Numbers of Visual Basic and of DAO travel in codes of the facility "control".
  if ((bits & 0xFFFF0000u) == 0x800A0000u) return static_cast<std::int32_t>(bits & 0xFFFFu);
  for (const CodeNumber& row : kCodeNumbers) {
    if (row.code == bits) return row.number;
  }
  return static_cast<std::int32_t>(code);
}

std::optional<AutomationError> FindMember(IDispatch& object, std::u16string_view name, DISPID& id) {
  std::u16string text(name);
  wchar_t* names = LendRoom(text);
  const HRESULT code = object.GetIDsOfNames(IID_NULL, &names, 1, kEnglish, &id);
  if (FAILED(code)) return ErrorOfCode(code);
  return std::nullopt;
}

std::optional<AutomationError> CallMember(IDispatch& object, DISPID id, Access access,
                                          std::span<const Variant> arguments, Variant& result) {
  // The last argument stands first. They are lent: the variants keep what they own.
  std::vector<VARIANTARG> values;
  values.reserve(arguments.size());
  for (std::size_t i = arguments.size(); i-- > 0;) values.push_back(*arguments[i].Get());
  DISPPARAMS parameters = {values.data(), nullptr, static_cast<UINT>(values.size()), 0};
  DISPID role = DISPID_PROPERTYPUT;
  if (access == Access::Put) {
    parameters.rgdispidNamedArgs = &role;
    parameters.cNamedArgs = 1;
  }
  const FloatingPoint kept;
  Variant given;
  EXCEPINFO said = {};
  const bool isPut = access == Access::Put;
  const HRESULT code = object.Invoke(
      id, IID_NULL, kEnglish, isPut ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD | DISPATCH_PROPERTYGET,
      &parameters, isPut ? nullptr : given.Get(), &said, nullptr);
  if (code == DISP_E_EXCEPTION) return ErrorOfObject(said);
  if (FAILED(code)) return ErrorOfCode(code);
  if ((given.Get()->vt & VT_BYREF) == 0) {
    result = std::move(given);
    return std::nullopt;
  }
  // Lent by the server.
  const HRESULT copied = ::VariantCopyInd(result.Get(), given.Get());
  if (FAILED(copied)) return ErrorOfCode(copied);
  return std::nullopt;
}

void Raise(const AutomationError& error) {
  const std::int32_t number = error.number != 0 ? error.number : kErrAutomation;
  const std::u16string_view own = TextOfError(number);
  const std::u16string said = own.empty() ? SystemText(error.code) : std::u16string(own);
  throw RunTimeError(number, error.source.empty() ? std::u16string(kOwnErrorSource) : error.source,
                     error.description.empty() ? said : error.description);
}

}  // namespace zimbrat::platform

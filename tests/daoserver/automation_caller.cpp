#include "automation_caller.h"

#include <array>
#include <cstdio>

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

std::string Words(HRESULT code, EXCEPINFO& said) {
  std::array<char, 16> digits;
  std::snprintf(digits.data(), digits.size(), "%08lX", static_cast<unsigned long>(code));
  if (code != DISP_E_EXCEPTION) return digits.data();
  if (said.pfnDeferredFillIn != nullptr) said.pfnDeferredFillIn(&said);
  const Bstr source(said.bstrSource), description(said.bstrDescription), help(said.bstrHelpFile);
  EXPECT_EQ(static_cast<unsigned>(said.scode) & 0xFFFF0000u, 0x800A0000u);
  const std::u16string from = FromWide({source.Get(), ::SysStringLen(source.Get())});
  EXPECT_EQ(from.empty(), ::SysStringLen(description.Get()) == 0);
  return std::to_string(said.scode & 0xFFFF) + (from.empty() ? "" : " " + Utf8FromUtf16(from));
}

}  // namespace

DISPID IdOf(const Reference& object, const wchar_t* name) {
  std::wstring text = name;
  LPOLESTR names = text.data();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT code = object.Get()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id);
  EXPECT_EQ(code, id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK);
  return id;
}

Answer Ask(const Reference& object, DISPID id, WORD kind, std::vector<Any> arguments) {
  std::vector<VARIANT> reversed;
  for (auto it = arguments.rbegin(); it != arguments.rend(); ++it) reversed.push_back(**it);
  DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  DISPID put = DISPID_PROPERTYPUT;
  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  if (isPut) {
    parameters.cNamedArgs = 1;
    parameters.rgdispidNamedArgs = &put;
  }
  Answer answer;
  EXCEPINFO said = {};
  const HRESULT code = object.Get()->Invoke(id, IID_NULL, 0x0409, kind, &parameters,
                                            isPut ? nullptr : answer.value.Get(), &said, nullptr);
  if (FAILED(code)) answer.error = Words(code, said);
  return answer;
}

Answer Do(const Reference& object, const wchar_t* name, std::vector<Any> arguments) {
  return Ask(object, IdOf(object, name), DISPATCH_METHOD, std::move(arguments));
}
Answer Get(const Reference& object, const wchar_t* name, std::vector<Any> arguments) {
  return Ask(object, IdOf(object, name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments));
}
std::string Put(const Reference& object, const wchar_t* name, const Any& value) {
  return Ask(object, IdOf(object, name), DISPATCH_PROPERTYPUT, {value}).error;
}
Reference Part(const Reference& object, const wchar_t* collection, const Any& which) {
  return Get(Get(object, collection).Object(), L"Item", {which}).Object();
}

}  // namespace zimbrat::tests

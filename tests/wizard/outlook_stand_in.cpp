#include "tests/wizard/outlook_stand_in.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

constexpr CLSID kClass = {0x5a9e1a52, 0x6c1f, 0x4d0b, {0x9b, 0x3e, 0x21, 0x60, 0x7c, 0x44, 0xe8, 0x90}};
constexpr const wchar_t* kClassText = L"{5A9E1A52-6C1F-4D0B-9B3E-21607C44E890}";

std::string Narrow(std::wstring_view text) { return platform::Utf8FromUtf16(platform::ViewWide(text)); }

std::string TextOfValue(const VARIANT& value) {
  if (value.vt == VT_BSTR) return Narrow({value.bstrVal, ::SysStringLen(value.bstrVal)});
  return value.vt == VT_I4 ? std::to_string(value.lVal) : "<type " + std::to_string(value.vt) + ">";
}

HRESULT Refuse(EXCEPINFO& said) {
  said.scode = static_cast<SCODE>(0x800A011F);
  said.bstrSource = ::SysAllocString(L"Microsoft Outlook");
  said.bstrDescription = ::SysAllocString(L"Odmowa: żółć");
  return DISP_E_EXCEPTION;
}

}  // namespace

OutlookStandIn::OutlookStandIn()
    : key_(L"SOFTWARE\\Classes\\Outlook.Application\\CLSID", L"", kClassText) {
  EXPECT_HRESULT_SUCCEEDED(::OleInitialize(nullptr));
  EXPECT_HRESULT_SUCCEEDED(
      ::CoRegisterClassObject(kClass, &factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_));
}

OutlookStandIn::~OutlookStandIn() {
  ::CoRevokeClassObject(cookie_);
  ::OleUninitialize();
}

STDMETHODIMP OutlookStandIn::Factory::QueryInterface(REFIID type, void** object) {
  const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IClassFactory);
  *object = isKnown ? this : nullptr;
  return isKnown ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP OutlookStandIn::Object::QueryInterface(REFIID type, void** object) {
  const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IDispatch);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP OutlookStandIn::Object::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP OutlookStandIn::Object::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
  for (std::size_t i = 0; i < members_.size(); ++i) {
    ids[0] = static_cast<DISPID>(i);
    if (::lstrcmpiW(names[0], members_[i].c_str()) == 0) return S_OK;
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP OutlookStandIn::Object::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                            VARIANT* result, EXCEPINFO* said, UINT*) {
  const std::string member = Narrow(members_.at(static_cast<std::size_t>(id)));
  if (member == told_.refused) return Refuse(*said);
  if ((kind & DISPATCH_PROPERTYPUT) != 0) {
    const bool isPut = parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    told_.done.push_back(member + (isPut ? "=" : "?") + TextOfValue(parameters->rgvarg[0]));
    return S_OK;
  }
  std::string arguments;
  for (UINT i = parameters->cArgs; i-- > 0;) arguments += TextOfValue(parameters->rgvarg[i]);
  told_.done.push_back(member + "(" + arguments + ")");
  Object* given = member == "CreateItem" ? &told_.item_ : member == "Attachments" ? &told_.attachments_ : nullptr;
  if (given == nullptr) return S_OK;
  given->AddRef();
  result->vt = VT_DISPATCH;
  result->pdispVal = given;
  return S_OK;
}

}  // namespace zimbrat::tests

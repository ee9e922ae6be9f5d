// The least caller of automation: members by their names, arguments of a few kinds. Apart from the product's.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {

using Reference = platform::ComReference<IDispatch>;

// A value of automation that can be copied.
class Any {
 public:
  Any() = default;
  Any(const wchar_t* text) : Any(std::u16string_view(platform::ViewWide(text))) {}
  Any(std::u16string_view text) {
    value_.vt = VT_BSTR;
    value_.bstrVal = ::SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()));
  }
  Any(const std::u16string& text) : Any(std::u16string_view(text)) {}
  Any(int number) {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  Any(bool flag) {
    value_.vt = VT_BOOL;
    value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Any(const Reference& object) {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object.Get();
    object.Get()->AddRef();
  }
  Any(const char16_t* text) : Any(std::u16string_view(text)) {}
  Any(const Any& other) { ::VariantCopy(&value_, &other.value_); }
  Any& operator=(const Any& other) {
    ::VariantCopy(&value_, &other.value_);
    return *this;
  }
  ~Any() { ::VariantClear(&value_); }
  static Any Missing() {
    Any missing;
    missing.value_.vt = VT_ERROR;
    missing.value_.scode = DISP_E_PARAMNOTFOUND;
    return missing;
  }
  VARIANT* Get() const { return &value_; }
  const VARIANT& operator*() const { return value_; }

 private:
  mutable VARIANT value_ = {};  // the calls that read it want it so
};

// What came back of a call. An error in words: "3031 DAO.Workspace" or the HRESULT in hexadecimal digits.
struct Answer {
  Any value;
  std::string error;

  Reference Object() const {
    EXPECT_EQ((*value).vt, VT_DISPATCH) << error;
    if ((*value).vt != VT_DISPATCH) return Reference();
    (*value).pdispVal->AddRef();
    return Reference((*value).pdispVal);
  }
  std::string Text() const {
    if ((*value).vt != VT_BSTR) return error.empty() ? "<type " + std::to_string((*value).vt) + ">" : error;
    return platform::Utf8FromUtf16(platform::ViewWide({(*value).bstrVal, ::SysStringLen((*value).bstrVal)}));
  }
  int Number() const {
    EXPECT_TRUE((*value).vt == VT_I4 || (*value).vt == VT_I2) << error;
    return (*value).vt == VT_I2 ? (*value).iVal : (*value).lVal;
  }
};

DISPID IdOf(const Reference& object, const wchar_t* name);
Answer Ask(const Reference& object, DISPID id, WORD kind, std::vector<Any> arguments);
// A method; a property or what is read with arguments; a put, which answers with its error.
Answer Do(const Reference& object, const wchar_t* name, std::vector<Any> arguments = {});
Answer Get(const Reference& object, const wchar_t* name, std::vector<Any> arguments = {});
std::string Put(const Reference& object, const wchar_t* name, const Any& value);
// A member of a collection of the object.
Reference Part(const Reference& object, const wchar_t* collection, const Any& which);

}  // namespace zimbrat::tests

#include "values.h"

#include <algorithm>
#include <cstring>

#include "platform/error_numbers.h"
#include "platform/win32/wide_text.h"
#include "server_state.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

constexpr std::u16string_view kGuidStart = u"{guid ";

struct Putter {
  VARIANT& to;

  void operator()(dao::Null) { to.vt = VT_NULL; }
  void operator()(bool value) {
    to.vt = VT_BOOL;
    to.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(std::uint8_t value) {
    to.vt = VT_UI1;
    to.bVal = value;
  }
  void operator()(std::int16_t value) {
    to.vt = VT_I2;
    to.iVal = value;
  }
  void operator()(std::int32_t value) {
    to.vt = VT_I4;
    to.lVal = value;
  }
  void operator()(dao::Currency value) {
    to.vt = VT_CY;
    to.cyVal.int64 = value.scaled;
  }
  void operator()(float value) {
    to.vt = VT_R4;
    to.fltVal = value;
  }
  void operator()(double value) {
    to.vt = VT_R8;
    to.dblVal = value;
  }
  void operator()(dao::Date value) {
    to.vt = VT_DATE;
    to.date = value.days;
  }
  void operator()(const std::u16string& value) {
    to.vt = VT_BSTR;
    to.bstrVal = MakeBstr(value);
  }
  void operator()(const dao::Guid& value) { (*this)(GuidText(value)); }
  void operator()(const dao::Binary& value) {
    to.parray = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(value.size()));
    if (to.parray == nullptr) throw Refusal{E_OUTOFMEMORY};
    to.vt = VT_ARRAY | VT_UI1;
    std::memcpy(to.parray->pvData, value.data(), value.size());
  }
  void operator()(const dao::Decimal& value) {
    if (value.magnitude[0] != 0) Fail(kErrOverflow, u"DAO.Field");
    to.decVal.Hi32 = value.magnitude[1];
    to.decVal.Mid32 = value.magnitude[2];
    to.decVal.Lo32 = value.magnitude[3];
    to.decVal.scale = value.scale;
    to.decVal.sign = value.negative ? DECIMAL_NEG : 0;
    to.vt = VT_DECIMAL;
  }
};

dao::Binary BytesOf(SAFEARRAY& array) {
  if (array.cDims != 1) throw Refusal{DISP_E_TYPEMISMATCH};
  const auto* bytes = static_cast<const std::byte*>(array.pvData);
  return {bytes, bytes + array.rgsabound[0].cElements};
}

}  // namespace

BSTR MakeBstr(std::u16string_view text) {
  const BSTR made = ::SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()));
  if (made == nullptr) throw Refusal{E_OUTOFMEMORY};
  return made;
}

void PutValue(const dao::Value& value, VARIANT& variant) { std::visit(Putter{variant}, value); }

dao::Value ValueOf(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_NULL: return dao::Null{};
    case VT_BOOL:
      // 1 is a mistake that many servers let pass.
      if (variant.boolVal != VARIANT_TRUE && variant.boolVal != VARIANT_FALSE) throw Refusal{E_INVALIDARG};
      return variant.boolVal == VARIANT_TRUE;
    case VT_UI1: return std::uint8_t{variant.bVal};
    case VT_I2: return std::int16_t{variant.iVal};
    case VT_I4: return std::int32_t{variant.lVal};
    case VT_CY: return dao::Currency{variant.cyVal.int64};
    case VT_R4: return variant.fltVal;
    case VT_R8: return variant.dblVal;
    case VT_DATE: return dao::Date{variant.date};
    case VT_BSTR: return FromWide({variant.bstrVal, ::SysStringLen(variant.bstrVal)});
    case VT_ARRAY | VT_UI1: return BytesOf(*variant.parray);
    case VT_DECIMAL:
      return dao::Decimal{variant.decVal.sign != 0,
                          {0, variant.decVal.Hi32, variant.decVal.Mid32, variant.decVal.Lo32},
                          variant.decVal.scale};
    default: throw Refusal{DISP_E_TYPEMISMATCH};
  }
}

std::u16string GuidText(const dao::Guid& guid) {
  GUID bytes;
  std::memcpy(&bytes, guid.bytes.data(), sizeof bytes);
  std::array<wchar_t, 64> text;
  const int size = ::StringFromGUID2(bytes, text.data(), static_cast<int>(text.size()));
  return std::u16string(kGuidStart) + FromWide({text.data(), static_cast<std::size_t>(size - 1)}) + u"}";
}

dao::Guid GuidOf(const std::u16string& text) {
  GUID bytes;
  const bool isWrapped = text.starts_with(kGuidStart) && text.ends_with(u'}');
  const std::u16string inner =
      isWrapped ? text.substr(kGuidStart.size(), text.size() - kGuidStart.size() - 1) : text;
  if (FAILED(::IIDFromString(Lend(inner), &bytes))) Fail(kErrDataConversion, u"DAO.Field");
  dao::Guid guid;
  std::memcpy(guid.bytes.data(), &bytes, sizeof bytes);
  return guid;
}

}  // namespace zimbrat::tests

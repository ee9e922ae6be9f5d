#include "dao_values.h"

#include <array>
#include <cstring>
#include <string>

#include "wide_text.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {
namespace {

constexpr std::u16string_view kGuidStart = u"{guid ";
constexpr std::u16string_view kGuidEnd = u"}";
constexpr std::uint8_t kMaxScale = 28;

std::u16string GuidText(const dao::Guid& value) {
  GUID guid;
  std::memcpy(&guid, value.bytes.data(), sizeof guid);
  std::array<wchar_t, 40> text;
  const int units =
      ::StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));  // with the NUL
  std::u16string whole(kGuidStart);
  whole.append(ViewWide({text.data(), static_cast<std::size_t>(units - 1)})).append(kGuidEnd);
  return whole;
}

std::optional<dao::Guid> GuidInText(std::u16string_view text) {
  if (!text.starts_with(kGuidStart) || !text.ends_with(kGuidEnd)) return std::nullopt;
  text.remove_prefix(kGuidStart.size());
  text.remove_suffix(kGuidEnd.size());
  GUID guid;
  if (FAILED(::IIDFromString(Lend(std::u16string(text)), &guid))) return std::nullopt;
  dao::Guid value;
  std::memcpy(value.bytes.data(), &guid, sizeof guid);
  return value;
}

Variant OfType(VARTYPE type) {
  Variant value;
  value.Get()->vt = type;
  return value;
}

Variant BytesVariant(const dao::Binary& bytes) {
  Variant value;
  SAFEARRAY* const array = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) throw OwnError(kErrOutOfMemory);
  value.Get()->vt = VT_ARRAY | VT_UI1;
  value.Get()->parray = array;
  if (!bytes.empty()) std::memcpy(array->pvData, bytes.data(), bytes.size());
  return value;
}

Variant DecimalVariant(const dao::Decimal& decimal) {
  if (decimal.magnitude[0] != 0 || decimal.scale > kMaxScale) throw OwnError(kErrOverflow);
  // The type shares its place with the first field of the decimal.
  Variant value;
  DECIMAL& to = value.Get()->decVal;
  to.Hi32 = decimal.magnitude[1];
  to.Mid32 = decimal.magnitude[2];
  to.Lo32 = decimal.magnitude[3];
  to.scale = decimal.scale;
  to.sign = decimal.negative ? DECIMAL_NEG : 0;
  value.Get()->vt = VT_DECIMAL;
  return value;
}

struct VariantMaker {
  Variant operator()(dao::Null) const { return OfType(VT_NULL); }
  Variant operator()(bool value) const { return FlagVariant(value); }
  Variant operator()(std::uint8_t value) const {
    Variant made = OfType(VT_UI1);
    made.Get()->bVal = value;
    return made;
  }
  Variant operator()(std::int16_t value) const {
    Variant made = OfType(VT_I2);
    made.Get()->iVal = value;
    return made;
  }
  Variant operator()(std::int32_t value) const { return NumberVariant(value); }
  Variant operator()(dao::Currency value) const {
    Variant made = OfType(VT_CY);
    made.Get()->cyVal.int64 = value.scaled;
    return made;
  }
  Variant operator()(float value) const {
    Variant made = OfType(VT_R4);
    made.Get()->fltVal = value;
    return made;
  }
  Variant operator()(double value) const {
    Variant made = OfType(VT_R8);
    made.Get()->dblVal = value;
    return made;
  }
  Variant operator()(dao::Date value) const {
    Variant made = OfType(VT_DATE);
    made.Get()->date = value.days;
    return made;
  }
  Variant operator()(const std::u16string& value) const { return TextVariant(value); }
  Variant operator()(const dao::Binary& value) const { return BytesVariant(value); }
  Variant operator()(const dao::Guid& value) const { return TextVariant(GuidText(value)); }
  Variant operator()(const dao::Decimal& value) const { return DecimalVariant(value); }
};

dao::Binary BytesIn(SAFEARRAY& array) {
  LONG first = 0, last = -1;
  if (::SafeArrayGetDim(&array) != 1 || FAILED(::SafeArrayGetLBound(&array, 1, &first)) ||
      FAILED(::SafeArrayGetUBound(&array, 1, &last))) {
    throw OwnError(kErrTypeMismatch);
  }
  if (last < first) return {};
  void* start = nullptr;
  if (FAILED(::SafeArrayAccessData(&array, &start))) throw OwnError(kErrTypeMismatch);
  const auto* bytes = static_cast<const std::byte*>(start);
  dao::Binary copy(bytes, bytes + (last - first + 1));
  ::SafeArrayUnaccessData(&array);
  return copy;
}

}  // namespace

Variant VariantOf(const dao::Value& value) {
  return std::visit(VariantMaker{}, value);
}

dao::Value ValueIn(const Variant& value) {
  const VARIANT& in = *value.Get();
  switch (in.vt) {
    case VT_NULL:
    case VT_EMPTY:
      return dao::Null{};
    case VT_BOOL:
      return in.boolVal != VARIANT_FALSE;
    case VT_UI1:
      return std::uint8_t{in.bVal};
    case VT_I2:
      return std::int16_t{in.iVal};
    case VT_I4:
      return std::int32_t{in.lVal};
    case VT_CY:
      return dao::Currency{in.cyVal.int64};
    case VT_R4:
      return in.fltVal;
    case VT_R8:
      return in.dblVal;
    case VT_DATE:
      return dao::Date{in.date};
    case VT_BSTR:
      return TextIn(value);
    case VT_ARRAY | VT_UI1:
      return BytesIn(*in.parray);
    case VT_DECIMAL:
      return dao::Decimal{in.decVal.sign != 0,
                          {0, in.decVal.Hi32, in.decVal.Mid32, in.decVal.Lo32},
                          in.decVal.scale};
    default:
      throw OwnError(kErrTypeMismatch);
  }
}

std::optional<dao::Guid> FindGuid(const dao::Value& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return GuidInText(*text);
  const auto* bytes = std::get_if<dao::Binary>(&value);
  dao::Guid guid;
  if (bytes == nullptr || bytes->size() != guid.bytes.size()) return std::nullopt;
  std::memcpy(guid.bytes.data(), bytes->data(), bytes->size());
  return guid;
}

}  // namespace zimbrat::platform

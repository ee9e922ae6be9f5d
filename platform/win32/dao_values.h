// Values of fields, as DAO shows them in a VARIANT:
//
//   Null VT_NULL   Boolean VT_BOOL   Byte VT_UI1   Integer VT_I2   Long VT_I4   Currency VT_CY
//   Single VT_R4 Double VT_R8   Date VT_DATE   text VT_BSTR   bytes VT_ARRAY|VT_UI1   Decimal
//   VT_DECIMAL GUID "{guid {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}}", a text
#pragma once

#include <optional>
#include <string_view>

#include "dispatch.h"

#include "platform/dao.h"

namespace zimbrat::platform {

// Error 6 for a decimal of more than 96 bits, 7 without memory.
Variant VariantOf(const dao::Value& value);

// A GUID comes as the text or the bytes that it is. Error 13 for what no field holds.
dao::Value ValueIn(const Variant& value);

// Whether it may stand for a GUID, and the GUID; nothing when it does not.
std::optional<dao::Guid> FindGuid(const dao::Value& value);

}  // namespace zimbrat::platform

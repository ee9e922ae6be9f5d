// Values of fields as DAO shows them in a VARIANT. Written apart from the product's conversions.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

#include "platform/dao.h"

namespace zimbrat::tests {

// What a call is refused with, without an error of the object behind it.
struct Refusal {
  HRESULT code;
};

BSTR MakeBstr(std::u16string_view text);
// What `variant` held is not released. Error 6 for a decimal beyond 96 bits.
void PutValue(const dao::Value& value, VARIANT& variant);
// A refusal for kinds that no field holds.
dao::Value ValueOf(const VARIANT& variant);

// A GUID is a text here: "{guid {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}}". A text of another form is error 3421.
std::u16string GuidText(const dao::Guid& guid);
dao::Guid GuidOf(const std::u16string& text);

}  // namespace zimbrat::tests

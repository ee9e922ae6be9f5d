// Members of automation objects, called late bound: by the numbers that belong to their names.
//
// Numbers, dates and texts become one another as in English, whatever the user's settings.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "handles.h"

namespace zimbrat::platform {

// Values for calls. Error 7 without memory.
Variant TextVariant(std::u16string_view text);
Variant NumberVariant(std::int32_t number);
Variant FlagVariant(bool flag);
Variant ObjectVariant(IDispatch& object);  // with a reference of its own
Variant MissingVariant();                  // an argument left out before another

// Values that came back; error 13 for one that does not convert. Null and nothing are "", 0, false.
std::u16string TextIn(const Variant& value);
std::int32_t NumberIn(const Variant& value);
bool FlagIn(const Variant& value);
// None when the value is no object.
ComReference<IDispatch> ObjectIn(const Variant& value);

// Of a call that failed. Texts are empty where the object told none, the number 0 where it told
// none.
struct AutomationError {
  HRESULT code = S_OK;
  std::int32_t number = 0;
  std::u16string source;
  std::u16string description;
};

// The number of Visual Basic for a code of COM; the code itself for one that has none.
std::int32_t NumberOfCode(HRESULT code);

enum class Access { Call, Put };

// Nothing when they succeed. A call is that of a method, or asks for a property; `arguments` stand
// in their order; a put has one and no result.
std::optional<AutomationError> FindMember(IDispatch& object, std::u16string_view name, DISPID& id);
std::optional<AutomationError> CallMember(IDispatch& object, DISPID id, Access access,
                                          std::span<const Variant> arguments, Variant& result);

// Throws it as a RunTimeError, texts that are missing filled in from the system.
[[noreturn]] void Raise(const AutomationError& error);

}  // namespace zimbrat::platform

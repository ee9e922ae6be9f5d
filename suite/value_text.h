// Values of fields and of the registry as texts and numbers, as Visual Basic converts a variant.
#pragma once

#include "platform/dao.h"

#include <cstdint>
#include <string>

namespace zimbrat::suite {

// Numbers and Booleans (True is -1) as they are, texts by the rules of CDbl. Null is error 94, what
// is no number error 13.
double DoubleFromValue(const dao::Value& value);
// The same, rounded half to even into 16 bits (error 6).
std::int16_t IntegerFromValue(const dao::Value& value);
// Decimal text of numbers, texts as they are; Null is empty.
std::u16string TextFromValue(const dao::Value& value);

}  // namespace zimbrat::suite

// Values brought to the type of a column, as a put into a field does.
#pragma once

#include <optional>
#include <string>

#include "jet/table/definition.h"
#include "platform/dao.h"
#include "platform/exact_number.h"

namespace zimbrat::jet {

// Error 3421 when the value does not convert or is out of range, 3163 when a text or binary is too long.
dao::Value ConvertToColumn(const Column& column, const dao::Value& value);

// Any number, Boolean (-1, 0), date or numeric text as a Double (a text may be infinite); nothing for Null and the
// rest.
std::optional<double> FindDouble(const dao::Value& value);
// The same without the way over a Double; of a Double its 15 figures.
std::optional<platform::ExactNumber> FindExact(const dao::Value& value);
// Rounded half to even to ten-thousandths; nothing outside the range of amounts.
std::optional<dao::Currency> FindCurrency(const dao::Value& value);
// The text of a date, or a number as days; the range of dates is not looked at.
std::optional<double> FindDateValue(const dao::Value& value);
// As the & operator shows it; Null is empty.
std::u16string TextOfValue(const dao::Value& value);

}  // namespace zimbrat::jet

// Rows as comma-separated values after RFC 4180: a header line, CR LF, quotes where a value needs them.
#pragma once

#include <string>

#include "platform/dao.h"

namespace zimbrat::tools {

// Null is nothing between the commas, an empty text is "". Numbers have a decimal point, floating ones
// as many digits as tell them from others, dates are
// yyyy-mm-dd hh:nn:ss, Booleans True and False, bytes hexadecimal, GUIDs in braces.
std::u16string CsvValue(const dao::Value& value);
std::u16string CsvHeader(dao::Recordset& rows);
// Of the current record.
std::u16string CsvRow(dao::Recordset& rows);

}  // namespace zimbrat::tools

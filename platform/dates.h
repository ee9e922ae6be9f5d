// Dates as OLE automation keeps them: days since 1899-12-30 in a Double, the fraction the time of
// day (for days before that the fraction still counts forwards in magnitude).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::platform {

struct DateParts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
};

// Months and days outside their range carry over, as Visual Basic's DateSerial.
double DateSerial(int year, int month, int day);
double TimeSerial(int hour, int minute, int second);
// Day and time put together; for days before 1899-12-30 the time is subtracted.
double DateFromParts(const DateParts& parts);
// Rounded to the second.
DateParts PartsOfDate(double date);

// Years 100 to 9999.
bool IsDateInRange(double date);

// "yyyy-mm-dd" with the time behind it when there is one: how this engine shows dates as text.
std::u16string TextFromDate(double date);
// A date, a time or both: yyyy-mm-dd, dd.mm.yyyy, d/m/yyyy, hh:nn[:ss]; nothing when it is none.
std::optional<double> FindDate(std::u16string_view text);

}  // namespace zimbrat::platform

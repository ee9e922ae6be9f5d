// What stands between the number signs of a date in Jet SQL.
#pragma once

#include <optional>
#include <string_view>

namespace zimbrat::jet {

// "m/d/yyyy" whatever the system (d/m/yyyy when only that is a date), "yyyy-m-d", "hh:nn[:ss] [AM|PM]", or
// a date and a time; nothing when it is none of these.
std::optional<double> FindDateLiteral(std::u16string_view text);

}  // namespace zimbrat::jet

// Decimals as exact numbers: 28 figures at most, as many of them behind the point as the scale says.
#pragma once

#include <optional>

#include "platform/dao.h"
#include "platform/exact_number.h"

namespace zimbrat::jet {

inline constexpr int kMaxDecimalFigures = 28;

platform::ExactNumber ExactFromDecimal(const dao::Decimal& decimal);
// Rounded half to even; nothing when there are more than `precision` figures.
std::optional<dao::Decimal> FindDecimal(const platform::ExactNumber& number, int scale,
                                        int precision = kMaxDecimalFigures);
// With as many places as the number needs and has room for.
std::optional<dao::Decimal> FindDecimal(const platform::ExactNumber& number);

}  // namespace zimbrat::jet

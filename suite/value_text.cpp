#include "suite/value_text.h"

#include "platform/error_numbers.h"
#include "platform/numbers.h"
#include "platform/run_time_error.h"

#include <type_traits>

namespace zimbrat::suite {

double DoubleFromValue(const dao::Value& value) {
  return std::visit(
      [](const auto& v) -> double {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, bool>) {
          return v ? -1 : 0;
        } else if constexpr (std::is_arithmetic_v<T>) {
          return static_cast<double>(v);
        } else if constexpr (std::is_same_v<T, dao::Currency>) {
          return static_cast<double>(v.scaled) / 10000;
        } else if constexpr (std::is_same_v<T, dao::Date>) {
          return v.days;
        } else if constexpr (std::is_same_v<T, std::u16string>) {
          return platform::DoubleFromText(v);
        } else {
          throw platform::OwnError(std::is_same_v<T, dao::Null> ? platform::kErrInvalidNull
                                                                : platform::kErrTypeMismatch);
        }
      },
      value);
}

std::int16_t IntegerFromValue(const dao::Value& value) {
  return platform::IntegerFromDouble(DoubleFromValue(value));
}

std::u16string TextFromValue(const dao::Value& value) {
  if (dao::IsNull(value)) return {};
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  return platform::TextFromDouble(DoubleFromValue(value));
}

}  // namespace zimbrat::suite

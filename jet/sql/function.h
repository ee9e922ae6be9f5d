// How a function of expressions is declared, and how it gets at its arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/sql/functions.h"
#include "platform/dao.h"

namespace zimbrat::jet {

// The arguments of one call, evaluated. Unless said otherwise a getter raises 94 for Null and 3464 for what
// does not convert.
class Arguments {
 public:
  Arguments(std::vector<dao::Value> values, double now) : values_(std::move(values)), now_(now) {}

  std::size_t Size() const { return values_.size(); }
  double Now() const { return now_; }
  const dao::Value& operator[](std::size_t i) const { return values_[i]; }
  bool IsNull(std::size_t i) const { return dao::IsNull(values_[i]); }

  double Number(std::size_t i) const;
  // Half to even; error 6 outside of a Long.
  std::int32_t Long(std::size_t i) const;
  std::int32_t LongOr(std::size_t i, std::int32_t absent) const { return i < Size() ? Long(i) : absent; }
  // A Long that must not be below `least`, else error 5.
  std::size_t Count(std::size_t i, std::int32_t least) const;
  bool Boolean(std::size_t i) const { return Number(i) != 0; }
  std::u16string Text(std::size_t i) const;
  // A date, the text of one or a number of days; error 6 outside the years 100 to 9999.
  double Date(std::size_t i) const;

 private:
  std::vector<dao::Value> values_;
  double now_;
};

struct Function {
  std::u16string_view name;  // in capitals, without "$"
  std::size_t least, most;   // arguments
  unsigned nulls;            // bit i: the result is Null when argument i is
  FunctionResult result;
  dao::Value (*call)(const Arguments&);
};

inline constexpr FunctionResult kAsFirst = {};

// By subject.
std::span<const Function> TextFunctions();
std::span<const Function> DateFunctions();
std::span<const Function> NumberFunctions();
std::span<const Function> ConversionFunctions();

}  // namespace zimbrat::jet

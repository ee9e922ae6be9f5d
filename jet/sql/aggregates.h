// The functions that make one value of many rows.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/dao.h"

namespace zimbrat::jet {

enum class AggregateKind { Count, Sum, Avg, Min, Max, First, Last, StDev, StDevP, Var, VarP };

std::optional<AggregateKind> FindAggregate(std::u16string_view name);

// Null values do not count, except for First and Last.
class Accumulator {
 public:
  explicit Accumulator(AggregateKind kind) : kind_(kind) {}

  // Error 3464 for a text where a number is needed, 6 when a sum leaves its range.
  void Add(const dao::Value& value);
  // Null where there was nothing to make a value of; Count is 0 then.
  dao::Value Result() const;

 private:
  void AddNumber(const dao::Value& value);
  dao::Value Total() const;

  AggregateKind kind_;
  std::int64_t count_ = 0;
  double sum_ = 0;
  std::int64_t amount_ = 0;      // the sum, as long as all values are amounts
  bool areAmounts_ = true;
  double mean_ = 0;              // of the values so far
  double squares_ = 0;           // of their distances from it
  dao::Value value_;             // least, greatest, first or last
};

}  // namespace zimbrat::jet

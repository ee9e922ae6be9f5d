// What contradicts itself within a table's definition.
#pragma once

#include <string>
#include <utility>

#include "checking.h"
#include "jet/check/table_layout.h"

namespace zimbrat::jet::check {

// Where the faults of the definition at `page` go: nowhere unless `isTold`.
class LayoutFaults {
 public:
  LayoutFaults(Checking& check, const std::u16string& place, PageNumber page, bool isTold)
      : check_(check), place_(place), page_(page), isTold_(isTold) {}

  void Error(std::u16string text) {
    if (isTold_) check_.PageError(place_, page_, std::move(text));
  }
  void Loss(std::u16string text) {
    if (isTold_) check_.PageLoss(place_, page_, std::move(text));
  }

 private:
  Checking& check_;
  std::u16string place_;
  PageNumber page_;
  bool isTold_;
};

void CheckLayout(const TableLayout& table, LayoutFaults& faults);

}  // namespace zimbrat::jet::check

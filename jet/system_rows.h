// Copying the rows of a system table, each of which may be changed or left out.
#pragma once

#include <functional>
#include <string_view>

#include "jet/repair.h"
#include "jet/check/rescue.h"
#include "jet/table/table.h"

namespace zimbrat::jet {

enum class RowFate {
  Stored,
  NotNeeded,  // nothing is lost without it
  Lost,
};
using SystemRowVisit = std::function<RowFate(const check::TableLayout&, const check::RescuedRow&)>;

// Reads the rows of the former table of the same page as `table`.
RepairedTable CopySystemRows(check::Rescue& source, const Table& table,
                             const SystemRowVisit& visit);

// With its indexes, unless a unique one has its key already.
RowFate StoreSystemRow(Table& table, const RowFields& fields);

void PutValue(Table& table, RowFields& fields, std::u16string_view column, const dao::Value& value);

}  // namespace zimbrat::jet

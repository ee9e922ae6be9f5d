// Pages that name one table while only another table's map lists them: either the page's head is damaged, or pages
// have changed places.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "checking.h"
#include "jet/check/table_layout.h"

namespace zimbrat::jet::check {

using NamedPage = std::pair<PageNumber, PageNumber>;  // table and page

using LayoutSource = std::function<std::optional<TableLayout>(PageNumber)>;

// Gives such pages to the table whose rows they seem to hold, and copies of other pages to nobody. `definitions`: the
// first pages of all definitions, ascending. `named` is sorted, and stays so.
void SettleClaims(Checking& check, const std::vector<PageNumber>& definitions, const LayoutSource& layoutOf,
                  std::vector<NamedPage>& named);

}  // namespace zimbrat::jet::check

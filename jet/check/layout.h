// A table's definition as the check reads it.
#pragma once

#include <optional>
#include <string>

#include "checking.h"
#include "jet/check/table_layout.h"

namespace zimbrat::jet::check {

// Reads the definition that begins at `page` and claims its pages; reports what is wrong with it.
// Nothing when it is too damaged to go by.
std::optional<TableLayout> ReadLayout(Checking& check, const std::u16string& place,
                                      PageNumber page);

// The same for a second look: claims and reports nothing.
std::optional<TableLayout> PeekLayout(Checking& check, PageNumber page);

// The columns alone, of a definition whose end is damaged: as many as there are, some without a name.
std::optional<TableLayout> PeekColumns(Checking& check, PageNumber page);

// Of the bytes of a definition, wherever they are from. Nothing when they contradict themselves.
std::optional<TableLayout> ParseLayout(Checking& check, ConstBytes bytes, PageNumber page);

}  // namespace zimbrat::jet::check

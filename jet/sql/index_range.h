// The part of an index that conditions on a table lead to.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "jet/sql/row_source.h"
#include "jet/table/table.h"

namespace zimbrat::jet {

// Which column of the table an expression is, if it is one.
using OwnColumn = std::function<std::optional<std::size_t>(const Expression&)>;
// Whether an expression can be evaluated before a row of the table is known.
using IsKnown = std::function<bool(const Expression&)>;

class IndexRange {
 public:
  // The index that narrows the search best; nothing when none does.
  static std::optional<IndexRange> Choose(Table& table, const Conditions& conditions, const OwnColumn& column,
                                          const IsKnown& isKnown);

  // At the first entry, with the values of the moment. False when the values cannot be looked up as keys: the
  // table must be read from end to end then. Conditions are to be asked of every row all the same.
  bool Start(Table& table, const EvaluationContext& context);
  // The next row; nothing behind the last.
  std::optional<RowPointer> Next();

 private:
  struct Bound {
    std::size_t column = 0;  // position in the table
    const Expression* equal = nullptr;
    const Expression* low = nullptr;
    const Expression* high = nullptr;
    bool mayBeExchanged = false;  // the ends of BETWEEN
  };
  static Bound FindBound(std::size_t column, const Conditions& conditions, const OwnColumn& own,
                         const IsKnown& isKnown);
  enum class Appended { Yes, NeverEqual, Unusable };
  Appended Append(Table& table, const Bound& bound, const Expression& value, const EvaluationContext& context,
                  std::vector<std::byte>& key) const;

  std::size_t realIndex_ = 0;
  std::vector<bool> ascending_;
  std::vector<Bound> bounds_;  // of the leading columns; only the last one may be a range
  std::vector<std::byte> high_;
  std::optional<IndexTree::Cursor> cursor_;
};

}  // namespace zimbrat::jet

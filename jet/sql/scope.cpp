#include "jet/sql/scope.h"

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "platform/text.h"

namespace zimbrat::jet {

std::optional<FoundName> Scope::Find(std::u16string_view qualifier, std::u16string_view name) {
  if (std::optional<FoundName> own = FindOwn(qualifier, name)) return own;
  std::optional<FoundName> found;
  if (outer_) found = outer_->Find(qualifier, name);
  if (!found) return found;
  followsOuter_ = true;
  ++found->level;
  return found;
}

std::size_t TableScope::Add(ScopeTable table) {
  for (const ScopeTable& other : tables_) {
    if (EqualText(other.name, table.name)) Raise(platform::kErrRepeatedTableName, table.name);
  }
  table.first = columns_;
  columns_ += table.columns.size();
  tables_.push_back(std::move(table));
  Unrestrict();
  return tables_.size() - 1;
}

std::size_t TableScope::TableOf(std::size_t column) const {
  std::size_t table = 0;
  while (table + 1 < tables_.size() && tables_[table + 1].first <= column) ++table;
  return table;
}

const ScopeColumn& TableScope::Column(std::size_t column) const {
  const ScopeTable& table = tables_[TableOf(column)];
  return table.columns[column - table.first];
}

std::optional<FoundName> TableScope::FindOwn(std::u16string_view qualifier, std::u16string_view name) {
  std::optional<FoundName> found;
  for (std::size_t t = firstTable_; t < lastTable_; ++t) {
    const ScopeTable& table = tables_[t];
    if (!qualifier.empty() && !EqualText(table.name, qualifier)) continue;
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      if (!platform::EqualIgnoringCase(table.columns[c].name, name)) continue;
      if (found) Raise(platform::kErrAmbiguousName, name);
      found = FoundName{0, table.first + c, table.columns[c]};
    }
  }
  return found;
}

}  // namespace zimbrat::jet

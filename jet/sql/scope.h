// What the names in a query can mean: the columns of its tables, and those of the queries around it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::jet {

struct ScopeColumn {
  std::u16string name;
  std::int16_t type = 0;  // DAO's number; 0 where it is not known
  std::int32_t size = 0;  // characters of text, bytes otherwise
  bool isCounter = false;
  std::uint16_t order = 0;  // among those of its table, as `*` shows them
};

struct ScopeTable {
  std::u16string name;  // the alias, where there is one
  std::vector<ScopeColumn> columns;
  std::size_t first = 0;  // number of its first column among all of the query
};

struct FoundName {
  std::size_t level = 0;  // queries outwards
  std::size_t column = 0;
  ScopeColumn description;
};

class Scope {
 public:
  explicit Scope(Scope* outer) : outer_(outer) {}
  virtual ~Scope() = default;

  // Error 3079 for a name that several tables have.
  std::optional<FoundName> Find(std::u16string_view qualifier, std::u16string_view name);
  // Whether a name was found in a query around this one.
  bool FollowsOuter() const { return followsOuter_; }

 protected:
  virtual std::optional<FoundName> FindOwn(std::u16string_view qualifier, std::u16string_view name) = 0;

 private:
  Scope* outer_;
  bool followsOuter_ = false;
};

class TableScope : public Scope {
 public:
  using Scope::Scope;

  // Error 3074 when the name is there already. Returns the table's number.
  std::size_t Add(ScopeTable table);
  const std::vector<ScopeTable>& Tables() const { return tables_; }
  std::size_t ColumnCount() const { return columns_; }
  std::size_t TableOf(std::size_t column) const;
  const ScopeColumn& Column(std::size_t column) const;
  // Only these tables can be meant, while a join of them is bound.
  void Restrict(std::size_t first, std::size_t last) {
    firstTable_ = first;
    lastTable_ = last;
  }
  void Unrestrict() { Restrict(0, tables_.size()); }

  std::optional<FoundName> FindOwn(std::u16string_view qualifier, std::u16string_view name) override;

 private:
  std::vector<ScopeTable> tables_;
  std::size_t columns_ = 0;
  std::size_t firstTable_ = 0;
  std::size_t lastTable_ = 0;
};

}  // namespace zimbrat::jet

// A database as plain containers: what a random test expects of the real one.
#pragma once

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::tests {

struct ModelColumn {
  std::u16string name;
  int type = 0;
  int size = 0;
};

struct ModelIndex {
  std::u16string name;
  std::vector<std::u16string> columns;
  bool unique = false;  // over one number then
};

// The first column is the counter Id, which no operation touches.
struct ModelTable {
  std::vector<ModelColumn> columns;
  std::vector<ModelIndex> indexes;
  std::map<std::int32_t, std::map<std::u16string, dao::Value>> rows;  // by Id; without it
  std::int32_t counter = 0;

  bool HasColumn(std::u16string_view name) const;
  bool IsIndexed(std::u16string_view column) const;
  // Whether two rows have one number there; Nulls do not count.
  bool Repeats(std::u16string_view column) const;
  // Whether a unique index forbids the rows as they are.
  bool BreaksAnIndex() const;
};
using ModelTables = std::map<std::u16string, ModelTable>;

// Values, names and choices from one seed.
class Chance {
 public:
  explicit Chance(std::uint32_t seed) : random_(seed) {}
  std::uint32_t Below(std::size_t most) { return static_cast<std::uint32_t>(random_()) % static_cast<std::uint32_t>(most); }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  std::u16string Name(std::u16string_view kind);
  std::u16string Text(std::size_t most);
  ModelColumn Column();
  // Null now and then; never for Booleans.
  dao::Value ValueFor(const ModelColumn& column);

 private:
  std::mt19937 random_;
};

}  // namespace zimbrat::tests

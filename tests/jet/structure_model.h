// A database as plain containers, and the rules that it keeps: what a random test expects of the real one.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::tests {

struct ModelColumn {
  std::u16string name;
  int type = 0;
  int size = 0;
  bool isWord = false;  // texts that are equal when they differ in case alone
  bool required = false;
  bool allowsEmpty = true;

  // Whether it is known which of its values have equal keys.
  bool HasKnownKeys() const;
};

struct ModelIndex {
  std::u16string name;
  std::vector<std::pair<std::u16string, bool>> columns = {};  // name, whether descending
  bool unique = false;
  bool required = false;
  bool ignoresNulls = false;

  bool Has(std::u16string_view column) const;
  bool IsOver(std::u16string_view column) const { return columns.size() == 1 && Has(column); }
};

using ModelRow = std::map<std::u16string, dao::Value>;

// The first column is the counter Id, which is the primary key and stands in no row.
struct ModelTable {
  std::vector<ModelColumn> columns;
  std::vector<ModelIndex> indexes;  // those that relations make are not among them
  std::map<std::int32_t, ModelRow> rows;  // by Id
  std::int32_t counter = 0;

  bool HasColumn(std::u16string_view name) const;
  bool IsIndexed(std::u16string_view column) const;
  // The value of a row; of Id too.
  static dao::Value ValueOf(std::int32_t id, const ModelRow& row, const std::u16string& column);
  // The numbers with which the rows may be refused because of the index.
  std::set<std::int32_t> BreachesOf(const ModelIndex& index) const;
  // Whether the row, or a key of the index in it, may be larger than the file allows.
  bool MayBeTooLarge(const ModelRow& row) const;
  static bool MayBeTooLarge(const ModelRow& row, const ModelIndex& index);
};

struct ModelRelation {
  std::u16string name;
  std::u16string table, column;
  std::u16string foreignTable = {}, foreignColumn = {};
  std::int32_t attributes = 0;

  bool IsEnforced() const { return (attributes & dao::dbRelationDontEnforce) == 0; }
  bool Uses(std::u16string_view table, std::u16string_view column) const;
};

struct ModelDatabase {
  std::map<std::u16string, ModelTable> tables;
  std::vector<ModelRelation> relations;

  std::map<std::u16string, ModelTable>::iterator Find(std::u16string_view table);
  bool IsRelated(std::u16string_view table) const;
  // The enforced relation whose referring side the column is.
  const ModelRelation* ParentOf(std::u16string_view table, std::u16string_view column) const;
  // Whether rows of `from` depend on those of `table`, over relations of any number.
  bool DependsOn(std::u16string_view from, std::u16string_view table) const;
};

// A change of rows with all that cascades make of it, and whether the database may refuse it.
class ModelChange {
 public:
  explicit ModelChange(ModelDatabase& database) : database_(database) {}

  // A new row or other values of one.
  void Put(const std::u16string& table, std::int32_t id, const ModelRow& row);
  void Remove(const std::u16string& table, std::int32_t id);
  // Whether this may be the answer to the change; 0 is success.
  bool IsPossible(std::int32_t number);
  // For people: the errors that it must meet, after IsPossible.
  std::string Expected() const;
  void TakeBack();

 private:
  struct Step {
    std::u16string table;
    std::int32_t id = 0;
    std::optional<ModelRow> former;
  };

  std::vector<std::int32_t> ChildrenOf(const ModelRelation& relation, const dao::Value& key) const;
  bool HasGone(const ModelRelation& relation, const dao::Value& key) const;
  void Judge();
  void JudgeRow(const std::u16string& table, std::int32_t id);

  ModelDatabase& database_;
  std::vector<Step> steps_;
  std::set<std::int32_t> errors_;
  std::vector<std::pair<std::u16string, std::int32_t>> left_;  // rows that forbid it, unless they go too
  bool mayBeTooLarge_ = false;
  bool mayBeRelated_ = false;
};

}  // namespace zimbrat::tests

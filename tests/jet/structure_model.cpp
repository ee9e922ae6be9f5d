#include "structure_model.h"

#include <algorithm>
#include <utility>

#include "platform/error_numbers.h"
#include "platform/text.h"

namespace zimbrat::tests {

namespace {

using platform::EqualIgnoringCase;

// Below these nothing is refused, whatever the texts are made of.
constexpr std::size_t kSureRow = 3'900;
constexpr std::size_t kSureKey = 180;
constexpr std::size_t kLongValueInRow = 80;

// What tells keys apart: the kind of value and its bytes, words without their case.
std::string KeyPart(const dao::Value& value) {
  std::string key(1, static_cast<char>('0' + value.index()));
  const auto add = [&key](const auto& part) { key.append(reinterpret_cast<const char*>(&part), sizeof part); };
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    for (const char16_t c : *text) key += static_cast<char>(c >= u'A' && c <= u'Z' ? c - u'A' + u'a' : c);
  }
  if (const auto* number = std::get_if<std::int16_t>(&value)) add(*number);
  if (const auto* number = std::get_if<std::int32_t>(&value)) add(*number);
  if (const auto* number = std::get_if<dao::Currency>(&value)) add(number->scaled);
  if (const auto* number = std::get_if<float>(&value)) add(*number);
  if (const auto* number = std::get_if<double>(&value)) add(*number);
  if (const auto* number = std::get_if<dao::Date>(&value)) add(number->days);
  if (const auto* guid = std::get_if<dao::Guid>(&value)) add(guid->bytes);
  return key + '|';
}

std::size_t SizeInRow(const dao::Value& value, bool isLong) {
  std::size_t size = 20;
  if (const auto* text = std::get_if<std::u16string>(&value)) size += 2 * text->size();
  if (const auto* bytes = std::get_if<dao::Binary>(&value)) size += bytes->size();
  return isLong ? std::min(size, kLongValueInRow) : size;
}

}  // namespace

bool ModelColumn::HasKnownKeys() const {
  constexpr int types[] = {dao::dbInteger, dao::dbLong, dao::dbCurrency, dao::dbSingle, dao::dbDouble, dao::dbDate,
                           dao::dbGUID};
  return isWord || std::find(std::begin(types), std::end(types), type) != std::end(types);
}

bool ModelIndex::Has(std::u16string_view column) const {
  return std::any_of(columns.begin(), columns.end(), [&](const auto& part) { return part.first == column; });
}

bool ModelTable::HasColumn(std::u16string_view name) const {
  return std::any_of(columns.begin(), columns.end(),
                     [&](const ModelColumn& c) { return EqualIgnoringCase(c.name, name); });
}

bool ModelTable::IsIndexed(std::u16string_view column) const {
  return std::any_of(indexes.begin(), indexes.end(), [&](const ModelIndex& index) { return index.Has(column); });
}

dao::Value ModelTable::ValueOf(std::int32_t id, const ModelRow& row, const std::u16string& column) {
  return column == u"Id" ? dao::Value(id) : row.at(column);
}

std::set<std::int32_t> ModelTable::BreachesOf(const ModelIndex& index) const {
  std::set<std::int32_t> breaches;
  std::set<std::string> seen;
  for (const auto& [id, row] : rows) {
    std::string key;
    std::size_t nulls = 0;
    for (const auto& [column, descending] : index.columns) {
      const dao::Value& value = row.at(column);
      nulls += dao::IsNull(value) ? 1 : 0;
      if (index.unique) key += KeyPart(value);
    }
    if (index.required && nulls > 0) breaches.insert(platform::kErrNullInIndex);
    // Rows of nulls alone may repeat.
    if (index.unique && nulls < index.columns.size() && !seen.insert(key).second) {
      breaches.insert(platform::kErrDuplicateKey);
    }
  }
  return breaches;
}

bool ModelTable::MayBeTooLarge(const ModelRow& row) const {
  std::size_t size = 0;
  for (const ModelColumn& column : columns) {
    const bool isLong = column.type == dao::dbMemo || column.type == dao::dbLongBinary;
    if (column.name != u"Id") size += SizeInRow(row.at(column.name), isLong);
  }
  return size > kSureRow || std::any_of(indexes.begin(), indexes.end(), [&](const ModelIndex& index) {
           return MayBeTooLarge(row, index);
         });
}

bool ModelTable::MayBeTooLarge(const ModelRow& row, const ModelIndex& index) {
  std::size_t elements = 0;
  for (const auto& [column, descending] : index.columns) {
    if (const auto* text = std::get_if<std::u16string>(&row.at(column))) elements += text->size();
    if (const auto* bytes = std::get_if<dao::Binary>(&row.at(column))) elements += bytes->size();
  }
  return elements > kSureKey;
}

bool ModelRelation::Uses(std::u16string_view ofTable, std::u16string_view ofColumn) const {
  return (table == ofTable && column == ofColumn) || (foreignTable == ofTable && foreignColumn == ofColumn);
}

std::map<std::u16string, ModelTable>::iterator ModelDatabase::Find(std::u16string_view table) {
  return std::find_if(tables.begin(), tables.end(),
                      [&](const auto& entry) { return EqualIgnoringCase(entry.first, table); });
}

bool ModelDatabase::IsRelated(std::u16string_view table) const {
  return std::any_of(relations.begin(), relations.end(), [&](const ModelRelation& relation) {
    return relation.table == table || relation.foreignTable == table;
  });
}

const ModelRelation* ModelDatabase::ParentOf(std::u16string_view table, std::u16string_view column) const {
  for (const ModelRelation& relation : relations) {
    const bool isIt = relation.foreignTable == table && relation.foreignColumn == column;
    if (isIt && relation.IsEnforced()) return &relation;
  }
  return nullptr;
}

bool ModelDatabase::DependsOn(std::u16string_view from, std::u16string_view table) const {
  return from == table || std::any_of(relations.begin(), relations.end(), [&](const ModelRelation& relation) {
           return relation.foreignTable == from && DependsOn(relation.table, table);
         });
}

std::vector<std::int32_t> ModelChange::ChildrenOf(const ModelRelation& relation, const dao::Value& key) const {
  std::vector<std::int32_t> children;
  if (dao::IsNull(key)) return children;
  for (const auto& [id, row] : database_.tables.at(relation.foreignTable).rows) {
    if (row.at(relation.foreignColumn) == key) children.push_back(id);
  }
  return children;
}

void ModelChange::Put(const std::u16string& table, std::int32_t id, const ModelRow& row) {
  auto& rows = database_.tables.at(table).rows;
  const auto place = rows.find(id);
  if (place == rows.end()) {
    steps_.push_back({table, id, std::nullopt});
    rows.emplace(id, row);
    return;
  }
  const ModelRow former = std::exchange(place->second, row);
  steps_.push_back({table, id, former});
  for (const ModelRelation& relation : database_.relations) {
    if (relation.table != table || !relation.IsEnforced() || relation.column == u"Id") continue;
    const dao::Value& value = row.at(relation.column);
    if (former.at(relation.column) == value) continue;
    for (const std::int32_t child : ChildrenOf(relation, former.at(relation.column))) {
      if ((relation.attributes & dao::dbRelationUpdateCascade) == 0) {
        errors_.insert(platform::kErrRelatedRecords);
        continue;
      }
      ModelRow follower = database_.tables.at(relation.foreignTable).rows.at(child);
      follower[relation.foreignColumn] = value;
      Put(relation.foreignTable, child, follower);
    }
  }
}

void ModelChange::Remove(const std::u16string& table, std::int32_t id) {
  auto& rows = database_.tables.at(table).rows;
  const auto place = rows.find(id);
  if (place == rows.end()) return;
  const ModelRow former = std::move(place->second);
  rows.erase(place);
  steps_.push_back({table, id, former});
  for (const bool cascades : {false, true}) {
    for (const ModelRelation& relation : database_.relations) {
      if (relation.table != table || !relation.IsEnforced()) continue;
      if (((relation.attributes & dao::dbRelationDeleteCascade) != 0) != cascades) continue;
      const dao::Value key = ModelTable::ValueOf(id, former, relation.column);
      if (!cascades && HasGone(relation, key)) mayBeRelated_ = true;
      for (const std::int32_t child : ChildrenOf(relation, key)) {
        if (cascades) {
          Remove(relation.foreignTable, child);
        } else {
          left_.emplace_back(relation.foreignTable, child);
        }
      }
    }
  }
}

// Whether a child went earlier in this change: the engine may come to it before it goes.
bool ModelChange::HasGone(const ModelRelation& relation, const dao::Value& key) const {
  return !dao::IsNull(key) && std::any_of(steps_.begin(), steps_.end(), [&](const Step& step) {
    return step.table == relation.foreignTable && step.former && step.former->at(relation.foreignColumn) == key;
  });
}

void ModelChange::JudgeRow(const std::u16string& name, std::int32_t id) {
  const ModelTable& table = database_.tables.at(name);
  const auto place = table.rows.find(id);
  if (place == table.rows.end()) return;
  const ModelRow& row = place->second;
  for (const ModelColumn& column : table.columns) {
    if (column.name == u"Id") continue;
    const dao::Value& value = row.at(column.name);
    if (column.required && dao::IsNull(value)) errors_.insert(platform::kErrRequired);
    if (!column.allowsEmpty && value == dao::Value(std::u16string())) errors_.insert(platform::kErrZeroLength);
    const ModelRelation* relation = database_.ParentOf(name, column.name);
    if (!relation || dao::IsNull(value)) continue;
    const auto& parents = database_.tables.at(relation->table).rows;
    const bool hasParent = std::any_of(parents.begin(), parents.end(), [&](const auto& parent) {
      return ModelTable::ValueOf(parent.first, parent.second, relation->column) == value;
    });
    if (!hasParent) errors_.insert(platform::kErrRelatedRecordRequired);
  }
  mayBeTooLarge_ = mayBeTooLarge_ || table.MayBeTooLarge(row);
}

void ModelChange::Judge() {
  std::set<std::pair<std::u16string, std::int32_t>> rows;
  std::set<std::u16string> tables;
  for (const Step& step : steps_) {
    rows.emplace(step.table, step.id);
    tables.insert(step.table);
  }
  for (const auto& [table, id] : rows) JudgeRow(table, id);
  for (const std::u16string& name : tables) {
    const ModelTable& table = database_.tables.at(name);
    for (const ModelIndex& index : table.indexes) {
      if (!index.unique && !index.required) continue;
      errors_.merge(table.BreachesOf(index));
    }
  }
  // A row that forbids the change although it goes too is met before it went, or afterwards.
  for (const auto& [table, id] : left_) {
    if (database_.tables.at(table).rows.contains(id)) errors_.insert(platform::kErrRelatedRecords);
    mayBeRelated_ = true;
  }
}

bool ModelChange::IsPossible(std::int32_t number) {
  Judge();
  if (number == platform::kErrRecordTooLarge) return mayBeTooLarge_;
  if (number == platform::kErrRelatedRecords && mayBeRelated_) return true;
  return number == 0 ? errors_.empty() : errors_.contains(number);
}

std::string ModelChange::Expected() const {
  std::string numbers;
  for (const std::int32_t number : errors_) numbers += ' ' + std::to_string(number);
  return numbers.empty() ? " success" : numbers;
}

void ModelChange::TakeBack() {
  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    auto& rows = database_.tables.at(step->table).rows;
    if (step->former) {
      rows[step->id] = *step->former;
    } else {
      rows.erase(step->id);
    }
  }
}

}  // namespace zimbrat::tests

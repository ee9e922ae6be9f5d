// Operations on rows.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/error_numbers.h"
#include "platform/text.h"
#include "random_database.h"

namespace zimbrat::tests {

using platform::DecimalText;

namespace {

constexpr std::size_t kMostRows = 400;

std::u16string Between(std::int32_t from, std::int32_t to) {
  return u" WHERE Id Between " + DecimalText(from) + u" And " + DecimalText(to);
}

}  // namespace

dao::Value RandomDatabase::ValueIn(const std::u16string& table, const ModelColumn& column) {
  const ModelRelation* relation = model_.ParentOf(table, column.name);
  if (!relation || chance_.OneIn(12)) return chance_.ValueFor(column);
  ModelTable& parent = model_.tables.at(relation->table);
  const auto row = SomeRow(parent);
  if (row == parent.rows.end() || chance_.OneIn(5)) return dao::Null{};
  return ModelTable::ValueOf(row->first, row->second, relation->column);
}

bool RandomDatabase::Insert(Place place) {
  const auto& [name, table] = *place;
  if (table.rows.size() >= kMostRows) return false;
  const auto rows = chance_.OneIn(2) ? database_->OpenRecordset(name, dao::dbOpenTable)
                                     : database_->OpenRecordset(u"SELECT * FROM [" + name + u"] WHERE Id = 0");
  rows->AddNew();
  ModelRow row;
  for (std::size_t i = 1; i < table.columns.size(); ++i) {
    const ModelColumn& column = table.columns[i];
    row[column.name] = ValueIn(name, column);
    rows->Fields()->Item(column.name)->SetValue(row[column.name]);
  }
  ModelChange change(model_);
  change.Put(name, table.counter + 1, row);
  if (Settle(change, [&] { rows->Update(); })) ++place->second.counter;
  return true;
}

// A counter that is given: lower, taken or higher than all.
bool RandomDatabase::InsertWithCounter(Place place) {
  auto& [name, table] = *place;
  if (table.rows.size() >= kMostRows) return false;
  const auto given = chance_.OneIn(6) ? -static_cast<std::int32_t>(chance_.Below(1'000'000))
                                      : static_cast<std::int32_t>(chance_.Below(static_cast<std::size_t>(table.counter) + 20));
  ModelRow row;
  for (std::size_t i = 1; i < table.columns.size(); ++i) {
    const ModelColumn& column = table.columns[i];
    row[column.name] = column.type == dao::dbBoolean ? dao::Value(false) : dao::Value();
  }
  const std::u16string statement = u"INSERT INTO [" + name + u"] (Id) VALUES (" + DecimalText(given) + u")";
  if (table.rows.contains(given)) {
    std::set<std::int32_t> expected = {platform::kErrDuplicateKey};
    for (const ModelColumn& column : table.columns) {
      if (column.required) expected.insert(platform::kErrRequired);
    }
    for (const ModelIndex& index : table.indexes) {
      if (index.required) expected.insert(platform::kErrNullInIndex);
    }
    Expect(expected, [&] { Execute(statement); });
    return true;
  }
  ModelChange change(model_);
  change.Put(name, given, row);
  if (Settle(change, [&] { Execute(statement); })) table.counter = std::max(table.counter, given);
  return true;
}

// The table's own last rows once more.
bool RandomDatabase::InsertCopies(Place place) {
  auto& [name, table] = *place;
  if (table.rows.size() >= kMostRows || table.columns.size() < 2) return false;
  std::u16string names;
  for (std::size_t i = 1; i < table.columns.size(); ++i) {
    names += (i > 1 ? u", [" : u"[") + table.columns[i].name + u"]";
  }
  const std::int32_t from = table.counter - static_cast<std::int32_t>(chance_.Below(5));
  const std::map<std::int32_t, ModelRow> copied(table.rows.lower_bound(from), table.rows.end());
  ModelChange change(model_);
  std::int32_t counter = table.counter;
  for (const auto& [id, row] : copied) change.Put(name, ++counter, row);
  const bool isDone = Settle(change, [&] {
    Execute(u"INSERT INTO [" + name + u"] (" + names + u") SELECT " + names + u" FROM [" + name + u"] WHERE Id >= " +
            DecimalText(from) + u" ORDER BY Id");
  });
  if (isDone) table.counter = counter;
  return true;
}

bool RandomDatabase::Edit(Place place) {
  auto& [name, table] = *place;
  const auto target = SomeRow(table);
  if (target == table.rows.end()) return false;
  const auto rows = database_->OpenRecordset(u"SELECT * FROM [" + name + u"] WHERE Id = " + DecimalText(target->first));
  rows->Edit();
  ModelRow row = target->second;
  for (std::uint32_t i = chance_.Below(4); i > 0; --i) {
    const ModelColumn* column = SomeColumn(table);
    if (!column) continue;
    row[column->name] = ValueIn(name, *column);
    rows->Fields()->Item(column->name)->SetValue(row[column->name]);
  }
  ModelChange change(model_);
  change.Put(name, target->first, row);
  Settle(change, [&] { rows->Update(); });
  return true;
}

bool RandomDatabase::DeleteOne(Place place) {
  auto& [name, table] = *place;
  const auto target = SomeRow(table);
  if (target == table.rows.end()) return false;
  const auto rows = database_->OpenRecordset(u"SELECT Id FROM [" + name + u"] WHERE Id = " + DecimalText(target->first));
  ModelChange change(model_);
  change.Remove(name, target->first);
  Settle(change, [&] { rows->Delete(); });
  return true;
}

// A few rows, many, or all.
bool RandomDatabase::DeleteRange(Place place) {
  auto& [name, table] = *place;
  const auto first = SomeRow(table);
  if (first == table.rows.end()) return false;
  const bool isAll = chance_.OneIn(25);
  const std::int32_t from = isAll ? table.rows.begin()->first : first->first;
  const std::int32_t to = isAll ? table.rows.rbegin()->first
                                : from + static_cast<std::int32_t>(chance_.OneIn(9) ? chance_.Below(300) : chance_.Below(4));
  std::vector<std::int32_t> ids;
  for (auto row = table.rows.lower_bound(from); row != table.rows.upper_bound(to); ++row) ids.push_back(row->first);
  ModelChange change(model_);
  for (const std::int32_t id : ids) change.Remove(name, id);
  const bool isDone = Settle(change, [&] { Execute(u"DELETE FROM [" + name + u"]" + (isAll ? u"" : Between(from, to))); });
  if (isDone) { EXPECT_EQ(database_->RecordsAffected(), static_cast<std::int32_t>(ids.size())); }
  return true;
}

// A number for some rows: all of them or, where a rule forbids it, none.
bool RandomDatabase::UpdateNumbers(Place place) {
  auto& [name, table] = *place;
  const ModelColumn* column = SomeColumnOf(table, dao::dbLong);
  const auto first = SomeRow(table);
  if (!column || first == table.rows.end()) return false;
  const std::int32_t from = first->first, to = chance_.OneIn(2) ? from : table.rows.rbegin()->first;
  const dao::Value value = chance_.OneIn(3) ? dao::Value(static_cast<std::int32_t>(chance_.Below(300))) : ValueIn(name, *column);
  const auto* number = std::get_if<std::int32_t>(&value);
  std::vector<std::pair<std::int32_t, ModelRow>> rows(table.rows.lower_bound(from), table.rows.upper_bound(to));
  ModelChange change(model_);
  for (auto& [id, row] : rows) {
    row[column->name] = value;
    change.Put(name, id, row);
  }
  Settle(change, [&] {
    Execute(u"UPDATE [" + name + u"] SET [" + column->name + u"] = " + (number ? DecimalText(*number) : u"Null") +
            Between(from, to));
  });
  return true;
}

// Texts of another length, so that rows grow over their pages and long values come and go.
bool RandomDatabase::UpdateTexts(Place place) {
  auto& [name, table] = *place;
  const ModelColumn* column = SomeColumnOf(table, chance_.OneIn(2) ? dao::dbMemo : dao::dbText);
  const auto first = SomeRow(table);
  if (!column || column->isWord || first == table.rows.end()) return false;
  const std::int32_t from = first->first, to = from + static_cast<std::int32_t>(chance_.Below(40));
  const std::uint32_t length = chance_.Below(column->type == dao::dbMemo ? 3'000 : static_cast<std::size_t>(column->size) + 1);
  std::vector<std::pair<std::int32_t, ModelRow>> rows(table.rows.lower_bound(from), table.rows.upper_bound(to));
  ModelChange change(model_);
  for (auto& [id, row] : rows) {
    row[column->name] = std::u16string(length, u'ż');
    change.Put(name, id, row);
  }
  Settle(change, [&] {
    Execute(u"UPDATE [" + name + u"] SET [" + column->name + u"] = String(" + DecimalText(length) + u", 'ż')" +
            Between(from, to));
  });
  return true;
}

bool RandomDatabase::CountNumbers(Place place) {
  auto& [name, table] = *place;
  const ModelColumn* column = SomeColumnOf(table, dao::dbLong);
  if (!column) return false;
  const auto number = static_cast<std::int32_t>(chance_.Below(300));
  const auto rows = database_->OpenRecordset(u"SELECT Id FROM [" + name + u"] WHERE [" + column->name + u"] < " +
                                                 DecimalText(number), dao::dbOpenSnapshot);
  std::int64_t counted = 0;
  for (; !rows->EndOfFile(); rows->MoveNext()) ++counted;
  EXPECT_EQ(counted, std::count_if(table.rows.begin(), table.rows.end(), [&](const auto& row) {
              const auto* value = std::get_if<std::int32_t>(&row.second.at(column->name));
              return value && *value < number;
            }));
  return true;
}

// By a text that differs in case from some of those that are found.
bool RandomDatabase::FindWords(Place place) {
  auto& [name, table] = *place;
  const ModelColumn* column = SomeColumnOf(table, dao::dbText);
  const auto sample = SomeRow(table);
  if (!column || !column->isWord || sample == table.rows.end()) return false;
  const auto* found = std::get_if<std::u16string>(&sample->second.at(column->name));
  const std::u16string word = found && !found->empty() && chance_.OneIn(2) ? *found : chance_.Word();
  const auto rows = database_->OpenRecordset(u"SELECT Id FROM [" + name + u"] WHERE [" + column->name + u"] = '" + word +
                                                 u"'", dao::dbOpenSnapshot);
  std::set<std::int32_t> ids, expected;
  for (; !rows->EndOfFile(); rows->MoveNext()) ids.insert(std::get<std::int32_t>(rows->Fields()->Item(0)->Value()));
  for (const auto& [id, row] : table.rows) {
    const auto* value = std::get_if<std::u16string>(&row.at(column->name));
    if (value && platform::EqualIgnoringCase(*value, word)) expected.insert(id);
  }
  EXPECT_EQ(ids, expected);
  return true;
}

bool RandomDatabase::ReadSorted(Place place) {
  auto& [name, table] = *place;
  const ModelColumn* column = SomeColumnOf(table, dao::dbLong);
  if (!column) return false;
  const auto rows = database_->OpenRecordset(u"SELECT [" + column->name + u"], Id FROM [" + name + u"] ORDER BY [" +
                                                 column->name + u"], Id", dao::dbOpenSnapshot);
  // Null comes first.
  using Line = std::pair<std::optional<std::int32_t>, std::int32_t>;
  const auto line = [](const dao::Value& value, std::int32_t id) {
    const auto* number = std::get_if<std::int32_t>(&value);
    return Line(number ? std::optional(*number) : std::nullopt, id);
  };
  std::vector<Line> lines, expected;
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    lines.push_back(line(rows->Fields()->Item(0)->Value(), std::get<std::int32_t>(rows->Fields()->Item(1)->Value())));
  }
  for (const auto& [id, row] : table.rows) expected.push_back(line(row.at(column->name), id));
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(lines, expected);
  return true;
}

}  // namespace zimbrat::tests

// The comparison of a database with its model.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/text.h"
#include "random_database.h"

namespace zimbrat::tests {

using platform::Utf8FromUtf16;

void RandomDatabase::Compare() {
  for (const auto& [name, model] : model_.tables) {
    SCOPED_TRACE(Utf8FromUtf16(name));
    CompareStructure(name, model);
    CompareIndexes(name, model);
    CompareRows(name, model);
  }
  CompareRelations();
}

void RandomDatabase::CompareStructure(const std::u16string& name, const ModelTable& model) {
  const auto fields = TableOf(name)->Fields();
  ASSERT_EQ(fields->Count(), static_cast<int>(model.columns.size()));
  for (std::size_t i = 1; i < model.columns.size(); ++i) {
    const ModelColumn& column = model.columns[i];
    SCOPED_TRACE(Utf8FromUtf16(column.name));
    const auto field = fields->Item(column.name);
    EXPECT_EQ(field->Type(), column.type);
    if (column.size > 0) { EXPECT_EQ(field->Size(), column.size); }
    EXPECT_EQ(field->Required(), column.required);
    const bool isText = column.type == dao::dbText || column.type == dao::dbMemo;
    if (isText) { EXPECT_EQ(field->AllowZeroLength(), column.allowsEmpty); }
  }
}

void RandomDatabase::CompareIndexes(const std::u16string& name, const ModelTable& model) {
  const auto indexes = TableOf(name)->Indexes();
  const auto ofRelations = std::count_if(model_.relations.begin(), model_.relations.end(), [&](const ModelRelation& r) {
    return r.IsEnforced() && r.foreignTable == name;
  });
  ASSERT_EQ(indexes->Count(), static_cast<int>(model.indexes.size()) + 1 + ofRelations);
  EXPECT_TRUE(indexes->Item(u"PK")->Primary());
  for (const ModelIndex& expected : model.indexes) {
    SCOPED_TRACE(Utf8FromUtf16(expected.name));
    const auto index = indexes->Item(expected.name);
    EXPECT_EQ(index->Unique(), expected.unique);
    EXPECT_EQ(index->Required(), expected.required);
    EXPECT_EQ(index->IgnoreNulls(), expected.ignoresNulls);
    EXPECT_FALSE(index->Primary() || index->Foreign());
    ASSERT_EQ(index->Fields()->Count(), static_cast<int>(expected.columns.size()));
    for (std::size_t i = 0; i < expected.columns.size(); ++i) {
      const auto field = index->Fields()->Item(static_cast<int>(i));
      EXPECT_EQ(field->Name(), expected.columns[i].first);
      EXPECT_EQ((field->Attributes() & dao::dbDescending) != 0, expected.columns[i].second);
    }
  }
}

void RandomDatabase::CompareRelations() {
  const auto relations = database_->Relations();
  ASSERT_EQ(relations->Count(), static_cast<int>(model_.relations.size()));
  for (const ModelRelation& expected : model_.relations) {
    SCOPED_TRACE(Utf8FromUtf16(expected.name));
    const auto relation = relations->Item(expected.name);
    EXPECT_EQ(relation->Table(), expected.table);
    EXPECT_EQ(relation->ForeignTable(), expected.foreignTable);
    // Whether it is one to one is what the indexes say.
    EXPECT_EQ(relation->Attributes() & ~dao::dbRelationUnique, expected.attributes);
    ASSERT_EQ(relation->Fields()->Count(), 1);
    EXPECT_EQ(relation->Fields()->Item(0)->Name(), expected.column);
    EXPECT_EQ(relation->Fields()->Item(0)->ForeignName(), expected.foreignColumn);
  }
}

void RandomDatabase::CompareRows(const std::u16string& name, const ModelTable& model) {
  ASSERT_EQ(TableOf(name)->RecordCount(), static_cast<std::int32_t>(model.rows.size()));
  const auto rows = database_->OpenRecordset(name, dao::dbOpenSnapshot);
  const auto fields = rows->Fields();
  std::size_t count = 0;
  for (; !rows->EndOfFile(); rows->MoveNext(), ++count) {
    const auto id = std::get<std::int32_t>(fields->Item(u"Id")->Value());
    ASSERT_TRUE(model.rows.contains(id)) << id;
    for (const auto& [column, value] : model.rows.at(id)) {
      ASSERT_TRUE(fields->Item(column)->Value() == value) << id << ' ' << Utf8FromUtf16(column);
    }
  }
  EXPECT_EQ(count, model.rows.size());
}

}  // namespace zimbrat::tests

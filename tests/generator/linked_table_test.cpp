// A table definition that cannot be changed, as the engine gives for a linked table.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "generator/ModGeneruj.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

using testing::NiceMock;
using testing::Return;
using Text = std::u16string;
using View = std::u16string_view;

class TableMock : public dao::TableDef {
 public:
  MOCK_METHOD(Text, Name, (), (override));
  MOCK_METHOD(void, SetName, (View), (override));
  MOCK_METHOD(bool, Updatable, (), (override));
  MOCK_METHOD(std::int32_t, Attributes, (), (override));
  MOCK_METHOD(std::int32_t, RecordCount, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::Field>, CreateField,
              (View, const dao::Value&, const dao::Value&), (override));
  MOCK_METHOD(std::shared_ptr<dao::Index>, CreateIndex, (View), (override));
  MOCK_METHOD(std::shared_ptr<dao::Collection<dao::Field>>, Fields, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::Collection<dao::Index>>, Indexes, (), (override));
};

class TablesMock : public dao::Collection<dao::TableDef> {
 public:
  MOCK_METHOD(int, Count, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::TableDef>, Item, (int), (override));
  MOCK_METHOD(std::shared_ptr<dao::TableDef>, Item, (View), (override));
  MOCK_METHOD(void, Append, (const std::shared_ptr<dao::TableDef>&), (override));
  MOCK_METHOD(void, Delete, (View), (override));
  MOCK_METHOD(void, Refresh, (), (override));
};

class DatabaseMock : public dao::Database {
 public:
  MOCK_METHOD(Text, Name, (), (override));
  MOCK_METHOD(Text, Version, (), (override));
  MOCK_METHOD(bool, Updatable, (), (override));
  MOCK_METHOD(std::int32_t, RecordsAffected, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::Collection<dao::TableDef>>, TableDefs, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::Collection<dao::Relation>>, Relations, (), (override));
  MOCK_METHOD(std::shared_ptr<dao::TableDef>, CreateTableDef, (View), (override));
  MOCK_METHOD(std::shared_ptr<dao::Relation>, CreateRelation, (View, View, View, const dao::Value&),
              (override));
  MOCK_METHOD(std::shared_ptr<dao::Recordset>, OpenRecordset, (View, std::int32_t), (override));
  MOCK_METHOD(void, Execute, (View, std::int32_t), (override));
  MOCK_METHOD(void, NewPassword, (View, View), (override));
  MOCK_METHOD(void, Close, (), (override));
};

TEST(LinkedTable, EndsTheTableWithoutAnEntryInTheContext) {
  Bench bench;
  const auto table = std::make_shared<NiceMock<TableMock>>();
  const auto tables = std::make_shared<NiceMock<TablesMock>>();
  NiceMock<DatabaseMock> database;
  ON_CALL(*table, Name).WillByDefault(Return(u"T"));
  ON_CALL(*table, Updatable).WillByDefault(Return(false));
  ON_CALL(*tables, Count).WillByDefault(Return(1));
  ON_CALL(*tables, Item(testing::An<int>())).WillByDefault(Return(table));
  ON_CALL(database, TableDefs).WillByDefault(Return(tables));
  EXPECT_CALL(*table, SetName).Times(0);
  EXPECT_CALL(*tables, Append).Times(0);
  const auto file = bench.WriteStructure(u"a.stb", "[T]\nField=A,10,5,,False,False,2,\n");
  EXPECT_FALSE(generator::UtwórzTablice(bench.state, database, u"T", file));
  EXPECT_TRUE(bench.state.context.Detail.empty());
  EXPECT_TRUE(bench.state.context.Table.empty());
  EXPECT_EQ(bench.state.context.Number, 0);
}

}  // namespace
}  // namespace zimbrat::tests

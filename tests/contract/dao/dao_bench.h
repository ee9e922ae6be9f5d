// A database of an engine under test, and the shortest way to put things into it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao.h"
#include "platform/system.h"
#include "platform/text.h"
#include "engine_maker.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

struct FieldPlan {
  std::u16string name;
  int type;
  int size = 0;
  int attributes = 0;
  bool required = false;
  bool allowZeroLength = false;
  std::u16string defaultValue = {};
};

struct IndexPlan {
  std::u16string name;
  std::vector<std::u16string> fields;
  bool primary = false;
  bool unique = false;
  bool required = false;
  bool ignoreNulls = false;
};

// The number of an error, 0 for none; where the sources leave it open those that they name, our own first.
struct Numbers {
  std::vector<std::int32_t> all;
  Numbers(std::int32_t number) : all{number} {}
  Numbers(std::initializer_list<std::int32_t> numbers) : all(numbers) {}
};

class DaoBench : public ::testing::Test {
 public:
  TempFolder folder;
  platform::System system = platform::MakeSystem(0, nullptr);
  EngineUnderTest under = MakeEngineUnderTest(system);
  std::shared_ptr<dao::Engine>& engine = under.engine;
  std::shared_ptr<dao::Workspace> workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path = folder.PathOf(u"Baza.mdb");
  std::shared_ptr<dao::Database> database;

  // Nothing that the engine gave may be held any more, nor any file.
  void TearDown() override;

  // An error of the first number of them, or, from a foreign engine, of any; that one is told as what was seen
  // at the point of that name.
  void ExpectOneOf(std::string_view point, const Numbers& numbers, const std::function<void()>& work) const;
  // The same of what an engine does: what was seen, and what ours does.
  void ExpectSeen(std::string_view point, std::string_view seen, std::string_view ours) const;

  void Create(std::int32_t options = 0) {
    database = workspace->CreateDatabase(path, dao::dbLangGeneral, options);
  }
  void Reopen(std::u16string_view connect = u";pwd=;") {
    if (database) database->Close();
    database = workspace->OpenDatabase(path, true, false, connect);
  }

  std::shared_ptr<dao::Field> MakeField(dao::TableDef& table, const FieldPlan& plan) {
    auto field = table.CreateField(plan.name, std::int32_t{plan.type}, std::int32_t{plan.size});
    table.Fields()->Append(field);
    field->SetAllowZeroLength(plan.allowZeroLength);
    field->SetDefaultValue(plan.defaultValue);
    field->SetRequired(plan.required);
    if (plan.attributes != 0) field->SetAttributes(plan.attributes);
    return field;
  }

  std::shared_ptr<dao::Index> MakeIndex(dao::TableDef& table, const IndexPlan& plan) {
    auto index = table.CreateIndex(plan.name);
    index->SetPrimary(plan.primary);
    index->SetUnique(plan.unique);
    index->SetRequired(plan.required);
    index->SetIgnoreNulls(plan.ignoreNulls);
    for (const std::u16string& name : plan.fields) index->Fields()->Append(index->CreateField(name));
    table.Indexes()->Append(index);
    return index;
  }

  void MakeTable(std::u16string_view name, const std::vector<FieldPlan>& fields,
                 const std::vector<IndexPlan>& indexes = {}) {
    auto table = database->CreateTableDef(name);
    for (const FieldPlan& plan : fields) MakeField(*table, plan);
    for (const IndexPlan& plan : indexes) MakeIndex(*table, plan);
    database->TableDefs()->Append(table);
  }

  void MakeRelation(std::u16string_view name, std::u16string_view table, std::u16string_view foreignTable,
                    std::int32_t attributes,
                    const std::vector<std::pair<std::u16string, std::u16string>>& fields) {
    auto relation = database->CreateRelation(name, table, foreignTable, attributes);
    for (const auto& [own, foreign] : fields) {
      relation->Fields()->Append(relation->CreateField(own));
      relation->Fields()->Item(own)->SetForeignName(foreign);
    }
    database->Relations()->Append(relation);
  }

  void Run(std::u16string_view statement) { database->Execute(statement, dao::dbFailOnError); }
  std::int32_t ErrorOfRun(std::u16string_view statement) {
    return ErrorOf([&] { Run(statement); });
  }

  // The values of one column, in the order of the rows.
  std::vector<dao::Value> Column(std::u16string_view query, std::u16string_view column) {
    std::vector<dao::Value> values;
    auto rows = database->OpenRecordset(query, dao::dbOpenSnapshot);
    for (; !rows->EndOfFile(); rows->MoveNext()) values.push_back(rows->Fields()->Item(column)->Value());
    rows->Close();
    return values;
  }
  std::size_t CountRows(std::u16string_view query) {
    auto rows = database->OpenRecordset(query, dao::dbOpenSnapshot);
    std::size_t count = 0;
    for (; !rows->EndOfFile(); rows->MoveNext()) ++count;
    rows->Close();
    return count;
  }
};

inline dao::Value Text(std::u16string_view text) { return std::u16string(text); }
inline dao::Value Long(std::int32_t number) { return number; }

}  // namespace zimbrat::tests

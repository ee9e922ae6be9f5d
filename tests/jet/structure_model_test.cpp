// Random changes of structure and rows against a model: tables, fields and indexes come, go and are renamed, rows
// are stored through recordsets and SQL, databases are closed, encoded, protected. After each batch the checker
// and a comparison of everything.
//
//   ZIMBRAT_SEED   the seed, to see a failure again
//   ZIMBRAT_STEPS  how many operations, instead of some thousands
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "jet/repair.h"
#include "platform/error_numbers.h"
#include "platform/system.h"
#include "platform/text.h"
#include "structure_model.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/rounds.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

using platform::DecimalText;

namespace {

constexpr int kStepsOfABatch = 120;
constexpr std::size_t kMostTables = 6;
constexpr std::size_t kMostRows = 400;

class StructureModel {
 public:
  StructureModel(std::uint32_t seed, bool encode) : chance_(seed) {
    database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, encode ? dao::dbEncrypt : 0);
  }

  void Batch() {
    for (int i = 0; i < kStepsOfABatch && !::testing::Test::HasFailure(); ++i) Step();
    Compare();
    database_->Close();
    if (chance_.OneIn(6)) jet::RepairDatabaseFile(*system_.files, clock_, path_);
    for (const jet::Fault& fault : jet::CheckFile(*system_.files, path_)) {
      ADD_FAILURE() << platform::Utf8FromUtf16(fault.place) << ": " << platform::Utf8FromUtf16(fault.text);
    }
    Open();
    Compare();
  }

 private:
  using Place = ModelTables::iterator;

  void Open() {
    database_ = workspace_->OpenDatabase(path_, true, false, u";pwd=" + password_ + u";");
    if (!chance_.OneIn(4)) return;
    const std::u16string former = password_;
    password_ = chance_.OneIn(3) ? u"" : chance_.Text(20);
    std::erase(password_, u';');
    database_->NewPassword(former, password_);
  }

  void Step() {
    if (tables_.empty()) return CreateTable();
    const std::uint32_t dice = chance_.Below(1000);
    Place place = tables_.begin();
    std::advance(place, chance_.Below(tables_.size()));
    if (dice < 8) return CreateTable();
    if (dice < 12) return DropTable(place);
    if (dice < 22) return RenameTable(place);
    if (dice < 45) return AddField(place);
    if (dice < 60) return DropField(place);
    if (dice < 75) return RenameField(place);
    if (dice < 95) return AddIndex(place);
    if (dice < 110) return DropOrRenameIndex(place);
    if (dice < 560) return Insert(place->second, place->first);
    if (dice < 600) return InsertBySql(place);
    if (dice < 800) return Edit(place);
    if (dice < 900) return DeleteRows(place);
    if (dice < 960) return UpdateBySql(place);
    if (dice < 985) return CountBySql(place);
    Undo();
  }

  // Runs both; the model is put back when the engine refuses. The number must be `expected`.
  void Expect(std::int32_t expected, const std::function<void()>& work) {
    EXPECT_EQ(ErrorOf(work), expected);
  }

  std::shared_ptr<dao::TableDef> TableOf(const std::u16string& name) { return database_->TableDefs()->Item(name); }

  void PutField(dao::TableDef& table, const ModelColumn& column) {
    const auto field = table.CreateField(column.name, std::int32_t{column.type}, std::int32_t{column.size});
    field->SetAllowZeroLength(true);
    table.Fields()->Append(field);
  }
  void PutIndex(dao::TableDef& table, const ModelIndex& index) {
    const auto made = table.CreateIndex(index.name);
    made->SetUnique(index.unique);
    for (const std::u16string& column : index.columns) {
      const auto field = made->CreateField(column);
      if (column.size() % 2 == 0) field->SetAttributes(dao::dbDescending);
      made->Fields()->Append(field);
    }
    table.Indexes()->Append(made);
  }

  void CreateTable() {
    if (tables_.size() >= kMostTables) return;
    const std::u16string name = chance_.Name(u"Tabela");
    if (FindTable(name) != tables_.end()) return;
    ModelTable model;
    model.columns.push_back({u"Id", dao::dbLong, 4});
    const auto table = database_->CreateTableDef(name);
    const auto id = table->CreateField(u"Id", std::int32_t{dao::dbLong}, std::int32_t{4});
    id->SetAttributes(dao::dbAutoIncrField | dao::dbFixedField);
    table->Fields()->Append(id);
    const auto primary = table->CreateIndex(u"PK");
    primary->SetPrimary(true);
    primary->Fields()->Append(primary->CreateField(u"Id"));
    table->Indexes()->Append(primary);
    for (std::uint32_t i = chance_.Below(9); i > 0; --i) {
      const ModelColumn column = chance_.Column();
      if (model.HasColumn(column.name)) continue;
      PutField(*table, column);
      model.columns.push_back(column);
    }
    database_->TableDefs()->Append(table);
    tables_.emplace(name, std::move(model));
  }

  Place FindTable(std::u16string_view name) {
    return std::find_if(tables_.begin(), tables_.end(),
                        [&](const auto& entry) { return platform::EqualIgnoringCase(entry.first, name); });
  }

  void DropTable(Place place) {
    database_->TableDefs()->Delete(place->first);
    tables_.erase(place);
  }

  void RenameTable(Place place) {
    const std::u16string name = chance_.Name(u"Tabela");
    const Place taken = FindTable(name);
    const bool free = taken == tables_.end() || taken == place;
    Expect(free ? 0 : platform::kErrTableExists, [&] { TableOf(place->first)->SetName(name); });
    if (!free) return;
    auto node = tables_.extract(place);
    node.key() = name;
    tables_.insert(std::move(node));
  }

  void AddField(Place place) {
    ModelTable& model = place->second;
    const ModelColumn column = chance_.Column();
    if (model.columns.size() > 25) return;
    const bool taken = model.HasColumn(column.name);
    const bool bySql = column.type == dao::dbLong && chance_.OneIn(2);
    Expect(!taken ? 0 : bySql ? platform::kErrFieldExistsInTable : platform::kErrFieldDefinedTwice, [&] {
      if (!bySql) return PutField(*TableOf(place->first), column);
      database_->Execute(u"ALTER TABLE [" + place->first + u"] ADD COLUMN [" + column.name + u"] LONG");
    });
    if (taken) return;
    model.columns.push_back(column);
    const dao::Value initial = column.type == dao::dbBoolean ? dao::Value(false) : dao::Value();
    for (auto& [id, row] : model.rows) row[column.name] = initial;
  }

  // A column that is not Id.
  ModelColumn* SomeColumn(ModelTable& model) {
    return model.columns.size() < 2 ? nullptr : &model.columns[1 + chance_.Below(model.columns.size() - 1)];
  }

  void DropField(Place place) {
    ModelTable& model = place->second;
    const ModelColumn* column = SomeColumn(model);
    if (!column) return;
    const std::u16string name = column->name;
    const bool indexed = model.IsIndexed(name);
    Expect(indexed ? platform::kErrFieldInIndex : 0, [&] { TableOf(place->first)->Fields()->Delete(name); });
    if (indexed) return;
    std::erase_if(model.columns, [&](const ModelColumn& c) { return c.name == name; });
    for (auto& [id, row] : model.rows) row.erase(name);
  }

  void RenameField(Place place) {
    ModelTable& model = place->second;
    ModelColumn* column = SomeColumn(model);
    const std::u16string name = chance_.Name(u"Pole");
    if (!column) return;
    const std::u16string former = column->name;
    const bool taken = model.HasColumn(name) && !platform::EqualIgnoringCase(former, name);
    Expect(taken ? platform::kErrFieldDefinedTwice : 0,
           [&] { TableOf(place->first)->Fields()->Item(former)->SetName(name); });
    if (taken) return;
    column->name = name;
    for (ModelIndex& index : model.indexes) std::replace(index.columns.begin(), index.columns.end(), former, name);
    for (auto& [id, row] : model.rows) {
      auto node = row.extract(former);
      node.key() = name;
      row.insert(std::move(node));
    }
  }

  void AddIndex(Place place) {
    ModelTable& model = place->second;
    ModelIndex index{chance_.Name(u"Indeks"), {}, false};
    if (model.indexes.size() > 6) return;
    for (std::uint32_t i = chance_.Below(3) + 1; i > 0; --i) {
      const ModelColumn* column = SomeColumn(model);
      const bool usable = column && column->type != dao::dbLongBinary &&
                          std::find(index.columns.begin(), index.columns.end(), column->name) == index.columns.end();
      if (usable) index.columns.push_back(column->name);
    }
    if (index.columns.empty()) return;
    const auto first = std::find_if(model.columns.begin(), model.columns.end(),
                                    [&](const ModelColumn& c) { return c.name == index.columns.front(); });
    index.unique = index.columns.size() == 1 && first->type == dao::dbLong && chance_.OneIn(2);
    const bool taken = FindIndex(model, index.name) != model.indexes.end();
    const bool repeats = index.unique && model.Repeats(index.columns.front());
    const std::int32_t expected =
        taken ? platform::kErrIndexExists : repeats ? platform::kErrDuplicateKey : 0;
    const std::int32_t number = ErrorOf([&] { PutIndex(*TableOf(place->first), index); });
    // Rows whose texts together make too long a key have been put in while there was no index.
    const bool tooLong = index.columns.size() > 1 && number == platform::kErrRecordTooLarge;
    EXPECT_EQ(number, tooLong ? number : expected);
    if (number == 0) model.indexes.push_back(index);
  }

  static std::vector<ModelIndex>::iterator FindIndex(ModelTable& model, std::u16string_view name) {
    return std::find_if(model.indexes.begin(), model.indexes.end(),
                        [&](const ModelIndex& index) { return platform::EqualIgnoringCase(index.name, name); });
  }

  void DropOrRenameIndex(Place place) {
    ModelTable& model = place->second;
    if (model.indexes.empty()) return;
    const auto index = model.indexes.begin() + chance_.Below(model.indexes.size());
    const auto list = TableOf(place->first)->Indexes();
    if (chance_.OneIn(2)) {
      list->Delete(index->name);
      model.indexes.erase(index);
      return;
    }
    const std::u16string name = chance_.Name(u"Indeks");
    const auto taken = FindIndex(model, name);
    const bool free = taken == model.indexes.end() || taken == index;
    Expect(free ? 0 : platform::kErrIndexExists, [&] { list->Item(index->name)->SetName(name); });
    if (free) index->name = name;
  }

  void Insert(ModelTable& model, const std::u16string& name) {
    if (model.rows.size() >= kMostRows) return;
    std::map<std::u16string, dao::Value> row;
    const auto rows = database_->OpenRecordset(u"SELECT * FROM [" + name + u"] WHERE Id = 0");
    rows->AddNew();
    for (std::size_t i = 1; i < model.columns.size(); ++i) {
      const ModelColumn& column = model.columns[i];
      row[column.name] = chance_.ValueFor(column);
      rows->Fields()->Item(column.name)->SetValue(row[column.name]);
    }
    const auto place = model.rows.emplace(model.counter + 1, std::move(row)).first;
    const bool refused = model.BreaksAnIndex();
    const std::int32_t number = ErrorOf([&] { rows->Update(); });
    // A key of many long texts has its limit; which texts reach it is the sort order's business.
    const bool tooLong = number == platform::kErrRecordTooLarge;
    EXPECT_EQ(number, tooLong ? number : refused ? platform::kErrDuplicateKey : 0);
    if (number != 0) {
      model.rows.erase(place);
    } else {
      ++model.counter;
    }
  }

  // The table's own last rows once more, without what the numbers in unique indexes forbid.
  void InsertBySql(Place place) {
    ModelTable& model = place->second;
    if (model.rows.size() >= kMostRows || model.columns.size() < 2) return;
    std::u16string names;
    for (std::size_t i = 1; i < model.columns.size(); ++i) {
      names += (i > 1 ? u", [" : u"[") + model.columns[i].name + u"]";
    }
    const std::int32_t from = model.counter - static_cast<std::int32_t>(chance_.Below(5));
    const ModelTable former = model;
    for (const auto& [id, row] : former.rows) {
      if (id >= from) model.rows.emplace(++model.counter, row);
    }
    const bool refused = model.BreaksAnIndex();
    Expect(refused ? platform::kErrDuplicateKey : 0, [&] {
      database_->Execute(u"INSERT INTO [" + place->first + u"] (" + names + u") SELECT " + names + u" FROM [" +
                             place->first + u"] WHERE Id >= " + DecimalText(from) + u" ORDER BY Id",
                         dao::dbFailOnError);
    });
    if (refused) model = former;
  }

  void Edit(Place place) {
    ModelTable& model = place->second;
    if (model.rows.empty()) return;
    const auto found = model.rows.lower_bound(static_cast<std::int32_t>(chance_.Below(
        static_cast<std::size_t>(model.counter) + 1)));
    const auto target = found == model.rows.end() ? model.rows.begin() : found;
    const auto former = target->second;
    const auto rows = database_->OpenRecordset(u"SELECT * FROM [" + place->first + u"] WHERE Id = " +
                                               DecimalText(target->first));
    rows->Edit();
    for (std::uint32_t i = chance_.Below(4); i > 0; --i) {
      const ModelColumn* column = SomeColumn(model);
      if (!column) continue;
      target->second[column->name] = chance_.ValueFor(*column);
      rows->Fields()->Item(column->name)->SetValue(target->second[column->name]);
    }
    const bool refused = model.BreaksAnIndex();
    const std::int32_t number = ErrorOf([&] { rows->Update(); });
    EXPECT_EQ(number, number == platform::kErrRecordTooLarge ? number : refused ? platform::kErrDuplicateKey : 0);
    if (number != 0) target->second = former;
  }

  void DeleteRows(Place place) {
    ModelTable& model = place->second;
    const auto from = static_cast<std::int32_t>(chance_.Below(static_cast<std::size_t>(model.counter) + 1));
    const std::int32_t to = from + static_cast<std::int32_t>(chance_.OneIn(9) ? chance_.Below(60) : chance_.Below(4));
    database_->Execute(u"DELETE FROM [" + place->first + u"] WHERE Id Between " + DecimalText(from) + u" And " +
                           DecimalText(to),
                       dao::dbFailOnError);
    const auto affected = static_cast<std::size_t>(database_->RecordsAffected());
    EXPECT_EQ(std::erase_if(model.rows, [&](const auto& r) { return r.first >= from && r.first <= to; }), affected);
  }

  // A number for some rows: all of them or, where a unique index forbids it, none.
  void UpdateBySql(Place place) {
    ModelTable& model = place->second;
    const ModelColumn* column = SomeColumn(model);
    if (!column || column->type != dao::dbLong) return;
    const std::int32_t number = static_cast<std::int32_t>(chance_.Below(300));
    const std::int32_t from = static_cast<std::int32_t>(chance_.Below(static_cast<std::size_t>(model.counter) + 1));
    const ModelTable former = model;
    for (auto row = model.rows.lower_bound(from); row != model.rows.end(); ++row) row->second[column->name] = number;
    const bool refused = model.BreaksAnIndex();
    Expect(refused ? platform::kErrDuplicateKey : 0, [&] {
      database_->Execute(u"UPDATE [" + place->first + u"] SET [" + column->name + u"] = " + DecimalText(number) +
                             u" WHERE Id >= " + DecimalText(from),
                         dao::dbFailOnError);
    });
    if (refused) model = former;
  }

  void CountBySql(Place place) {
    ModelTable& model = place->second;
    const ModelColumn* column = SomeColumn(model);
    if (!column || column->type != dao::dbLong) return;
    const auto number = static_cast<std::int32_t>(chance_.Below(300));
    const auto rows = database_->OpenRecordset(u"SELECT Id FROM [" + place->first + u"] WHERE [" + column->name +
                                                   u"] < " + DecimalText(number),
                                               dao::dbOpenSnapshot);
    std::size_t counted = 0;
    for (; !rows->EndOfFile(); rows->MoveNext()) ++counted;
    EXPECT_EQ(counted, static_cast<std::size_t>(std::count_if(model.rows.begin(), model.rows.end(), [&](const auto& r) {
                const auto* value = std::get_if<std::int32_t>(&r.second.at(column->name));
                return value && *value < number;
              })));
  }

  // Much work, all of it undone.
  void Undo() {
    if (undoing_) return;
    const ModelTables former = tables_;
    undoing_ = true;
    workspace_->BeginTrans();
    for (int i = 0; i < 15; ++i) Step();
    workspace_->Rollback();
    undoing_ = false;
    tables_ = former;
  }

  void Compare() {
    for (const auto& [name, model] : tables_) {
      SCOPED_TRACE(platform::Utf8FromUtf16(name));
      const auto table = TableOf(name);
      ASSERT_EQ(table->RecordCount(), static_cast<std::int32_t>(model.rows.size()));
      ASSERT_EQ(table->Indexes()->Count(), static_cast<int>(model.indexes.size()) + 1);
      const auto rows = database_->OpenRecordset(u"[" + name + u"]", dao::dbOpenSnapshot);
      ASSERT_EQ(rows->Fields()->Count(), static_cast<int>(model.columns.size()));
      for (; !rows->EndOfFile(); rows->MoveNext()) CompareRow(model, *rows->Fields());
      rows->Close();
    }
  }
  void CompareRow(const ModelTable& model, dao::Collection<dao::Field>& fields) {
    const auto id = std::get<std::int32_t>(fields.Item(u"Id")->Value());
    ASSERT_TRUE(model.rows.contains(id)) << id;
    for (const auto& [column, value] : model.rows.at(id)) {
      ASSERT_TRUE(fields.Item(column)->Value() == value) << id << ' ' << platform::Utf8FromUtf16(column);
    }
  }

  TempFolder folder_;
  FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_ = jet::MakeEngine(*system_.files, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path_ = folder_.PathOf(u"model.mdb");
  std::u16string password_;
  std::shared_ptr<dao::Database> database_;
  Chance chance_;
  ModelTables tables_;
  bool undoing_ = false;
};

class RandomStructure : public ::testing::TestWithParam<bool> {};

}  // namespace

TEST_P(RandomStructure, IsThatOfTheModel) {
  StructureModel model(SeedOfRound(), GetParam());
  const long batches = NumberFrom("ZIMBRAT_STEPS", 6'000) / kStepsOfABatch;
  for (long i = 0; i < batches && !HasFailure(); ++i) model.Batch();
  TellCounts({{"operations", static_cast<std::uint64_t>(batches * kStepsOfABatch)}});
}

INSTANTIATE_TEST_SUITE_P(Files, RandomStructure, ::testing::Bool(),
                         [](const auto& param) { return param.param ? "Encoded" : "Plain"; });

}  // namespace zimbrat::tests

// Random work on a database against a model; after each batch the checker and a comparison of every row.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <random>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

using platform::DecimalText;

namespace {

// 32 bits of any library's generator.
std::uint32_t Draw(std::mt19937& random) { return static_cast<std::uint32_t>(random()); }

struct ModelRow {
  std::u16string name;
  std::int32_t number = 0;
  std::u16string memo;
};

class Model {
 public:
  Model(std::uint32_t seed, bool encode) : random_(seed) {
    path_ = folder_.PathOf(u"model.mdb");
    database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, encode ? dao::dbEncrypt : 0);
    MakeTable(u"Ojciec", false);
    MakeTable(u"Syn", true);
    auto relation = database_->CreateRelation(u"OjciecSyn", u"Ojciec", u"Syn", std::int32_t{4096});
    relation->Fields()->Append(relation->CreateField(u"Id"));
    relation->Fields()->Item(u"Id")->SetForeignName(u"Liczba");
    database_->Relations()->Append(relation);
  }

  void Batch(int steps) {
    for (int i = 0; i < steps; ++i) Step();
  }

  void Check() {
    Reopen();
    Compare(u"Ojciec", fathers_);
    Compare(u"Syn", sons_);
    database_->Close();
    for (const Fault& fault : CheckFile(*system_.files, path_, {})) {
      ADD_FAILURE() << platform::Utf8FromUtf16(fault.place) << ": " << platform::Utf8FromUtf16(fault.text);
    }
    Open();
  }

 private:
  void MakeTable(std::u16string_view name, bool son) {
    auto table = database_->CreateTableDef(name);
    const auto add = [&](std::u16string_view field, int type, int size, int attributes) {
      auto f = table->CreateField(field, std::int32_t{type}, std::int32_t{size});
      table->Fields()->Append(f);
      f->SetAttributes(attributes);
    };
    add(u"Id", dao::dbLong, 4, 17);
    add(u"Nazwa", dao::dbText, 255, 2);
    add(u"Liczba", dao::dbLong, 4, 1);
    add(u"Nota", dao::dbMemo, 0, 2);
    const auto index = [&](std::u16string_view indexName, std::vector<std::u16string_view> fields, bool primary) {
      auto i = table->CreateIndex(indexName);
      i->SetPrimary(primary);
      for (const auto field : fields) i->Fields()->Append(i->CreateField(field));
      table->Indexes()->Append(i);
    };
    index(u"PK", {u"Id"}, true);
    index(u"NazwaLiczba", {u"Nazwa", u"Liczba"}, false);
    if (son) index(u"Nota", {u"Nota"}, false);
    database_->TableDefs()->Append(table);
  }

  void Open() { database_ = workspace_->OpenDatabase(path_, true, false, u""); }
  void Reopen() {
    database_->Close();
    Open();
  }

  std::u16string RandomText(std::size_t most) {
    constexpr std::u16string_view letters = u"aąbcćdeę łńoóśźżÄß-'漢\u3042xyz0189";
    std::u16string text(Draw(random_) % most + 1, u'x');
    const std::size_t kinds = Draw(random_) % 3 == 0 ? 3 : letters.size();
    for (char16_t& c : text) c = letters[Draw(random_) % kinds];
    if (text.front() == u' ') text.front() = u'a';
    return text;
  }
  std::u16string RandomMemo() {
    switch (Draw(random_) % 12) {
      case 0: return RandomText(9'000);
      case 1: return RandomText(2'100);
      case 2: return {};
      default: return RandomText(60);
    }
  }
  std::int32_t RandomFather() {
    auto place = fathers_.lower_bound(static_cast<std::int32_t>(Draw(random_) % (counters_[0] + 1)));
    return place == fathers_.end() ? fathers_.begin()->first : place->first;
  }

  void Step() {
    const std::uint32_t dice = Draw(random_) % 100;
    const bool son = Draw(random_) % 2 == 0 && !fathers_.empty();
    if (dice < 55) return Insert(son);
    if (dice < 85) return Update(son);
    if (dice < 99) return Delete(son);
    Undo();
  }

  void Put(dao::Recordset& rows, const ModelRow& row) {
    rows.Fields()->Item(u"Nazwa")->SetValue(row.name);
    rows.Fields()->Item(u"Liczba")->SetValue(row.number);
    rows.Fields()->Item(u"Nota")->SetValue(row.memo.empty() ? dao::Value() : dao::Value(row.memo));
    rows.Update();
  }

  ModelRow RandomRow(bool son) {
    return {RandomText(Draw(random_) % 8 == 0 ? 255 : 30),
            son ? RandomFather() : static_cast<std::int32_t>(Draw(random_)), RandomMemo()};
  }

  void Insert(bool son) {
    const ModelRow row = RandomRow(son);
    auto rows = database_->OpenRecordset(u"SELECT * FROM " + std::u16string(son ? u"Syn" : u"Ojciec") +
                                         u" WHERE Id = 0");
    rows->AddNew();
    Put(*rows, row);
    (son ? sons_ : fathers_)[++counters_[son ? 1 : 0]] = row;
  }

  std::shared_ptr<dao::Recordset> RandomExisting(bool son, std::int32_t& id) {
    std::map<std::int32_t, ModelRow>& model = son ? sons_ : fathers_;
    if (model.empty()) return nullptr;
    auto place = model.lower_bound(static_cast<std::int32_t>(Draw(random_) % (counters_[son ? 1 : 0] + 1)));
    id = (place == model.end() ? model.begin() : place)->first;
    return database_->OpenRecordset(u"SELECT * FROM " + std::u16string(son ? u"Syn" : u"Ojciec") +
                                    u" WHERE Id = " + DecimalText(id));
  }

  void Update(bool son) {
    std::int32_t id = 0;
    const auto rows = RandomExisting(son, id);
    if (!rows) return;
    const ModelRow row = RandomRow(son);
    rows->Edit();
    Put(*rows, row);
    (son ? sons_ : fathers_)[id] = row;
  }

  void Delete(bool son) {
    std::int32_t id = 0;
    const auto rows = RandomExisting(son, id);
    if (!rows) return;
    rows->Delete();
    (son ? sons_ : fathers_).erase(id);
    if (!son) std::erase_if(sons_, [&](const auto& entry) { return entry.second.number == id; });
  }

  // Much work, all of it undone.
  void Undo() {
    const auto fathers = fathers_;
    const auto sons = sons_;
    const auto counters = counters_;
    workspace_->BeginTrans();
    for (int i = 0; i < 20; ++i) {
      const bool son = Draw(random_) % 2 == 0 && !fathers_.empty();
      Draw(random_) % 2 == 0 ? Insert(son) : Delete(son);
    }
    workspace_->Rollback();
    fathers_ = fathers;
    sons_ = sons;
    counters_ = counters;
  }

  void Compare(std::u16string_view table, std::map<std::int32_t, ModelRow> model) {
    auto rows = database_->OpenRecordset(table, dao::dbOpenSnapshot);
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      const auto id = std::get<std::int32_t>(rows->Fields()->Item(u"Id")->Value());
      ASSERT_TRUE(model.contains(id)) << id;
      const dao::Value memo = rows->Fields()->Item(u"Nota")->Value();
      EXPECT_TRUE(rows->Fields()->Item(u"Nazwa")->Value() == dao::Value(model[id].name)) << id;
      EXPECT_TRUE(rows->Fields()->Item(u"Liczba")->Value() == dao::Value(model[id].number)) << id;
      EXPECT_TRUE(dao::IsNull(memo) ? model[id].memo.empty() : memo == dao::Value(model[id].memo)) << id;
      model.erase(id);
    }
    EXPECT_TRUE(model.empty()) << model.size() << " rows are missing";
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_ = MakeEngine(*system_.files, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path_;
  std::shared_ptr<dao::Database> database_;
  std::mt19937 random_;
  std::map<std::int32_t, ModelRow> fathers_, sons_;
  std::array<std::uint32_t, 2> counters_{};
};

}  // namespace

class RandomWork : public ::testing::TestWithParam<bool> {};

TEST_P(RandomWork, LeavesTheRowsOfTheModel) {
  const char* given = std::getenv("ZIMBRAT_SEED");
  const std::uint32_t seed = given ? static_cast<std::uint32_t>(std::atoi(given)) : std::random_device{}();
  std::cout << "ZIMBRAT_SEED=" << seed << '\n';
  Model model(seed, GetParam());
  for (int batch = 0; batch < 4 && !::testing::Test::HasFailure(); ++batch) {
    model.Batch(150);
    model.Check();
  }
}

INSTANTIATE_TEST_SUITE_P(Files, RandomWork, ::testing::Bool(),
                         [](const auto& param) { return param.param ? "Encoded" : "Plain"; });

}  // namespace zimbrat::jet

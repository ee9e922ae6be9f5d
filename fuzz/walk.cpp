#include "walk.h"

#include <memory>
#include <string>
#include <vector>

#include "base_databases.h"
#include "jet/engine.h"
#include "outcome.h"
#include "platform/dao.h"

namespace zimbrat::fuzz {

namespace {

// A damaged chain may bring the same rows again and again; these are more than any base has.
constexpr int kMostRows = 2000;

template <class T>
std::vector<std::shared_ptr<T>> AllOf(dao::Collection<T>& collection) {
  std::vector<std::shared_ptr<T>> all;
  Attempt([&] {
    for (int i = 0; i < collection.Count(); ++i) all.push_back(collection.Item(i));
  });
  return all;
}

class Walk {
 public:
  explicit Walk(dao::Database& database) : database_(database) {}

  void Run() {
    for (const auto& table : AllOf(*database_.TableDefs())) {
      Attempt([&] { Describe(*table); });
      const std::u16string name = u"[" + table->Name() + u"]";
      Attempt([&] { ReadRows(name); });
      for (const auto& index : AllOf(*table->Indexes())) Attempt([&] { ReadInOrder(*table, name, *index); });
      Attempt([&] { ChangeRows(name); });
    }
    for (const auto& relation : AllOf(*database_.Relations())) Attempt([&] { Describe(*relation); });
  }

 private:
  static void Describe(dao::TableDef& table) {
    table.Attributes();
    table.RecordCount();
    for (const auto& field : AllOf(*table.Fields())) {
      field->Size();
      field->Attributes();
      field->Required();
      field->AllowZeroLength();
      field->DefaultValue();
      field->ValidationRule();
      field->ValidationText();
    }
    for (const auto& index : AllOf(*table.Indexes())) AllOf(*index->Fields());
  }
  static void Describe(dao::Relation& relation) {
    relation.Table();
    relation.ForeignTable();
    relation.Attributes();
    for (const auto& field : AllOf(*relation.Fields())) field->ForeignName();
  }

  void ReadRows(const std::u16string& source) {
    const auto rows = database_.OpenRecordset(source, dao::dbOpenSnapshot);
    const auto fields = AllOf(*rows->Fields());
    for (int count = 0; !rows->EndOfFile() && count < kMostRows; rows->MoveNext(), ++count) {
      for (const auto& field : fields) Attempt([&] { field->Value(); });
    }
    rows->Close();
  }

  // A condition on its first field makes the engine go through the index.
  void ReadInOrder(dao::TableDef& table, const std::u16string& name, dao::Index& index) {
    const auto fields = AllOf(*index.Fields());
    if (fields.empty()) return;
    const std::u16string field = u"[" + fields[0]->Name() + u"]";
    const std::int16_t type = table.Fields()->Item(fields[0]->Name())->Type();
    const std::u16string_view least = type == dao::dbText ? u"'a'" : u"2";
    ReadRows(u"SELECT " + field + u" FROM " + name + u" WHERE " + field + u" >= " + std::u16string(least));
  }

  void ChangeRows(const std::u16string& table) {
    const auto rows = database_.OpenRecordset(table, dao::dbOpenDynaset);
    Attempt([&] {
      rows->AddNew();
      rows->Update();
    });
    Attempt([&] {
      if (rows->EndOfFile()) return;
      rows->Edit();
      const auto last = rows->Fields()->Item(rows->Fields()->Count() - 1);
      last->SetValue(last->Value());
      rows->Update();
    });
    Attempt([&] {
      if (!rows->EndOfFile()) rows->Delete();
    });
    rows->Close();
  }

  dao::Database& database_;
};

}  // namespace

void WalkDatabase(platform::Files& files, tests::FakeClock& clock) {
  const auto engine = jet::MakeEngine(files, clock, {});
  const auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  Attempt([&] {
    const auto database = workspace->OpenDatabase(kDatabasePath, true, false, kConnect);
    Walk(*database).Run();
    database->Close();
  });
}

}  // namespace zimbrat::fuzz

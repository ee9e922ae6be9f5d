#include "walk.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base_databases.h"
#include "jet/engine.h"
#include "outcome.h"
#include "platform/dao.h"
#include "platform/error_numbers.h"

namespace zimbrat::fuzz {

namespace {

// A damaged chain may bring the same rows again and again; these are more than any base has.
constexpr int kMostRows = 2000;

class Walk {
 public:
  explicit Walk(dao::Workspace& workspace) : workspace_(workspace) {}

  bool Run() {
    Try([&] {
      database_ = workspace_.OpenDatabase(kDatabasePath, true, false, kConnect);
      LookAtAll();
      database_->Close();
    });
    return hasMetDamage_;
  }

 private:
  void Try(const std::function<void()>& work) {
    hasMetDamage_ |= ErrorOf(work) == platform::kErrCannotOpenDatabase;
  }
  template <class T>
  std::vector<std::shared_ptr<T>> AllOf(dao::Collection<T>& collection) {
    std::vector<std::shared_ptr<T>> all;
    Try([&] {
      for (int i = 0; i < collection.Count(); ++i) all.push_back(collection.Item(i));
    });
    return all;
  }

  void LookAtAll() {
    for (const auto& table : AllOf(*database_->TableDefs())) {
      Try([&] { Describe(*table); });
      const std::u16string name = u"[" + table->Name() + u"]";
      Try([&] { ReadRows(name); });
      for (const auto& index : AllOf(*table->Indexes())) Try([&] { ReadInOrder(*table, name, *index); });
      Try([&] { ChangeRows(name); });
    }
    for (const auto& relation : AllOf(*database_->Relations())) Try([&] { Describe(*relation); });
  }
  void Describe(dao::TableDef& table) {
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
  void Describe(dao::Relation& relation) {
    relation.Table();
    relation.ForeignTable();
    relation.Attributes();
    for (const auto& field : AllOf(*relation.Fields())) field->ForeignName();
  }

  void ReadRows(const std::u16string& source) {
    const auto rows = database_->OpenRecordset(source, dao::dbOpenSnapshot);
    const auto fields = AllOf(*rows->Fields());
    for (int count = 0; !rows->EndOfFile() && count < kMostRows; rows->MoveNext(), ++count) {
      for (const auto& field : fields) Try([&] { field->Value(); });
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
    const auto rows = database_->OpenRecordset(table, dao::dbOpenDynaset);
    Try([&] {
      rows->AddNew();
      rows->Update();
    });
    Try([&] {
      if (rows->EndOfFile()) return;
      rows->Edit();
      const auto last = rows->Fields()->Item(rows->Fields()->Count() - 1);
      last->SetValue(last->Value());
      rows->Update();
    });
    Try([&] {
      if (!rows->EndOfFile()) rows->Delete();
    });
    rows->Close();
  }

  dao::Workspace& workspace_;
  std::shared_ptr<dao::Database> database_;
  bool hasMetDamage_ = false;
};

}  // namespace

bool WalkDatabase(platform::Files& files, tests::FakeClock& clock) {
  const auto workspace = jet::MakeEngine(files, clock, {})->CreateWorkspace(u"", u"Admin", u"");
  return Walk(*workspace).Run();
}

}  // namespace zimbrat::fuzz

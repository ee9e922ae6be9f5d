// Databases that Access made, changed in every way and looked at again: what was not meant is as it was.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "jet/catalog/properties.h"
#include "jet/check/check.h"
#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

using tests::ErrorOf;

namespace {

using Row = std::map<std::u16string, dao::Value>;
using Tables = std::map<std::u16string, std::vector<Row>>;

bool IsUserTable(dao::TableDef& table) {
  return table.Updatable() && (table.Attributes() & (dao::dbSystemObject | dao::dbHiddenObject)) == 0;
}

class AccessChanges : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (!tests::HasAccessFiles()) GTEST_SKIP() << "no fixtures";
    path_ = folder_.PathOf(u"kopia.mdb");
    std::filesystem::copy_file(tests::AccessFile(GetParam()), path_);
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
    Open();
    before_ = ReadAll();
  }
  void Open() {
    database_ = workspace_->OpenDatabase(path_, true, false, u";pwd=password;");
    for (int i = 0; i < database_->TableDefs()->Count(); ++i) {
      const auto table = database_->TableDefs()->Item(i);
      if (tables_.size() < 50 && IsUserTable(*table) && !Contains(table->Name())) tables_.push_back(table->Name());
    }
  }
  bool Contains(std::u16string_view name) { return std::find(tables_.begin(), tables_.end(), name) != tables_.end(); }

  Tables ReadAll() {
    Tables all;
    for (int i = 0; i < database_->TableDefs()->Count(); ++i) {
      const auto table = database_->TableDefs()->Item(i);
      if (table->Updatable()) all[table->Name()] = ReadTable(table->Name());
    }
    return all;
  }
  std::vector<Row> ReadTable(const std::u16string& name) {
    std::vector<Row> rows;
    const auto records = database_->OpenRecordset(u"[" + name + u"]", dao::dbOpenSnapshot);
    const auto fields = records->Fields();
    for (; !records->EndOfFile(); records->MoveNext()) {
      Row& row = rows.emplace_back();
      for (int i = 0; i < fields->Count(); ++i) row[fields->Item(i)->Name()] = fields->Item(i)->Value();
    }
    records->Close();
    return rows;
  }

  void CheckAndReopen() {
    database_->Close();
    for (const Fault& fault : CheckFile(*system_.files, path_)) {
      ADD_FAILURE() << platform::Utf8FromUtf16(fault.place) << ": " << platform::Utf8FromUtf16(fault.text);
    }
    Open();
  }

  // Every row of before is there, its old columns equal; what is left over are rows that the test added.
  void ExpectKept(const Tables& now, const std::map<std::u16string, std::size_t>& added) {
    for (const auto& [name, rows] : before_) {
      SCOPED_TRACE(platform::Utf8FromUtf16(name));
      ASSERT_TRUE(now.contains(name));
      std::vector<Row> left = now.at(name);
      for (const Row& row : rows) {
        const auto found = std::find_if(left.begin(), left.end(), [&](const Row& other) {
          return std::all_of(row.begin(), row.end(), [&](const auto& field) {
            return IsFreeToChange(name, row, field.first) || other.at(field.first) == field.second;
          });
        });
        ASSERT_NE(found, left.end());
        left.erase(found);
      }
      const auto expected = added.find(name);
      EXPECT_EQ(left.size(), expected == added.end() ? 0 : expected->second);
    }
  }
  // A changed table has another date and more properties.
  bool IsFreeToChange(const std::u16string& table, const Row& row, const std::u16string& column) {
    if (table != u"MSysObjects" || (column != u"DateUpdate" && column != u"LvProp")) return false;
    const auto* name = std::get_if<std::u16string>(&row.at(u"Name"));
    return name && Contains(*name) && row.at(u"Type") == dao::Value(std::int16_t{1});
  }

  void AddFieldAndIndexes(const std::u16string& name) {
    const auto table = database_->TableDefs()->Item(name);
    for (const auto& [field, type] : {std::pair(u"Dodane", dao::dbText), std::pair(u"Nota dodana", dao::dbMemo)}) {
      table->Fields()->Append(table->CreateField(field, std::int32_t{type}, std::int32_t{0}));
    }
    const auto first = table->Fields()->Item(0)->Name();
    for (const auto& [index, field] : {std::pair(u"NaDodane", std::u16string(u"Dodane")), std::pair(u"NaPierwsze", first)}) {
      const auto made = table->CreateIndex(index);
      const auto part = made->CreateField(field);
      part->SetAttributes(dao::dbDescending);
      made->Fields()->Append(part);
      table->Indexes()->Append(made);
    }
  }

  // A value for every key and every required field; what refers to other tables as in the first row.
  void FillRow(const std::u16string& name, dao::Recordset& rows, int number) {
    const auto table = database_->TableDefs()->Item(name);
    for (int i = 0; i < table->Fields()->Count(); ++i) {
      const auto field = table->Fields()->Item(i);
      const bool isNumber = field->Type() >= dao::dbInteger && field->Type() <= dao::dbDate;
      const bool isCounter = (field->Attributes() & dao::dbAutoIncrField) != 0;
      const auto target = rows.Fields()->Item(field->Name());
      if (IsForeign(*table, field->Name())) {
        target->SetValue(before_[name].front().at(field->Name()));
      } else if (isNumber && !isCounter) {
        target->SetValue(std::int32_t{20000 + number});
      } else if (field->Type() == dao::dbText) {
        const std::u16string text = platform::DecimalText(20000 + number);
        target->SetValue(text.substr(text.size() - std::min<std::size_t>(5, static_cast<std::size_t>(field->Size()))));
      }
    }
    rows.Fields()->Item(u"Dodane")->SetValue(u"Zażółć " + platform::DecimalText(number));
  }
  static bool IsForeign(dao::TableDef& table, const std::u16string& field) {
    for (int i = 0; i < table.Indexes()->Count(); ++i) {
      const auto index = table.Indexes()->Item(i);
      for (int k = 0; index->Foreign() && k < index->Fields()->Count(); ++k) {
        if (index->Fields()->Item(k)->Name() == field) return true;
      }
    }
    return false;
  }

  // Rows that the table's own rules refuse are not added.
  std::size_t AddEditAndDelete(const std::u16string& name) {
    std::size_t added = 0;
    const auto rows = database_->OpenRecordset(u"[" + name + u"]");
    for (int i = 0; i < 40; ++i) {
      rows->AddNew();
      FillRow(name, *rows, i);
      if (ErrorOf([&] { rows->Update(); }) == 0) {
        ++added;
      } else {
        rows->CancelUpdate();
      }
    }
    rows->Close();
    const auto mine = database_->OpenRecordset(u"SELECT * FROM [" + name + u"] WHERE Dodane Is Not Null");
    for (std::size_t i = 0; !mine->EndOfFile(); mine->MoveNext(), ++i) {
      if (i % 3 == 0) {
        mine->Delete();
        --added;
        continue;
      }
      mine->Edit();
      mine->Fields()->Item(u"Nota dodana")->SetValue(std::u16string(i * 331, u'ł'));
      mine->Update();
    }
    mine->Close();
    return added;
  }

  void GrowOldRows(const std::u16string& name) {
    const auto rows = database_->OpenRecordset(u"[" + name + u"]");
    for (std::size_t i = 0; !rows->EndOfFile(); rows->MoveNext(), ++i) {
      rows->Edit();
      rows->Fields()->Item(u"Nota dodana")->SetValue(std::u16string(30 + i % 7 * 900, u'ń'));
      rows->Fields()->Item(u"Dodane")->SetValue(std::u16string(200, u'd'));
      if (ErrorOf([&] { rows->Update(); }) != 0) rows->CancelUpdate();
    }
    rows->Close();
  }

  void RenameThereAndBack(const std::u16string& name) {
    const auto table = database_->TableDefs()->Item(name);
    const auto field = table->Fields()->Item(0);
    const std::u16string former = field->Name();
    table->SetName(u"Inna " + name.substr(0, 40));
    field->SetName(u"Inne pole");
    table->Indexes()->Item(u"NaPierwsze")->SetName(u"A zmieniony");
    CheckAndReopen();
    const auto again = database_->TableDefs()->Item(u"Inna " + name.substr(0, 40));
    again->Fields()->Item(u"Inne pole")->SetName(former);
    again->SetName(name);
    again->Indexes()->Delete(u"A zmieniony");
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Workspace> workspace_ =
      MakeEngine(*system_.files, clock_, {})->CreateWorkspace(u"", u"Admin", u"");
  std::u16string path_;
  std::shared_ptr<dao::Database> database_;
  std::vector<std::u16string> tables_;
  Tables before_;
};

class AccessProperties : public AccessChanges {};

}  // namespace

TEST_P(AccessChanges, LeaveAllElseAsItWas) {
  std::map<std::u16string, std::size_t> added;
  for (const std::u16string& name : std::vector(tables_)) {
    SCOPED_TRACE(platform::Utf8FromUtf16(name));
    AddFieldAndIndexes(name);
    added[name] = AddEditAndDelete(name);
    EXPECT_EQ(added[name], 26u);
    GrowOldRows(name);
    CheckAndReopen();
    RenameThereAndBack(name);
  }
  CheckAndReopen();
  ExpectKept(ReadAll(), added);
}

TEST_P(AccessChanges, TablesGoAndTheRestStays) {
  for (int i = database_->Relations()->Count() - 1; i >= 0; --i) {
    const auto relation = database_->Relations()->Item(i);
    if (!Contains(relation->Table())) continue;
    EXPECT_EQ(ErrorOf([&] { database_->TableDefs()->Delete(relation->Table()); }), platform::kErrUsedInRelation);
    database_->Relations()->Delete(relation->Name());
  }
  CheckAndReopen();
  for (const std::u16string& name : tables_) database_->TableDefs()->Delete(name);
  CheckAndReopen();
  const Tables now = ReadAll();
  for (const auto& [name, rows] : before_) {
    if (name.starts_with(u"MSysAccess") || name == u"MSysQueries") {
      EXPECT_EQ(now.at(name), rows);
    }
  }
  for (const std::u16string& name : tables_) EXPECT_FALSE(now.contains(name));
}

// Widths of columns and the like, which this engine does not know.
TEST_P(AccessProperties, SurviveAnotherTypeOfTheColumn) {
  const auto read = [&] {
    const auto rows = database_->OpenRecordset(u"SELECT LvProp FROM MSysObjects WHERE Name = 'TableUnique1_temp'");
    return PropertyBlob::Decode(std::get<std::vector<std::byte>>(rows->Fields()->Item(0)->Value()));
  };
  const PropertyBlob before = read();
  for (const std::u16string_view type : {u"MEMO", u"TEXT(77)"}) {
    database_->Execute(u"ALTER TABLE TableUnique1_temp ALTER COLUMN data " + std::u16string(type), 0);
    EXPECT_TRUE(read() == before);
  }
  CheckAndReopen();
}

INSTANTIATE_TEST_SUITE_P(Files, AccessProperties, ::testing::Values("properties.mdb"));
INSTANTIATE_TEST_SUITE_P(Files, AccessChanges, ::testing::ValuesIn(tests::SoundAccessNames()),
                         [](const auto& file) { return tests::TestNameOf(file.param); });

}  // namespace zimbrat::jet

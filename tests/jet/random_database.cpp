#include "random_database.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "jet/repair.h"
#include "platform/text.h"
#include "tests/support/error_of.h"

namespace zimbrat::tests {

RandomDatabase::RandomDatabase(std::uint32_t seed, bool encode)
    : engine_(jet::MakeEngine(*system_.files, clock_, {})),
      workspace_(engine_->CreateWorkspace(u"", u"Admin", u"")),
      chance_(seed) {
  database_ = workspace_->CreateDatabase(path_, dao::dbLangGeneral, encode ? dao::dbEncrypt : 0);
}

void RandomDatabase::Batch(int operations) {
  const std::uint64_t end = operations_ + static_cast<std::uint64_t>(operations);
  while (operations_ < end && !::testing::Test::HasFailure()) {
    if (Step()) ++operations_;
  }
  Compare();
  database_->Close();
  if (chance_.OneIn(6)) Rebuild();
  CheckFile();
  Open();
  Compare();
}

void RandomDatabase::Rebuild() {
  ++operations_;
  jet::RepairDatabaseFile(*system_.files, clock_, path_);
}

void RandomDatabase::CheckFile() {
  for (const jet::Fault& fault : jet::CheckFile(*system_.files, path_)) {
    ADD_FAILURE() << platform::Utf8FromUtf16(fault.place) << ": " << platform::Utf8FromUtf16(fault.text);
  }
}

void RandomDatabase::Open() {
  ++operations_;
  database_ = workspace_->OpenDatabase(path_, true, false, u";pwd=" + password_ + u";");
  if (chance_.OneIn(4)) ChangePassword();
}

void RandomDatabase::ChangePassword() {
  ++operations_;
  const std::u16string former = password_;
  password_ = chance_.OneIn(3) ? u"" : chance_.Text(20);
  std::erase(password_, u';');
  database_->NewPassword(former, password_);
}

bool RandomDatabase::Step() {
  if (model_.tables.empty()) return CreateTable();
  const std::uint32_t dice = chance_.Below(1000);
  if (dice < 150) return StepOnStructure(SomeTable());
  if (dice < 985) return StepOnRows(SomeTable());
  return Transact();
}

bool RandomDatabase::StepOnStructure(Place place) {
  const std::uint32_t dice = chance_.Below(150);
  if (dice < 10) return CreateTable();
  if (dice < 14) return DropTable(place);
  if (dice < 24) return RenameTable(place);
  if (dice < 47) return AddField(place);
  if (dice < 62) return DropField(place);
  if (dice < 77) return RenameField(place);
  if (dice < 100) return AddIndex(place);
  if (dice < 112) return DropIndex(place);
  if (dice < 120) return RenameIndex(place);
  if (dice < 140) return AddRelation();
  return DropRelation();
}

bool RandomDatabase::StepOnRows(Place place) {
  const std::uint32_t dice = chance_.Below(850);
  if (dice < 380) return Insert(place);
  if (dice < 410) return InsertWithCounter(place);
  if (dice < 440) return InsertCopies(place);
  if (dice < 620) return Edit(place);
  if (dice < 660) return DeleteOne(place);
  if (dice < 710) return DeleteRange(place);
  if (dice < 755) return UpdateNumbers(place);
  if (dice < 780) return UpdateTexts(place);
  if (dice < 805) return CountNumbers(place);
  if (dice < 830) return FindWords(place);
  return ReadSorted(place);
}

// Much work, all of it kept or undone.
bool RandomDatabase::Transact() {
  constexpr int kDeepest = 3;
  if (depth_ == kDeepest) return false;
  const bool isKept = chance_.OneIn(3);
  const ModelDatabase former = isKept ? ModelDatabase() : model_;
  ++depth_;
  workspace_->BeginTrans();
  for (int i = 0; i < 15; ++i) {
    if (Step()) ++operations_;
  }
  if (isKept) {
    workspace_->CommitTrans();
  } else {
    workspace_->Rollback();
    model_ = former;
  }
  --depth_;
  return true;
}

RandomDatabase::Place RandomDatabase::SomeTable() {
  Place place = model_.tables.begin();
  std::advance(place, chance_.Below(model_.tables.size()));
  return place;
}

ModelColumn* RandomDatabase::SomeColumn(ModelTable& table) {
  return table.columns.size() < 2 ? nullptr : &table.columns[1 + chance_.Below(table.columns.size() - 1)];
}

ModelColumn* RandomDatabase::SomeColumnOf(ModelTable& table, std::int16_t type) {
  std::vector<ModelColumn*> found;
  for (std::size_t i = 1; i < table.columns.size(); ++i) {
    if (table.columns[i].type == type) found.push_back(&table.columns[i]);
  }
  return found.empty() ? nullptr : found[chance_.Below(found.size())];
}

std::map<std::int32_t, ModelRow>::iterator RandomDatabase::SomeRow(ModelTable& table) {
  if (table.rows.empty()) return table.rows.end();
  auto place = table.rows.begin();
  std::advance(place, chance_.Below(table.rows.size()));
  return place;
}

bool RandomDatabase::Expect(const std::set<std::int32_t>& expected, const std::function<void()>& work) {
  const std::int32_t number = ErrorOf(work);
  EXPECT_TRUE(expected.contains(number)) << number << " came, " << *expected.begin() << " was expected";
  return number == 0;
}

bool RandomDatabase::Settle(ModelChange& change, const std::function<void()>& work) {
  const std::int32_t number = ErrorOf(work);
  EXPECT_TRUE(change.IsPossible(number)) << number << " came, expected" << change.Expected();
  if (number != 0) change.TakeBack();
  return number == 0;
}

void RandomDatabase::Execute(const std::u16string& statement) {
  SCOPED_TRACE(platform::Utf8FromUtf16(statement).substr(0, 300));
  database_->Execute(statement, dao::dbFailOnError);
}

}  // namespace zimbrat::tests

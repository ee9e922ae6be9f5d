// A database and its model under the same random operations: tables, fields, indexes and relations come, go and are
// renamed, rows are stored through recordsets and SQL, transactions are kept or undone, the file is closed, given a
// password, rebuilt. Each operation must have the outcome that the model foresees.
#pragma once

#include <functional>
#include <memory>

#include "chance.h"
#include "platform/system.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {

class RandomDatabase {
 public:
  RandomDatabase(std::uint32_t seed, bool encode);

  // Some operations, then a comparison of everything, the checker, and the comparison once more.
  void Batch(int operations);
  // Those that came to the database.
  std::uint64_t Operations() const { return operations_; }

 private:
  using Place = std::map<std::u16string, ModelTable>::iterator;

  // Each returns whether there was something to do.
  bool Step();
  bool StepOnStructure(Place place);
  bool StepOnRows(Place place);
  bool Transact();

  bool CreateTable();
  bool DropTable(Place place);
  bool RenameTable(Place place);
  bool AddField(Place place);
  bool DropField(Place place);
  bool RenameField(Place place);
  bool AddIndex(Place place);
  bool DropIndex(Place place);
  bool RenameIndex(Place place);
  bool AddRelation();
  bool DropRelation();

  bool Insert(Place place);
  bool InsertWithCounter(Place place);
  bool InsertCopies(Place place);
  bool Edit(Place place);
  bool DeleteOne(Place place);
  bool DeleteRange(Place place);
  bool UpdateNumbers(Place place);
  bool UpdateTexts(Place place);
  bool CountNumbers(Place place);
  bool FindWords(Place place);
  bool ReadSorted(Place place);

  void Open();
  void ChangePassword();
  void Rebuild();
  void CheckFile();

  void Compare();
  void CompareStructure(const std::u16string& name, const ModelTable& model);
  void CompareIndexes(const std::u16string& name, const ModelTable& model);
  void CompareRelations();
  void CompareRows(const std::u16string& name, const ModelTable& model);

  Place SomeTable();
  // A column other than Id; null when there is none.
  ModelColumn* SomeColumn(ModelTable& table);
  ModelColumn* SomeColumnOf(ModelTable& table, std::int16_t type);
  std::map<std::int32_t, ModelRow>::iterator SomeRow(ModelTable& table);
  // Mostly one that a relation allows.
  dao::Value ValueIn(const std::u16string& table, const ModelColumn& column);
  std::optional<ModelColumn> ChildColumn(Place child);

  std::shared_ptr<dao::TableDef> TableOf(const std::u16string& name) { return database_->TableDefs()->Item(name); }
  void PutField(dao::TableDef& table, const ModelColumn& column);
  void PutIndex(dao::TableDef& table, const ModelIndex& index);
  void PutRelation(const ModelRelation& relation);
  // Does `work`, whose error must be among those expected; 0 is success. Returns whether it succeeded.
  bool Expect(const std::set<std::int32_t>& expected, const std::function<void()>& work);
  // Does `work`, which must end as the change may; a refused change is taken back. Returns whether it succeeded.
  bool Settle(ModelChange& change, const std::function<void()>& work);
  void Execute(const std::u16string& statement);

  TempFolder folder_;
  FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_;
  std::shared_ptr<dao::Workspace> workspace_;
  std::u16string path_ = folder_.PathOf(u"model.mdb");
  std::u16string password_;
  std::shared_ptr<dao::Database> database_;
  Chance chance_;
  ModelDatabase model_;
  int depth_ = 0;  // of transactions
  std::uint64_t operations_ = 0;
};

}  // namespace zimbrat::tests

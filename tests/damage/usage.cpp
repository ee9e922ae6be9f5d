#include "usage.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "jet/engine.h"
#include "platform/run_time_error.h"
#include "recipe.h"

namespace zimbrat::tests {

namespace {

void Describe(dao::TableDef& table) {
  for (int i = 0; i < table.Fields()->Count(); ++i) table.Fields()->Item(i)->DefaultValue();
  for (int i = 0; i < table.Indexes()->Count(); ++i) table.Indexes()->Item(i)->Fields()->Count();
}

void ReadRows(dao::Database& database, const std::u16string& name) {
  const auto rows = database.OpenRecordset(u"[" + name + u"]", dao::dbOpenSnapshot);
  const auto fields = rows->Fields();
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    for (int i = 0; i < fields->Count(); ++i) Try([&] { fields->Item(i)->Value(); });
  }
}

void ChangeRows(dao::Database& database, const std::u16string& name) {
  const auto rows = database.OpenRecordset(u"[" + name + u"]");
  Try([&] {
    rows->AddNew();
    rows->Update();
  });
  Try([&] {
    if (!rows->EndOfFile()) rows->Delete();
  });
}

void UseTables(dao::Database& database) {
  std::vector<std::shared_ptr<dao::TableDef>> tables;
  Try([&] {
    for (int i = 0; i < database.TableDefs()->Count(); ++i) tables.push_back(database.TableDefs()->Item(i));
  });
  for (const auto& table : tables) {
    Try([&] { Describe(*table); });
    Try([&] { ReadRows(database, table->Name()); });
    Try([&] { ChangeRows(database, table->Name()); });
  }
}

}  // namespace

bool Try(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const platform::RunTimeError& error) {
    EXPECT_NE(error.Number(), 0);
    EXPECT_FALSE(error.Description().empty());
    return false;
  }
}

void UseDatabase(platform::Files& files, platform::Clock& clock) {
  const auto engine = jet::MakeEngine(files, clock, {});
  const auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
  std::shared_ptr<dao::Database> database;
  if (!Try([&] { database = workspace->OpenDatabase(kPath, true, false, u";pwd=password;"); })) return;
  UseTables(*database);
  Try([&] {
    for (int i = 0; i < database->Relations()->Count(); ++i) database->Relations()->Item(i)->Fields()->Count();
  });
  Try([&] { database->Close(); });
}

}  // namespace zimbrat::tests

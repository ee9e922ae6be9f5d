// A template copy made empty: its documents and movements go, its dictionaries stay.
#include "generator/ModGeneruj.h"

#include "patience.h"
#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "suite/value_text.h"
#include "platform/dao_connect.h"
#include "platform/error_numbers.h"

#include <algorithm>
#include <array>

namespace zimbrat::generator {
namespace {

using Names = std::vector<std::u16string>;

// The first two letters of the tables that hold documents, as the programs of the suite name them.
constexpr std::array<std::u16string_view, 7> kDocumentPrefixes = {u"ZA", u"FA", u"UM", u"SE",
                                                                  u"KA", u"PB", u"BA"};

bool HoldsDocuments(dao::TableDef& table) {
  if ((table.Attributes() & dao::dbSystemObject) != 0 || !table.Updatable()) return false;
  const std::u16string name = table.Name();
  return std::find(kDocumentPrefixes.begin(), kDocumentPrefixes.end(),
                   std::u16string_view(name).substr(0, 2)) != kDocumentPrefixes.end();
}

// The symbols of the database's programs, separated by commas.
std::u16string ProgramSymbols(dao::Database& database) {
  std::u16string symbols;
  const auto rows = database.OpenRecordset(u"SELECT indprg FROM dbprg", dao::dbOpenSnapshot);
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    if (!symbols.empty()) symbols += u',';
    symbols += suite::TextFromValue(rows->Fields()->Item(0)->Value());
  }
  rows->Close();
  return symbols;
}

Names DocumentTables(dao::Database& database) {
  Names names;
  const auto tables = database.TableDefs();
  for (int i = 0; i < tables->Count(); ++i) {
    const auto table = tables->Item(i);
    if (HoldsDocuments(*table)) names.push_back(table->Name());
  }
  return names;
}

std::u16string Bracketed(std::u16string_view name) {
  return u"[" + std::u16string(name) + u"]";
}

// Rows that others refer to are passed over, so whoever comes too early has another turn. As many
// turns as there are tables are enough, unless rows of one table refer to each other, or tables in
// a circle.
void DeleteRows(ProgramState& state, dao::Database& database, const Names& tables,
                platform::ProgressBar& progress) {
  std::int64_t deleted = 1;
  for (std::size_t turn = 0; deleted > 0 && turn <= tables.size(); ++turn) {
    deleted = 0;
    for (const std::u16string& table : tables) {
      database.Execute(u"DELETE FROM " + Bracketed(table));
      deleted += database.RecordsAffected();
      progress.Advance();
      state.on.host.Pulse();
    }
  }
}

bool HasRows(dao::Database& database, const Names& tables) {
  return std::any_of(tables.begin(), tables.end(), [&](const std::u16string& table) {
    return database.TableDefs()->Item(table)->RecordCount() > 0;
  });
}

// Chains and circles are opened where their fields may be empty.
void ClearReferences(dao::Database& database, const Names& tables) {
  const auto isAmong = [&](const std::u16string& name) {
    return std::find(tables.begin(), tables.end(), name) != tables.end();
  };
  const auto relations = database.Relations();
  for (int i = 0; i < relations->Count(); ++i) {
    const auto relation = relations->Item(i);
    if ((relation->Attributes() & dao::dbRelationDontEnforce) != 0) continue;
    if (!isAmong(relation->Table()) || !isAmong(relation->ForeignTable())) continue;
    for (int f = 0; f < relation->Fields()->Count(); ++f) {
      database.Execute(u"UPDATE " + Bracketed(relation->ForeignTable()) + u" SET " +
                       Bracketed(relation->Fields()->Item(f)->ForeignName()) + u" = NULL");
    }
  }
}

// A database without a password opens with any; then the old one is none.
void RemovePassword(ProgramState& state, dao::Database& database) {
  const auto error =
      suite::Attempt([&] { database.NewPassword(state.databasePassword, u""); });
  if (!error) return;
  if (error->Number() != platform::kErrInvalidPassword) throw *error;
  database.NewPassword(u"", u"");
}

}  // namespace

bool WyczyscWzorzec(ProgramState& state, std::u16string_view copyPath,
                    platform::ProgressBar& progress) {
  return suite::Record(state.context, [&] {
    const auto session =
        OpenPatiently(state, copyPath, dao::ConnectText(state.databasePassword));
    dao::Database& database = session->Database();
    RemovePassword(state, database);
    // The prefixes mean documents in the suite's programs: without any of them they mean nothing.
    if (!ProgramSymbols(database).empty()) {
      const Names tables = DocumentTables(database);
      progress.SetMaximum(static_cast<int>(tables.size()));
      DeleteRows(state, database, tables, progress);
      if (HasRows(database, tables)) {
        ClearReferences(database, tables);
        DeleteRows(state, database, tables, progress);
      }
    }
    session->Close();
    return true;
  });
}

}  // namespace zimbrat::generator

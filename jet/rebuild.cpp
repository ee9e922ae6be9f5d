#include "rebuild.h"

#include <algorithm>

#include "rebuild_catalogue.h"
#include "rebuild_relation_rows.h"
#include "rebuild_relations.h"
#include "rebuild_table.h"
#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

class Rebuild {
 public:
  Rebuild(check::Rescue& source, DatabaseFile& target)
      : source_(source), target_(target), catalogue_(source, target, tables_) {}

  RebuildResult Run();

 private:
  void FindUncataloguedTables();
  void CreateTables();
  void FillTables();
  void Report(const RebuiltTable& table);

  check::Rescue& source_;
  DatabaseFile& target_;
  RebuiltTables tables_;
  CatalogueRebuild catalogue_;
  RebuildResult result_;
};

// Definitions that no row of the catalogue names. Those without rows have been left behind by tables long gone, unless
// the catalogue has lost rows.
void Rebuild::FindUncataloguedTables() {
  for (const PageNumber page : source_.Definitions()) {
    if (IsSystemTablePage(page) || tables_.contains(page)) continue;
    const std::optional<check::RescuedTable> found = source_.ReadTable(page);
    if (!found) continue;
    const bool hasRows = source_.ReadRows(found->layout, [](const auto&) {}).saved != 0;
    if (!hasRows && !catalogue_.HasLostRows()) continue;
    RepairedTable& report = tables_[page].report;
    report.name = u"Odzyskana_" + platform::DecimalText(page);
    report.notes.push_back(u"katalog nie podaje nazwy tej tabeli");
  }
}

void Rebuild::CreateTables() {
  for (auto& [former, table] : tables_) {
    const std::optional<check::RescuedTable> found = source_.ReadTable(former);
    std::vector<std::u16string>& notes = table.report.notes;
    if (!found) {
      notes.push_back(u"utracono tabelę: jej definicji nie da się odczytać");
      table.report.lost = source_.CountRows(former);
      continue;
    }
    notes.insert(notes.end(), found->notes.begin(), found->notes.end());
    table.page = CreateFrom(target_.GetStorage(), found->layout);
  }
}

void Rebuild::FillTables() {
  for (auto& [former, rebuilt] : tables_) {
    if (rebuilt.page == 0) continue;
    Table table(target_.GetStorage(), rebuilt.page, rebuilt.report.name);
    const check::RowCounts counts = CopyRows(source_, source_.ReadTable(former)->layout, table);
    rebuilt.report.saved = counts.saved;
    rebuilt.report.partial = counts.partial;
    rebuilt.report.lost = counts.lost;
    const std::vector<std::u16string> notes = BuildIndexes(table);
    rebuilt.report.notes.insert(rebuilt.report.notes.end(), notes.begin(), notes.end());
  }
}

RebuildResult Rebuild::Run() {
  catalogue_.ReadTables();
  FindUncataloguedTables();
  if (tables_.empty() && !catalogue_.HasRows())
    Raise(platform::kErrCannotRepair, u": nie ma w niej nic czytelnego");
  CreateTables();
  FillTables();
  RelationRebuild relations(target_.GetStorage(), tables_);
  relations.Run();
  std::vector<RepairedTable> system = catalogue_.CopyRows();
  catalogue_.AddFoundTables();
  system.push_back(RelationRowsRebuild(source_, target_, tables_, relations.Enforced()).Run());
  catalogue_.AddMissingAccessEntries();
  for (const auto& [former, table] : tables_) {
    result_.tables.push_back(table.report);
    if (table.page != 0) result_.rows[table.page] = table.report.saved;
  }
  for (PageNumber page = kObjectsPage; page <= kRelationshipsPage; ++page) {
    result_.rows[page] = ReadDefinition(target_.Pages(), page).rows;
  }
  result_.tables.insert(result_.tables.end(), system.begin(), system.end());
  return std::move(result_);
}

}  // namespace

RebuildResult RebuildDatabase(check::Rescue& source, DatabaseFile& target) {
  return Rebuild(source, target).Run();
}

}  // namespace zimbrat::jet

// The commands that make a database: a new, empty one, and one with another as its template.
#include "console/explanations.h"
#include "progress_line.h"
#include "reading.h"
#include "app/database_list.h"
#include "app/existing_database_run.h"
#include "app/new_database_run.h"
#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"

namespace zimbrat::console {
namespace {

using Run = app::RunResult (*)(suite::ProgramState& state, const app::NewDatabaseOrder& order,
                               platform::ProgressBar& progress);

// Whether the list now holds the database: the registry's operations say nothing of their failures.
bool IsRecorded(suite::ProgramState& state, const std::u16string& path) {
  platform::OrvCombo list;
  suite::RegBaseListLoad(state, list);
  return list.FindValue(path) >= 0;
}

Outcome RecordInList(const CommandContext& context, Outcome outcome, std::u16string akt_baza) {
  app::DodajDoListy(context.state, akt_baza);
  if (IsRecorded(context.state, akt_baza)) return outcome;
  outcome.status = kStatusFailed;
  outcome.text = context.host.Messages() +
                 u"Bazy nie udało się dodać do listy baz pakietu. "
                 u"Plik bazy jest gotowy: " +
                 outcome.database;
  return outcome;
}

Outcome Create(const CommandContext& context, const app::NewDatabaseOrder& order, Run run) {
  context.host.SetAnswersYes(context.arguments.Has(u"--nadpisz"));
  const app::RunResult result = WithProgressLine(context, [&](platform::ProgressBar& bar) {
    return run(context.state, order, bar);
  });
  if (!result.done) return Failed(context.host.Messages() + result.text + Explanation(context.state));
  Outcome outcome;
  outcome.text = result.text;
  outcome.database = result.akt_baza + u".mdb";
  return context.arguments.Has(u"--do-listy") ? RecordInList(context, outcome, result.akt_baza)
                                              : outcome;
}

}  // namespace

Outcome RunNowa(const CommandContext& context) {
  app::NewDatabaseOrder order;
  std::vector<std::u16string> structures;
  if (auto refusal = ReadPeriods(context, order.periods)) return *refusal;
  if (auto refusal = ReadNameAndFolder(context, order.name, order.folder)) return *refusal;
  if (auto refusal = ReadStructures(context, u',', structures)) return *refusal;
  for (const std::u16string& path : structures) {
    if (!order.structureFiles.empty()) order.structureFiles += u',';
    order.structureFiles += path;
  }
  return Create(context, order, app::RunNewDatabase);
}

Outcome RunWzorzec(const CommandContext& context) {
  app::NewDatabaseOrder order;
  if (auto refusal = ReadPeriods(context, order.periods)) return *refusal;
  order.templateDatabase = TakeDatabase(context, u"--wzorzec");
  if (!app::OpenTemplate(context.state, order.templateDatabase)) {
    return Failed(context.host.Messages() + Explanation(context.state));
  }
  if (auto refusal = ReadNameAndFolder(context, order.name, order.folder)) return *refusal;
  return Create(context, order, app::RunFromTemplate);
}

}  // namespace zimbrat::console

// What Next and Back do on each page.
#include "app/mdiMenu.h"

#include "long_work.h"

#include "app/ModFolder.h"
#include "app/name_rules.h"
#include "app/new_database_run.h"
#include "app/page_texts.h"
#include "app/period_rules.h"
#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "platform/files.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zimbrat::app {
namespace {

using suite::Task;

constexpr std::u16string_view kNext = u"Dalej >";

constexpr std::u16string_view kNothingToCreate =
    u"Zaznacz programy, dla których ma zostać utworzona struktura w bazie danych.";

bool IsCreation(Task task) { return task == Task::Nowa || task == Task::Wzorzec; }

std::u16string_view LookingAt(Task task) {
  return task == Task::Sprawdz ? u"Trwa sprawdzanie i\u00A0naprawa pliku bazy"
                               : u"Trwa otwieranie bazy danych";
}

std::u16string_view Running(Task task) {
  if (IsCreation(task)) return u"Trwa tworzenie bazy danych";
  return task == Task::Dodaj ? u"Trwa rozbudowa bazy danych" : u"Trwa aktualizacja bazy danych";
}

// Where Back goes from a page; empty where there is no way back.
std::u16string_view PageBefore(std::u16string_view page, Task task) {
  if (page == u"NowaBaza") return task == Task::Nowa ? u"Start" : u"NazwaBazy";
  if (page == u"NazwaBazy") return u"Start";
  if (page == u"ProgBazy") return u"NowaBaza";
  if (page == u"Okresy") return task == Task::Nowa ? u"ProgBazy" : u"NowaBaza";
  if (page == u"Struktura") return u"NazwaBazy";
  if (page == u"Generuj") return IsCreation(task) ? u"Okresy" : u"Struktura";
  return {};
}

}  // namespace

Task mdiMenu::ChosenTask() const {
  if (obStartDodaj.Value()) return Task::Dodaj;
  if (obStartWzorzec.Value()) return Task::Wzorzec;
  return obStartSprawdz.Value() ? Task::Sprawdz : Task::Nowa;
}

std::u16string mdiMenu::ChosenDatabase() const {
  return std::u16string(obListaBaz.Value() ? cmbBazaNazwa.HiddenValue() : txtBazaNazwa.Text());
}

platform::Panel& mdiMenu::PageOf(std::u16string_view key) {
  constexpr std::u16string_view kKeys[] = {u"Start",     u"NowaBaza", u"NazwaBazy", u"ProgBazy",
                                           u"Struktura", u"Okresy",   u"Generuj",   u"Koniec"};
  const auto found = std::ranges::find(kKeys, key);
  return *Pages()[static_cast<std::size_t>(found - std::begin(kKeys))];
}

void mdiMenu::Show(std::u16string_view key, std::u16string_view description) {
  platform::Panel& former = PageOf(akt_plansza);
  labTytul.SetCaption(description);
  akt_plansza = key;
  PageOf(key).SetVisible(true);
  // Before the former page goes: with it the focus would wander to whatever comes next.
  FocusOn(key);
  if (&former != &PageOf(key)) former.SetVisible(false);
}

void mdiMenu::FocusOn(std::u16string_view key) {
  platform::Control* first = nullptr;
  if (key == u"Start") first = TaskOptions()[static_cast<std::size_t>(ChosenTask())];
  if (key == u"NowaBaza") first = &txtNBazaNazwa;
  if (key == u"NazwaBazy") {
    first = obListaBaz.Value() ? static_cast<platform::Control*>(&cmbBazaNazwa) : &txtBazaNazwa;
  }
  if (key == u"ProgBazy") first = &lstProgramy;
  if (key == u"Struktura") first = &lstProgDodaj;
  if (key == u"Okresy") first = &cmbOdMiesiac;
  if (key == u"Generuj") first = &txtOpisGen;
  if (key == u"Koniec") first = &cmdAnuluj;
  if (first != nullptr) first->SetFocus();
}

void mdiMenu::cmdDalej_Click() {
  if (IsRunning() || !cmdDalej.Enabled()) return;
  const std::pair<std::u16string_view, void (mdiMenu::*)()> pages[] = {
      {u"Start", &mdiMenu::LeaveStart},         {u"NazwaBazy", &mdiMenu::LeaveNazwaBazy},
      {u"NowaBaza", &mdiMenu::LeaveNowaBaza},   {u"ProgBazy", &mdiMenu::LeaveProgBazy},
      {u"Struktura", &mdiMenu::LeaveStruktura}, {u"Okresy", &mdiMenu::LeaveOkresy},
      {u"Generuj", &mdiMenu::Run}};
  for (const auto& [page, leave] : pages) {
    if (page != akt_plansza) continue;
    suite::Report(state_.on.host, u"cmdDalej_Click", [&, leave = leave] { (this->*leave)(); });
    return;
  }
}

void mdiMenu::LeaveStart() {
  cmdWstecz.SetVisible(true);
  state_.task = ChosenTask();
  ShowNext(state_.task == Task::Nowa ? u"NowaBaza" : u"NazwaBazy");
}

void mdiMenu::ShowNext(std::u16string_view key) { Show(key, DescriptionOnNext(key, ChosenTask())); }

void mdiMenu::LeaveNazwaBazy() {
  const Task task = ChosenTask();
  if (obInnaLok.Value()) txtBazaNazwa.SetText(FullPath(state_, txtBazaNazwa.Text()));
  const std::u16string database = ChosenDatabase();
  bool isReady = false;
  Prepared prepared;
  {
    const LongWork work(state_, work_, labBadanie, LookingAt(task));
    if (task == Task::Wzorzec) {
      isReady = OpenTemplate(state_, database);
    } else {
      prepared = PrepareDatabase(state_, task, database, suite::StructureFiles(state_), lstProgDodaj);
      isReady = prepared.isReady;
    }
  }
  if (!isReady) return FocusOn(akt_plansza);
  if (task == Task::Wzorzec) return ShowNext(u"NowaBaza");
  labProgDodaj.SetCaption(task == Task::Dodaj ? u"Dodać strukturę dla programów" : u"Struktury bazy");
  labUwaga.SetCaption(NoteOn(prepared.comparison));
  ShowNext(u"Struktura");
}

// A list that is cut short must not look whole.
std::u16string mdiMenu::NoteOn(const suite::Comparison& comparison) const {
  if (comparison.error) {
    return u"Lista nie jest pełna. " +
           (comparison.stoppedAt.empty() ? u"" : u"Plik struktury: " + comparison.stoppedAt + u". ") +
           comparison.error->Description();
  }
  return {};
}

void mdiMenu::LeaveNowaBaza() {
  txtNBazaNazwa.SetText(std::u16string(WithoutExtension(txtNBazaNazwa.Text())));
  const std::u16string typed(txtNBazaFolder.Text()), full = FullPath(state_, typed);
  // What is not there is named as it was typed.
  const bool isThere = state_.on.files.IsFolder(full);
  if (!ValidateNameAndFolder(state_, txtNBazaNazwa.Text(), isThere ? full : typed)) {
    return txtNBazaNazwa.Text().empty() ? txtNBazaNazwa.SetFocus() : txtNBazaFolder.SetFocus();
  }
  txtNBazaFolder.SetText(full);
  ShowNext(ChosenTask() == Task::Nowa ? u"ProgBazy" : u"Okresy");
}

void mdiMenu::LeaveProgBazy() {
  if (lstProgramy.CheckedCount() == 0) {
    state_.on.host.ShowMessage(kNothingToCreate, platform::kMsgInformation, u"");
    return;
  }
  if (IsWholeAsText(lstProgramy, u',')) ShowNext(u"Okresy");
}

// The drivers take a list as one text: a path with its separator would be cut.
bool mdiMenu::IsWholeAsText(const platform::OrvListCheck& list, char16_t separator) {
  std::vector<std::u16string> paths;
  for (const auto& item : list.Items()) {
    if (item.isChecked) paths.push_back(item.value);
  }
  const auto fault = FindListFault(paths, separator);
  if (fault) state_.on.host.ShowMessage(*fault, platform::kMsgInformation, u"");
  return !fault;
}

void mdiMenu::LeaveStruktura() {
  const Task task = ChosenTask();
  if (!IsWholeAsText(lstProgDodaj, u';')) return;
  if (!TakeSelection(state_, task, lstProgDodaj, selection_)) return;
  ShowGeneruj(task == Task::Dodaj ? u"Rozbuduj" : u"Aktualizuj");
}

void mdiMenu::LeaveOkresy() { ShowGeneruj(u"Utwórz"); }

void mdiMenu::ShowGeneruj(std::u16string_view nextCaption) {
  cmdDalej.SetCaption(nextCaption);
  cmdDalej.SetEnabled(true);
  progBar.Reset();
  txtOpisGen.SetText(suite::SummaryText(ChosenTask(), ChoicesMade()));
  ShowNext(u"Generuj");
}

suite::Choices mdiMenu::ChoicesMade() {
  suite::Choices choices;
  choices.name = txtNBazaNazwa.Text();
  choices.folder = txtNBazaFolder.Text();
  choices.database = ChosenDatabase();
  choices.programs = selection_.names;
  if (ChosenTask() == Task::Nowa) {
    std::u16string files;
    choices.programs.clear();
    suite::CollectSelection(lstProgramy, files, choices.programs);
  }
  const auto period = [](const platform::OrvCombo& month, const platform::OrvUpDown& year) {
    return std::u16string(month.HiddenValue()) + u"/" + std::u16string(year.Text());
  };
  choices.firstPeriod = period(cmbOdMiesiac, txtOdRok);
  choices.lastPeriod = period(cmbDoMiesiac, txtDoRok);
  return choices;
}

void mdiMenu::Run() {
  RunResult result;
  {
    const LongWork work(state_, work_, labPostep, Running(ChosenTask()));
    result = RunTask();
  }
  if (result.done) return ShowKoniec(result);
  // Without a text the user has been told already.
  if (!result.text.empty()) ShowFailure(result);
}

RunResult mdiMenu::RunTask() {
  const Task task = ChosenTask();
  if (IsCreation(task)) return RunCreation();
  return RunExtension(state_, task, ChosenDatabase(), selection_, progBar);
}

RunResult mdiMenu::RunCreation() {
  NewDatabaseOrder order;
  order.name = txtNBazaNazwa.Text();
  order.folder = txtNBazaFolder.Text();
  const auto fault = ReadPeriods({cmbOdMiesiac.HiddenValue(), txtOdRok.Text(),
                                  cmbDoMiesiac.HiddenValue(), txtDoRok.Text()},
                                 order.periods);
  if (fault) return {false, *fault + std::u16string(suite::kCrLf), {}};
  if (ChosenTask() == Task::Wzorzec) {
    order.templateDatabase = ChosenDatabase();
    return RunFromTemplate(state_, order, progBar);
  }
  order.structureFiles = lstProgramy.CheckedValues();
  return RunNewDatabase(state_, order, progBar);
}

void mdiMenu::ShowKoniec(const RunResult& result) {
  const bool isCreation = IsCreation(ChosenTask());
  cbListabaz.SetVisible(isCreation);
  cmdAnuluj.SetCaption(u"Zakończ");
  txtOpisKon.SetText(result.text);
  if (isCreation) {
    akt_baza = result.akt_baza;
    suite::RegStringSave(state_.on.registry, suite::kWizardKey, kLastFolderValue,
                         txtNBazaFolder.Text());
  }
  ShowNext(u"Koniec");
  cmdWstecz.SetVisible(false);
  cmdDalej.SetVisible(false);
}

void mdiMenu::ShowFailure(const RunResult& result) {
  cmdDalej.SetEnabled(false);
  progBar.Reset();
  txtOpisGen.SetText(result.text);
  txtOpisGen.SetFocus();
}

void mdiMenu::cmdWstecz_Click() {
  if (IsRunning()) return;
  const Task task = ChosenTask();
  const std::u16string_view target = PageBefore(akt_plansza, task);
  if (target.empty()) return;
  if (akt_plansza == u"Generuj" || akt_plansza == u"Struktura") cmdDalej.SetCaption(kNext);
  if (akt_plansza == u"Generuj") cmdDalej.SetEnabled(true);
  Show(target, DescriptionOnBack(target, task));
  if (target == u"Start") cmdWstecz.SetVisible(false);
}

}  // namespace zimbrat::app

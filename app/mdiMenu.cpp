// The form from its loading to its closing, and its small handlers.
#include "app/mdiMenu.h"

#include "long_work.h"

#include "app/ModFolder.h"
#include "app/database_list.h"
#include "app/page_texts.h"
#include "app/period_rules.h"
#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "suite/product.h"
#include "platform/clock.h"
#include "platform/dates.h"
#include "platform/files.h"
#include "platform/text.h"

#include <algorithm>

namespace zimbrat::app {
namespace {

// Twips: the common place of all pages.
constexpr std::u16string_view kPageTag = u"podklad";
constexpr int kPagesTop = 1100;
constexpr int kPagesLeft = 2100;

constexpr std::u16string_view kMonths =
    u"LIST 1;Styczeń|2;Luty|3;Marzec|4;Kwiecień|5;Maj|6;Czerwiec|7;Lipiec|8;Sierpień|9;Wrzesień|"
    u"10;Październik|11;Listopad|12;Grudzień";

constexpr int kFirstYear = 1900, kLastYear = 2999;
constexpr std::size_t kYearLength = 4;

}  // namespace

mdiMenu::mdiMenu(suite::ProgramState& state, platform::Shell& shell) : state_(state), shell_(shell) {
  Tag = u"mdi";
  MakeCaptions();
  MakeHandlers();
  for (platform::OptionButton* option : TaskOptions()) option->SetGroup(TaskOptions());
  obListaBaz.SetGroup({&obListaBaz, &obInnaLok});
  obInnaLok.SetGroup({&obListaBaz, &obInnaLok});
  obStartNowa.Select();
  obListaBaz.Select();
  cmbOdMiesiac.SetRowSource(kMonths);
  cmbDoMiesiac.SetRowSource(kMonths);
  for (platform::OrvUpDown* year : {&txtOdRok, &txtDoRok}) {
    year->SetMaxLength(kYearLength);
    year->SetRange(kFirstYear, kLastYear);
  }
  for (platform::Panel* page : Pages()) {
    page->Tag = kPageTag;
    page->SetVisible(page == &pboxStart);
  }
  cmdWstecz.SetVisible(false);
  cbListabaz.SetVisible(false);
}

void mdiMenu::MakeCaptions() {
  const std::pair<platform::Captioned*, std::u16string_view> captions[] = {
      {this, suite::ProductTitle()},
      {&cmdWstecz, u"< &Wstecz"},
      {&cmdDalej, u"Dalej >"},
      {&cmdAnuluj, u"Anuluj"},
      {&obStartNowa, u"Utworzyć &nową, pustą bazę danych"},
      {&obStartDodaj, u"&Rozbudować strukturę istniejącej bazy"},
      {&obStartWzorzec, u"Utworzyć nową bazę danych, używając jako &wzorca istniejącą bazę"},
      {&obStartSprawdz, u"Aktualizować wersję,  naprawić strukturę bazy"},
      {&labNBazaNazwa, u"Nazwa nowej bazy danych (np. Firma ABC)"},
      {&labNBazaFolder, u"Folder nowej bazy danych"},
      {&labBazy, u"Bazy danych, które są już w\u00A0tym folderze"},
      {&labNazwaBazy, u"Wskaż bazę danych"},
      {&obListaBaz, u"Podręczna lista baz"},
      {&obInnaLok, u"Inna lokalizacja"},
      {&labProgramy, u"Utwórz tablice danych dla programów"},
      {&labOkresy, u"Okresy obliczeniowe"},
      {&labOd, u"Od"},
      {&labOdMiesiac, u"Miesiąc"},
      {&labOdRok, u"Rok"},
      {&labDo, u"Do"},
      {&labDoMiesiac, u"Miesiąc"},
      {&labDoRok, u"Rok"},
      {&labOpisGen, u"Ustawione parametry zimbrata"},
      {&labOpisKon, u"Wynik pracy zimbrata"},
      {&cbListabaz, u"Dodaj bazę do podręcznej listy baz pakietu"}};
  for (const auto& [control, caption] : captions) control->SetCaption(caption);
  txtNBazaFolder.SetButtonName(u"Wybierz folder");
  txtBazaNazwa.SetButtonName(u"Wskaż plik bazy");
  lstBazy.SetEmptyText(u"(nie ma żadnej)");
  lstProgramy.SetEmptyText(u"Brak plików struktur *.stb w\u00A0folderze zimbrata");
  lstProgDodaj.SetEmptyText(u"Brak struktur, pliki *.stb czytane są z\u00A0folderu zimbrata");
}

void mdiMenu::MakeHandlers() {
  cmdDalej.SetOnClick([this] { cmdDalej_Click(); });
  cmdWstecz.SetOnClick([this] { cmdWstecz_Click(); });
  cmdAnuluj.SetOnClick([this] { cmdAnuluj_Click(); });
  // A typed folder is looked into once it stands there whole, not at each letter: it may be far away.
  txtNBazaFolder.SetOnLeave([this] {
    if (!IsRunning() && FullPath(state_, txtNBazaFolder.Text()) != listedFolder_) ListBazy();
  });
  txtNBazaFolder.SetOnClick([this] { txtNBazaFolder_ButtonClick(); });
  txtBazaNazwa.SetOnClick([this] { txtBazaNazwa_ButtonClick(); });
  lstBazy.SetOnItemClick([this] { lstBazy_ItemClick(); });
  lstProgDodaj.SetOnItemClick([this] { lstProgDodaj_ItemClick(); });
  obInnaLok.SetOnClick([this] { obInnaLok_Click(); });
  obListaBaz.SetOnClick([this] { obListaBaz_Click(); });
}

std::vector<platform::OptionButton*> mdiMenu::TaskOptions() {
  return {&obStartNowa, &obStartDodaj, &obStartWzorzec, &obStartSprawdz};
}

std::vector<platform::Panel*> mdiMenu::Pages() {
  return {&pboxStart,     &pboxNowaBaza, &pboxNazwaBazy, &pboxProgBazy,
          &pboxStruktura, &pboxOkresy,   &pboxGeneruj,   &pboxKoniec};
}

// Start-up never stops: a step that fails is passed over.
void mdiMenu::Form_Load() {
  using suite::Attempt;
  Attempt([&] { loaded_.emplace(state_, *this); });
  Attempt([&] { SetCaption(Caption() + u" v. " + std::u16string(suite::ProductVersion())); });
  Attempt([&] {
    akt_plansza = u"Start";
    labTytul.SetCaption(DescriptionOnNext(akt_plansza, state_.task));
  });
  for (platform::Panel* page : Pages()) {
    if (page->Tag != kPageTag) continue;
    page->Top = kPagesTop;
    page->Left = kPagesLeft;
  }
  Attempt([&] { LoadPeriods(); });
  Attempt([&] { LoadFolders(); });
  Attempt([&] { ListBazy(); });
  Attempt([&] {
    if (!suite::RegBaseListLoad(state_, cmbBazaNazwa)) cmbBazaNazwa.SetShownText(suite::kNoDatabase);
  });
  Attempt([&] { suite::LoadProgramList(state_, lstProgramy); });
}

// The suite's folder, else the one in which the last database was made.
void mdiMenu::LoadFolders() {
  std::u16string folder = suite::RegStringRead(state_.on.registry, suite::kSuiteKey, u"Folder baza",
                                               state_.defaultFolder);
  if (folder.empty()) {
    const suite::RegVariant last =
        suite::RegKeyValueGet(state_.on.registry, suite::kWizardKey, kLastFolderValue);
    if (const auto* text = std::get_if<std::u16string>(&last)) folder = *text;
    if (!folder.empty() && !state_.on.files.IsFolder(folder)) folder.clear();
  }
  // A text of the registry may hold anything, a path no NUL.
  folder.resize(std::min(folder.find(u'\0'), folder.size()));
  state_.defaultFolder = folder;
  txtNBazaFolder.SetText(folder);
}

void mdiMenu::LoadPeriods() {
  const std::u16string year =
      platform::DecimalText(platform::PartsOfDate(state_.on.clock.Now()).year);
  txtOdRok.SetText(year);
  txtDoRok.SetText(year);
  cmbOdMiesiac.SetValue(u"1");
  cmbDoMiesiac.SetValue(u"12");
}

void mdiMenu::cmdAnuluj_Click() {
  const bool wantsEntry = cbListabaz.Visible() && cbListabaz.Value() == 1;
  if (wantsEntry && !IsRunning()) DodajDoListy(state_, akt_baza);
  Unload();
}

void mdiMenu::Form_QueryUnload(bool& Cancel, int) {
  if (!state_.ArgAuto.empty() || pboxStart.Visible() || pboxKoniec.Visible()) return;
  Cancel = state_.on.host.ShowMessage(u"Chcesz zakończyć pracę zimbrata?",
                                      platform::kMsgQuestionYesNoDefaultNo,
                                      suite::MessageTitle()) == platform::kAnswerNo;
}

void mdiMenu::Unload() {
  if (work_ != nullptr) return work_->RefuseToClose();
  bool Cancel = false;
  Form_QueryUnload(Cancel, 0);
  if (Cancel) return;
  isUnloaded_ = true;
  loaded_.reset();
  SetVisible(false);
}

void mdiMenu::Pulse() {
  if (work_ != nullptr) work_->Pulse();
}

bool mdiMenu::TakesDrop(std::u16string_view path) const {
  return !IsRunning() && pboxNazwaBazy.Visible() && platform::UpperCase(path).ends_with(u".MDB");
}

void mdiMenu::Drop(std::u16string_view path) {
  if (!TakesDrop(path)) return;
  obInnaLok.Select();
  txtBazaNazwa.SetText(path);
  txtBazaNazwa.SetFocus();
}

void mdiMenu::ShowHelp() {
  if (IsRunning()) return;
  const bool isThere = state_.on.files.IsFile(state_.helpFile);
  if (isThere && shell_.Open(state_.helpFile)) return;
  state_.on.host.ShowMessage(
      (isThere ? u"Nie można otworzyć pliku pomocy: " : u"Brak pliku pomocy: ") + state_.helpFile,
      platform::kMsgInformation, suite::MessageTitle());
}

void mdiMenu::ShowInformation() {
  if (IsRunning()) return;
  std::u16string engine;
  const auto error = suite::Attempt([&] {
    const suite::Hourglass hourglass(state_.on.host);
    engine = state_.EngineText();
  });
  if (error) engine = u"brak. " + error->Description();
  std::u16string text(suite::ProductTitle());
  text.append(suite::kCrLf).append(u"Wersja: ").append(suite::ProductVersion());
  text.append(suite::kCrLf).append(u"Silnik baz danych: ").append(engine);
  state_.on.host.ShowMessage(text, platform::kMsgInformation, suite::MessageTitle());
}

void mdiMenu::txtNBazaFolder_ButtonClick() {
  suite::Report(state_.on.host, u"txtNBazaFolder_ButtonClick", [&] {
    const std::u16string current = state_.on.environment.CurrentFolder();
    const std::u16string folder =
        BrowseForFolder(shell_, u"Wybierz folder", kBrowseFlags, kBrowseRoot);
    if (!folder.empty()) {
      txtNBazaFolder.SetText(folder);
      ListBazy();
    }
    state_.on.environment.SetCurrentFolder(current);
  });
}

void mdiMenu::ListBazy() {
  listedFolder_ = FullPath(state_, txtNBazaFolder.Text());
  suite::ListDatabases(state_, lstBazy, listedFolder_);
}

void mdiMenu::txtBazaNazwa_ButtonClick() {
  const std::u16string file = suite::ChooseDatabaseFile(state_, shell_, state_.defaultFolder);
  if (!file.empty()) txtBazaNazwa.SetText(file);
}

void mdiMenu::lstBazy_ItemClick() {
  if (!lstBazy.Value().empty()) txtNBazaNazwa.SetText(lstBazy.Text());
}

void mdiMenu::lstProgDodaj_ItemClick() {
  // Kept: the question is asked, and nothing is made of the answer.
  (void)platform::Contains(lstProgDodaj.Text(), u"struktura");
}

void mdiMenu::obInnaLok_Click() {
  // First, so that the focus of the list finds it.
  txtBazaNazwa.SetEnabled(true);
  cmbBazaNazwa.SetEnabled(false);
  cmbBazaNazwa.SetShownText(suite::kNoDatabase);
}

void mdiMenu::obListaBaz_Click() {
  cmbBazaNazwa.SetEnabled(true);
  txtBazaNazwa.SetEnabled(false);
  txtBazaNazwa.SetText(u"");
}

}  // namespace zimbrat::app

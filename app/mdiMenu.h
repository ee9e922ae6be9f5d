// The wizard's form without a view: its pages and controls, what Next and Back do on each page, and all
// texts. A view draws the controls and hands events in; the automatic run drives the form without one.
//
//   Nowa      Start, NowaBaza, ProgBazy, Okresy, Generuj, Koniec
//   Dodaj     Start, NazwaBazy, Struktura, Generuj, Koniec
//   Wzorzec   Start, NazwaBazy, NowaBaza, Okresy, Generuj, Koniec
//   Sprawdz   Start, NazwaBazy, Struktura, Generuj, Koniec
//
// Next on Generuj runs the task and holds the thread until it ends; the view then gives Pulse, and every
// other event does nothing.
#pragma once

#include "app/existing_database_run.h"
#include "suite/program_state.h"
#include "platform/controls.h"
#include "platform/shell.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::app {

class LongWork;

// Under kWizardKey: the folder of the last database that was made, offered where the suite names none.
inline constexpr std::u16string_view kLastFolderValue = u"Ostatni folder";

// What the title bar's menu calls ShowInformation.
inline constexpr std::u16string_view kInformationCaption = u"&Informacje...";

class mdiMenu : public platform::Form {
 public:
  // Lays out captions, groups and handlers. Both must outlive the form.
  mdiMenu(suite::ProgramState& state, platform::Shell& shell);

  // Reads the registry, the structure files and the clock.
  void Form_Load();
  void cmdDalej_Click();
  void cmdWstecz_Click();
  void cmdAnuluj_Click();
  // Asks where effort would be lost; sets `Cancel` when the form is to stay.
  void Form_QueryUnload(bool& Cancel, int UnloadMode);
  // Closes the form unless Form_QueryUnload keeps it; a view hands its closed window in here.
  void Unload();
  bool IsUnloaded() const { return isUnloaded_; }

  // Life during long work, for the view to call at every pulse: what is done, and for how long.
  void Pulse();
  bool IsRunning() const { return work_ != nullptr; }
  // Whether a file dropped on the form would be taken now, and taking it as the database's path.
  bool TakesDrop(std::u16string_view path) const;
  void Drop(std::u16string_view path);
  // Asks for the focus where the page begins.
  void FocusPage() { FocusOn(akt_plansza); }
  // The help file, or that there is none.
  void ShowHelp();
  // Product, version and database engine, or why there is no engine.
  void ShowInformation();

  std::u16string akt_plansza;
  std::u16string akt_baza;  // path of the database just created

  platform::Label labTytul;  // the description line of the page
  platform::Button cmdWstecz;
  platform::Button cmdDalej;
  platform::Button cmdAnuluj;

  platform::Panel pboxStart;
  platform::OptionButton obStartNowa;
  platform::OptionButton obStartDodaj;
  platform::OptionButton obStartWzorzec;
  platform::OptionButton obStartSprawdz;

  platform::Panel pboxNowaBaza;
  platform::Label labNBazaNazwa;
  platform::TextBox txtNBazaNazwa;
  platform::Label labNBazaFolder;
  platform::OrvClick txtNBazaFolder;
  platform::Label labBazy;
  platform::OrvList lstBazy;

  platform::Panel pboxNazwaBazy;
  platform::Label labNazwaBazy;  // heading of the two options
  platform::OptionButton obListaBaz;
  platform::OrvCombo cmbBazaNazwa;
  platform::OptionButton obInnaLok;
  platform::OrvClick txtBazaNazwa;
  platform::Label labBadanie;  // life while the database is looked at

  platform::Panel pboxProgBazy;
  platform::Label labProgramy;
  platform::OrvListCheck lstProgramy{u','};

  platform::Panel pboxStruktura;
  platform::Label labProgDodaj;
  platform::OrvListCheck lstProgDodaj{u';'};
  platform::Label labUwaga;  // why the list is not complete; empty mostly

  platform::Panel pboxOkresy;
  platform::Label labOkresy;  // heading of both periods
  platform::Label labOd;
  platform::Label labOdMiesiac;
  platform::OrvCombo cmbOdMiesiac;
  platform::Label labOdRok;
  platform::OrvUpDown txtOdRok;
  platform::Label labDo;
  platform::Label labDoMiesiac;
  platform::OrvCombo cmbDoMiesiac;
  platform::Label labDoRok;
  platform::OrvUpDown txtDoRok;

  platform::Panel pboxGeneruj;
  platform::Label labOpisGen;
  platform::TextBox txtOpisGen;
  platform::Label labPostep;  // what is being done, above the bar
  platform::ProgressBar progBar;

  platform::Panel pboxKoniec;
  platform::Label labOpisKon;
  platform::TextBox txtOpisKon;
  platform::CheckBox cbListabaz;

 private:
  void MakeCaptions();
  void MakeHandlers();
  void LoadFolders();
  void LoadPeriods();
  // In the order of their tasks, and in the order of their keys.
  std::vector<platform::OptionButton*> TaskOptions();
  std::vector<platform::Panel*> Pages();

  suite::Task ChosenTask() const;
  std::u16string ChosenDatabase() const;
  suite::Choices ChoicesMade();
  platform::Panel& PageOf(std::u16string_view key);
  void Show(std::u16string_view key, std::u16string_view description);
  void ShowNext(std::u16string_view key);
  void FocusOn(std::u16string_view key);

  // Next, by the page that is left.
  void LeaveStart();
  void LeaveNazwaBazy();
  void LeaveNowaBaza();
  void LeaveProgBazy();
  void LeaveStruktura();
  void LeaveOkresy();
  void Run();
  std::u16string NoteOn(const suite::Comparison& comparison) const;
  bool IsWholeAsText(const platform::OrvListCheck& list, char16_t separator);
  void ShowGeneruj(std::u16string_view nextCaption);
  void ShowKoniec(const RunResult& result);
  void ShowFailure(const RunResult& result);
  RunResult RunTask();
  RunResult RunCreation();

  void txtNBazaFolder_ButtonClick();
  void ListBazy();
  void txtBazaNazwa_ButtonClick();
  void lstBazy_ItemClick();
  void lstProgDodaj_ItemClick();
  void obInnaLok_Click();
  void obListaBaz_Click();

  suite::ProgramState& state_;
  platform::Shell& shell_;
  std::optional<suite::Loaded> loaded_;
  Selection selection_;
  std::u16string listedFolder_;  // whose databases stand in lstBazy
  bool isUnloaded_ = false;
  LongWork* work_ = nullptr;  // while the thread is held
};

}  // namespace zimbrat::app

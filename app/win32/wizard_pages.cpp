// The views of the wizard's window and where they stand.
#include "wizard_window.h"

#include <algorithm>

namespace zimbrat::app {
namespace {

// Dialog units, a page's size and the common measures.
constexpr int kPageWidth = 268;
constexpr int kPageHeight = 172;
constexpr int kLabel = 9;
constexpr int kField = 14;
constexpr int kChoice = 12;
constexpr int kMargin = 7;
constexpr int kTitleLines = 4;
constexpr int kButtonWidth = 56;
constexpr int kButtonHeight = 14;
constexpr int kIndent = 12;

constexpr RECT Line(int top, int height, int left = 0, int right = kPageWidth) {
  return {left, top, right, top + height};
}

}  // namespace

void WizardWindow::MakeFrame() {
  title_ = &Keep(MakeLabel(Window(), wizard_.labTytul));
  MakeStart();
  MakeNowaBaza();
  MakeNazwaBazy();
  MakeLists();
  MakeOkresy();
  MakeGeneruj();
  MakeKoniec();
  constexpr int kBackId = 100;
  back_ = &Keep(MakeButton(Window(), wizard_.cmdWstecz, kBackId));
  next_ = &Keep(MakeButton(Window(), wizard_.cmdDalej, kDefaultId));
  cancel_ = &Keep(MakeButton(Window(), wizard_.cmdAnuluj, IDCANCEL));
}

WizardWindow::Page& WizardWindow::AddPage(platform::Panel& model) {
  pages_.push_back({&model, &Keep(MakePage(Window(), model, wizard_.labTytul)), {}});
  return pages_.back();
}

void WizardWindow::Add(Page& page, ViewPtr view, const RECT& area) {
  page.controls.push_back({&Keep(std::move(view)), area});
}

void WizardWindow::MakeStart() {
  constexpr int kApart = 20;
  Page& page = AddPage(wizard_.pboxStart);
  const HWND at = page.view->Window();
  int top = 6;
  for (platform::OptionButton* option : {&wizard_.obStartNowa, &wizard_.obStartDodaj,
                                         &wizard_.obStartWzorzec, &wizard_.obStartSprawdz}) {
    Add(page, MakeOption(at, *option, option == &wizard_.obStartNowa), Line(top, kChoice));
    top += kApart;
  }
}

void WizardWindow::MakeNowaBaza() {
  Page& page = AddPage(wizard_.pboxNowaBaza);
  const HWND at = page.view->Window();
  Add(page, MakeLabel(at, wizard_.labNBazaNazwa), Line(0, kLabel));
  Add(page, MakeTextBox(at, wizard_.txtNBazaNazwa), Line(11, kField));
  Add(page, MakeLabel(at, wizard_.labNBazaFolder), Line(32, kLabel));
  Add(page, MakeTextWithButton(at, wizard_.txtNBazaFolder), Line(43, kField));
  Add(page, MakeLabel(at, wizard_.labBazy), Line(64, kLabel));
  Add(page, MakeList(at, wizard_.lstBazy), Line(75, kPageHeight - 75));
}

// The options stand together in the order of the keyboard, so that the arrows go from one to the other;
// of the two fields one alone is active.
void WizardWindow::MakeNazwaBazy() {
  Page& page = AddPage(wizard_.pboxNazwaBazy);
  const HWND at = page.view->Window();
  Add(page, MakeLabel(at, wizard_.labNazwaBazy), Line(0, kLabel));
  Add(page, MakeOption(at, wizard_.obListaBaz, true), Line(16, kChoice));
  Add(page, MakeOption(at, wizard_.obInnaLok, false), Line(54, kChoice));
  KeepName(at, wizard_.obListaBaz.Caption());
  Add(page, MakeCombo(at, wizard_.cmbBazaNazwa, true), Line(30, kField, kIndent));
  KeepName(at, wizard_.obInnaLok.Caption());
  Add(page, MakeTextWithButton(at, wizard_.txtBazaNazwa), Line(68, kField, kIndent));
  Add(page, MakeLabel(at, wizard_.labBadanie), Line(96, 2 * kLabel));
}

void WizardWindow::MakeLists() {
  constexpr int kNote = 4 * kLabel;
  Page& programs = AddPage(wizard_.pboxProgBazy);
  HWND at = programs.view->Window();
  Add(programs, MakeLabel(at, wizard_.labProgramy), Line(0, kLabel));
  Add(programs, MakeCheckList(at, wizard_.lstProgramy), Line(11, kPageHeight - 11));

  Page& structures = AddPage(wizard_.pboxStruktura);
  at = structures.view->Window();
  Add(structures, MakeLabel(at, wizard_.labProgDodaj), Line(0, kLabel));
  Add(structures, MakeCheckList(at, wizard_.lstProgDodaj), Line(11, kPageHeight - 11 - kNote - 4));
  Add(structures, MakeLabel(at, wizard_.labUwaga), Line(kPageHeight - kNote, kNote));
}

void WizardWindow::MakeOkresy() {
  Page& page = AddPage(wizard_.pboxOkresy);
  const HWND at = page.view->Window();
  const struct {
    platform::Label &name, &month, &year;
    platform::OrvCombo& months;
    platform::OrvUpDown& years;
    int top;
  } periods[] = {{wizard_.labOd, wizard_.labOdMiesiac, wizard_.labOdRok, wizard_.cmbOdMiesiac,
                  wizard_.txtOdRok, 18},
                 {wizard_.labDo, wizard_.labDoMiesiac, wizard_.labDoRok, wizard_.cmbDoMiesiac,
                  wizard_.txtDoRok, 54}};
  constexpr int kMonth = 28, kMonthEnd = 118, kYear = 126, kYearEnd = 176;
  Add(page, MakeLabel(at, wizard_.labOkresy), Line(0, kLabel));
  for (const auto& period : periods) {
    const int field = period.top + 11;
    Add(page, MakeLabel(at, period.name), Line(field + 3, kLabel, 0, kMonth - 4));
    Add(page, MakeLabel(at, period.month), Line(period.top, kLabel, kMonth, kMonthEnd));
    Add(page, MakeCombo(at, period.months, false), Line(field, kField, kMonth, kMonthEnd));
    Add(page, MakeLabel(at, period.year), Line(period.top, kLabel, kYear, kYearEnd));
    Add(page, MakeUpDown(at, period.years), Line(field, kField, kYear, kYearEnd));
  }
}

void WizardWindow::MakeGeneruj() {
  constexpr int kBar = 10, kBarTop = kPageHeight - kBar, kNoteTop = kBarTop - kLabel - 2;
  Page& page = AddPage(wizard_.pboxGeneruj);
  const HWND at = page.view->Window();
  Add(page, MakeLabel(at, wizard_.labOpisGen), Line(0, kLabel));
  Add(page, MakeReadingBox(at, wizard_.txtOpisGen), Line(11, kNoteTop - 11 - 4));
  Add(page, MakeLabel(at, wizard_.labPostep), Line(kNoteTop, kLabel));
  Add(page, MakeProgressBar(at, wizard_.progBar), Line(kBarTop, kBar));
}

void WizardWindow::MakeKoniec() {
  Page& page = AddPage(wizard_.pboxKoniec);
  const HWND at = page.view->Window();
  Add(page, MakeLabel(at, wizard_.labOpisKon), Line(0, kLabel));
  Add(page, MakeReadingBox(at, wizard_.txtOpisKon), Line(11, kPageHeight - 11 - kChoice - 6));
  Add(page, MakeCheckBox(at, wizard_.cbListabaz), Line(kPageHeight - kChoice, kChoice));
}

SIZE WizardWindow::LayOut(const Ruler& ruler) {
  dpi_ = ruler.Dpi();
  const int margin = ruler.X(kMargin);
  const int left = ruler.Twips(wizard_.pboxStart.Left);
  const int width = ruler.X(kPageWidth), height = ruler.Y(kPageHeight);
  const int titleEnd = margin + kTitleLines * ruler.LineHeight();
  // With larger letters the description needs more than the pages' place leaves it.
  const int top = std::max(ruler.Twips(wizard_.pboxStart.Top), titleEnd + ruler.Y(2));
  title_->Place({left, margin, left + width, titleEnd}, ruler);
  for (const Page& page : pages_) {
    page.view->Place({left, top, left + width, top + height}, ruler);
    for (const Placed& control : page.controls) Place(*control.view, control.area, ruler);
  }
  stripTop_ = top + height + margin;
  const SIZE client = {left + width + margin, stripTop_ + ruler.Y(kButtonHeight) + 2 * margin};
  picture_ = {0, 0, left - margin, stripTop_};
  LayOutButtons(ruler, client);
  return client;
}

// Lower right; Cancel a little apart from the pair that belongs together.
void WizardWindow::LayOutButtons(const Ruler& ruler, SIZE client) {
  const int margin = ruler.X(kMargin), width = ruler.X(kButtonWidth);
  const int top = stripTop_ + margin, bottom = top + ruler.Y(kButtonHeight);
  int right = client.cx - margin;
  cancel_->Place({right - width, top, right, bottom}, ruler);
  right -= width + margin;
  next_->Place({right - width, top, right, bottom}, ruler);
  right -= width;
  back_->Place({right - width, top, right, bottom}, ruler);
}

}  // namespace zimbrat::app

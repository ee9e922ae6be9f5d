#include "tests/wizard/tour.h"

#include <commctrl.h>

namespace zimbrat::tests {
namespace {

void VisitCreation(const std::function<void(Stage& stage)>& look) {
  Stage stage({"AB", "CD"});
  stage.Open();
  look(stage);
  stage.Next();
  stage.form->txtNBazaNazwa.SetText(u"Firma");
  stage.form->txtNBazaFolder.SetText(stage.bench.folder.Path());
  look(stage);
  stage.Next();
  stage.form->lstProgramy.SetChecked(0, true);
  look(stage);
  for (int i = 0; i < 3; ++i) {
    stage.Next();
    look(stage);
  }
  EXPECT_EQ(stage.Page(), "Koniec") << stage.Texts();
}

void VisitCheck(const std::function<void(Stage& stage)>& look) {
  Stage stage({"AB", "CD"});
  stage.MakeDatabase(u"Firma", {"AB"});
  stage.Open();
  stage.Click("Aktualizować wersję,  naprawić strukturę bazy");
  stage.Next();
  look(stage);
  stage.Click("Inna lokalizacja");
  stage.form->txtBazaNazwa.SetText(stage.bench.PathOf(u"Firma.mdb"));
  stage.Next();
  EXPECT_EQ(stage.Page(), "Struktura") << stage.Texts();
  look(stage);
}

}  // namespace

void VisitAllPages(const std::function<void(Stage& stage)>& look) {
  VisitCreation(look);
  VisitCheck(look);
}

std::vector<HWND> ControlsOf(const Stage& stage) {
  std::vector<HWND> controls;
  for (const HWND seen : stage.Seen()) {
    const HWND parent = ::GetParent(seen);
    const bool isOnWindow = parent == stage.Top() || IsOfClass(parent, L"ZimbratPlansza");
    if (isOnWindow && !IsOfClass(seen, L"ZimbratPlansza")) controls.push_back(seen);
  }
  return controls;
}

RECT PlaceOf(const Stage& stage, HWND control) {
  RECT place = {};
  ::GetWindowRect(control, &place);
  ::MapWindowPoints(nullptr, stage.Top(), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

bool IsOfClass(HWND control, const wchar_t* type) {
  wchar_t name[64] = {};
  ::GetClassNameW(control, name, 64);
  return ::lstrcmpiW(name, type) == 0;
}

LONG_PTR ButtonKind(HWND button) { return ::GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK; }

}  // namespace zimbrat::tests

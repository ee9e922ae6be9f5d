// The form without a window, filled in as the tests of its pages need it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "suite/ModSysReg.h"
#include "tests/product/wizard_bench.h"

namespace zimbrat::tests {

class Wizard : public testing::Test {
 protected:
  void Load() { wizard_.form.Form_Load(); }
  // With a program and a database that is in the suite's list.
  void LoadWithDatabase() {
    wizard_.WriteProgram("AB");
    wizard_.MakeDatabase(u"Firma", wizard_.bench.PathOf(u"AB.stb"));
    suite::RegBaseKeySave(wizard_.bench.state, u"Firma", wizard_.bench.PathOf(u"Firma.mdb"));
    Load();
    form_.cmbBazaNazwa.SetValue(u"Firma");
  }
  void FillNewDatabase(std::u16string_view name) {
    form_.txtNBazaNazwa.SetText(name);
    form_.txtNBazaFolder.SetText(wizard_.bench.folder.Path());
    for (int i = 0; i < form_.lstProgramy.Count(); ++i) form_.lstProgramy.SetChecked(i, true);
  }
  void Next(int presses = 1) {
    for (int i = 0; i < presses; ++i) form_.cmdDalej.Click();
  }
  std::string Page() const { return Utf8(form_.akt_plansza); }
  // The pages that can be seen: always the one of akt_plansza.
  std::string VisiblePages() {
    const std::pair<const platform::Panel*, const char*> pages[] = {
        {&form_.pboxStart, "Start"},         {&form_.pboxNowaBaza, "NowaBaza"},
        {&form_.pboxNazwaBazy, "NazwaBazy"}, {&form_.pboxProgBazy, "ProgBazy"},
        {&form_.pboxStruktura, "Struktura"}, {&form_.pboxOkresy, "Okresy"},
        {&form_.pboxGeneruj, "Generuj"},     {&form_.pboxKoniec, "Koniec"}};
    std::string visible;
    for (const auto& [page, name] : pages) {
      if (page->Visible()) visible += name;
    }
    return visible;
  }

  WizardBench wizard_;
  app::mdiMenu& form_ = wizard_.form;
};

}  // namespace zimbrat::tests

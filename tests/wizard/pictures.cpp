// Takes a picture of every page and window of the wizard, driven through its tasks with the example
// programs. Words: the folder of the structure files, the folder for the pictures, dots an inch.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/win32/password_window.h"
#include "dialogs/dlgBazaHaslo.h"
#include "platform/error_numbers.h"
#include "tests/wizard/person.h"
#include "tests/wizard/picture.h"
#include "tests/wizard/stage.h"

namespace {

using namespace zimbrat;
using tests::Act;
using tests::Press;
using tests::Then;

class Album {
 public:
  Album(std::filesystem::path folder, std::string suffix)
      : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

  void Take(HWND window, const std::string& name) {
    if (!tests::TakePicture(window, folder_ / (name + suffix_ + ".bmp"))) ++failures_;
  }
  Act Taking(const std::string& name) {
    return [this, name](HWND dialog) { Take(dialog, name); };
  }
  int Failures() const { return failures_; }

 private:
  std::filesystem::path folder_;
  std::string suffix_;
  int failures_ = 0;
};

void TakeExamples(tests::Stage& stage, const std::filesystem::path& structures) {
  for (const auto& file : std::filesystem::directory_iterator(structures)) {
    if (file.path().extension() != L".stb") continue;
    std::filesystem::copy_file(file.path(), std::filesystem::path(stage.bench.folder.Path()) /
                                                file.path().filename());
  }
  std::filesystem::copy_file(structures.parent_path() / "errors" / "Errormsg.txt",
                             std::filesystem::path(stage.bench.PathOf(u"Errormsg.txt")));
}

void TakeNewDatabase(tests::Stage& stage, Album& album) {
  album.Take(stage.Top(), "1-start");
  stage.Next();
  stage.form->txtNBazaNazwa.SetText(u"Firma ABC");
  stage.form->txtNBazaFolder.SetText(stage.bench.folder.Path());
  album.Take(stage.Top(), "2-nowa-baza");
  stage.Next();
  for (int i = 0; i < stage.form->lstProgramy.Count(); ++i) stage.form->lstProgramy.SetChecked(i, true);
  album.Take(stage.Top(), "3-programy");
  stage.Next();
  album.Take(stage.Top(), "4-okresy");
  stage.Next();
  album.Take(stage.Top(), "5-podsumowanie");
  stage.Next();
  album.Take(stage.Top(), "6-wynik");
}

void TakeExistingDatabase(tests::Stage& stage, Album& album) {
  stage.form->obStartSprawdz.Select();
  stage.Next();
  stage.form->obInnaLok.Select();
  stage.form->txtBazaNazwa.SetText(stage.bench.PathOf(u"Firma ABC.mdb"));
  album.Take(stage.Top(), "7-baza");
  stage.Next();
  album.Take(stage.Top(), "8-struktury");
  stage.Next();
  {
    const tests::Person person({Then(album.Taking("11-pytanie"), Press(IDNO))});
    stage.Click("Anuluj");
  }
}

// The name of a database that is there: the question in the middle of the run, and what follows a no.
void TakeFailedRun(tests::Stage& stage, Album& album) {
  while (stage.Page() != "Start") stage.Click("< Wstecz");
  stage.form->obStartNowa.Select();
  stage.form->txtNBazaNazwa.SetText(u"Firma ABC");
  stage.form->txtNBazaFolder.SetText(stage.bench.folder.Path());
  stage.form->lstProgramy.SetChecked(0, true);
  stage.Next(4);
  {
    const Act look = [&](HWND box) {
      album.Take(stage.Top(), "14-praca");
      album.Take(box, "15-nadpisanie");
    };
    const tests::Person person({Then(look, Press(IDNO))});
    stage.Click("Utwórz");
  }
  album.Take(stage.Top(), "9-blad");
}

void TakeDialogs(tests::Stage& stage, Album& album) {
  {
    const tests::Person person({Then(album.Taking("12-folder"), Press(IDCANCEL))});
    stage.form->txtNBazaFolder.Click();
  }
  {
    const tests::Person person({Then(album.Taking("13-plik"), Press(IDCANCEL))});
    stage.form->txtBazaNazwa.Click();
  }
  {
    const tests::Person person({Then(album.Taking("18-informacje"), Press(IDOK))});
    stage.form->ShowInformation();
  }
  dialogs::dlgBazaHaslo password(stage.windows);
  password.NoweHaslo(true);
  password.txtOpis.SetText(stage.bench.PathOf(u"Firma ABC.mdb"));
  app::PasswordWindow window(password, stage.windows, stage.Top());
  ::ShowWindow(window.Window(), SW_SHOW);
  stage.Pump();
  album.Take(window.Window(), "10-haslo");
}

void TakeErrors(tests::Stage& stage, Album& album) {
  const Act open = [](HWND dialog) {
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
      if (tests::TextOf(child) == "&Szczegóły") ::SendMessageW(child, BM_CLICK, 0, 0);
    }
  };
  const tests::Person person({Then(Then(album.Taking("16-blad-programu"), open),
                                   Then(album.Taking("17-blad-szczegoly"), Press(IDCANCEL)))},
                             L"ZimbratOkno");
  stage.host.ReportError({platform::kErrFileInUse, u"DAO.Workspace",
                          u"Nie można użyć „" + stage.bench.PathOf(u"Firma ABC.mdb") + u"”; plik jest już używany."},
                         u"RegBaseKeySave");
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc < 4) return 2;
  const auto structures = std::filesystem::absolute(argv[1]);
  // The file dialog moves the current folder.
  Album album(std::filesystem::absolute(argv[2]), std::string("-") + argv[3]);
  const auto dpi = static_cast<unsigned>(std::atoi(argv[3]));
  tests::Stage first(std::vector<std::string>{});
  TakeExamples(first, structures);
  first.Open();
  if (app::DpiOf(first.Top()) != dpi) first.window->SetDpi(dpi);
  TakeNewDatabase(first, album);
  tests::Stage second(std::vector<std::string>{});
  TakeExamples(second, structures);
  std::filesystem::copy_file(std::filesystem::path(first.bench.PathOf(u"Firma ABC.mdb")),
                             std::filesystem::path(second.bench.PathOf(u"Firma ABC.mdb")));
  second.Open();
  if (app::DpiOf(second.Top()) != dpi) second.window->SetDpi(dpi);
  TakeExistingDatabase(second, album);
  TakeFailedRun(second, album);
  TakeDialogs(second, album);
  TakeErrors(second, album);
  return album.Failures() == 0 && !testing::Test::HasFailure() ? 0 : 1;
}

#include "dialogs/dlgBazaHaslo.h"

namespace zimbrat::dialogs {

dlgBazaHaslo::dlgBazaHaslo(platform::Host& host) : host_(host) {
  labOpis.SetCaption(u"Wprowadź");
  labHaslo.SetCaption(u"Potwierdź");
  txtOpis.SetMasked(true);
  txtHaslo.SetMasked(true);
  cmdOK.SetCaption(u"OK");
  cmdOK.SetOnClick([this] { cmdOK_Click(); });
  cmdAnuluj.SetCaption(u"Anuluj");
  cmdAnuluj.SetOnClick([this] { cmdAnuluj_Click(); });
}

void dlgBazaHaslo::NoweHaslo(bool opcja_nowe) {
  constexpr std::size_t kLongestDescription = 255;
  if (opcja_nowe) {
    SetCaption(u"Wprowadź hasło bazy");
    cmdOK.SetCaption(u"Zapisz");
    txtOpis.SetMaxLength(kLongestDescription);
    SetCaption(u"Podaj hasło");  // the caption that stays
    txtOpis.SetEnabled(false);
    txtOpis.SetMasked(false);
    labOpis.SetCaption(u"Baza");
    labHaslo.SetCaption(u"Haslo");  // sic
  }
  host_.SetBusy(false);
}

void dlgBazaHaslo::cmdOK_Click() {
  if (mustConfirm ? txtHaslo.Text() == txtOpis.Text() : !txtHaslo.Text().empty()) {
    SetVisible(false);
    return;
  }
  if (!mustConfirm) {
    host_.ShowMessage(u"Wprowadź haslo dostępu do bazy lub naciśnij Anuluj.",  // sic
                      platform::kMsgExclamation, u"Hasło bazy");
    return;
  }
  host_.ShowMessage(
      u"Hasła wprowadzone w polach: 'Wprowadź' i 'Potwierdź' muszą być identyczne. Popraw hasło i "
      u"spróbuj ponownie.",
      platform::kMsgExclamation, u"Hasło");
  txtHaslo.SetFocus();
  txtHaslo.SelectAll();
}

void dlgBazaHaslo::cmdAnuluj_Click() {
  txtHaslo.SetText(u"");
  Zapisz = false;
  SetVisible(false);
}

std::optional<platform::Secret> PromptForPassword(
    platform::Host& host, std::u16string_view database,
    const std::function<void(dlgBazaHaslo& form)>& showModal) {
  dlgBazaHaslo form(host);
  form.NoweHaslo(true);
  form.txtOpis.SetText(database);
  form.Zapisz = true;
  showModal(form);
  if (!form.Zapisz) return std::nullopt;
  return platform::Secret(form.txtHaslo.Text());
}

}  // namespace zimbrat::dialogs

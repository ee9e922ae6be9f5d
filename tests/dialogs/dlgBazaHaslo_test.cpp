#include "dialogs/dlgBazaHaslo.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

using dialogs::dlgBazaHaslo;
using platform::Change;

constexpr const char* kDiffer =
    "Hasła wprowadzone w polach: 'Wprowadź' i 'Potwierdź' muszą być identyczne. Popraw hasło i "
    "spróbuj ponownie.|Hasło";
constexpr const char* kEmpty = "Wprowadź haslo dostępu do bazy lub naciśnij Anuluj.|Hasło bazy";

class MessageHost : public FakeHost {
 public:
  std::string shown;

  int ShowMessage(std::u16string_view prompt, int, std::u16string_view title) override {
    shown += Utf8(prompt) + "|" + Utf8(title);
    return platform::kAnswerOk;
  }
};

TEST(PasswordForm, ClosesWithOkOnlyWhenItsFieldsAllowIt) {
  const std::tuple<bool, const char16_t*, const char16_t*, const char*> rows[] = {
      // with confirmation, txtOpis, txtHaslo, message (none: closes)
      {true, u"Żółw", u"Żółw", ""},
      {true, u"", u"", ""},
      {true, u"Żółw", u"żółw", kDiffer},
      {true, u"a", u"a ", kDiffer},
      {false, u"C:\\a.mdb", u"x", ""},
      {false, u"x", u" ", ""},
      {false, u"", u"", kEmpty},
      {false, u"C:\\a.mdb", u"", kEmpty}};
  for (const auto& [confirms, described, password, message] : rows) {
    MessageHost host;
    dlgBazaHaslo form(host);
    form.mustConfirm = confirms;
    form.Zapisz = true;
    form.txtOpis.SetText(described);
    form.txtHaslo.SetText(password);
    form.SetVisible(true);
    std::vector<Change> asked;
    form.txtHaslo.SetListener([&](Change change) { asked.push_back(change); });
    form.cmdOK.Click();

    const std::string row = Utf8(described) + "/" + Utf8(password);
    const bool closes = std::string_view(message).empty();
    EXPECT_EQ(host.shown, message) << row;
    EXPECT_EQ(form.Visible(), !closes) << row;
    EXPECT_TRUE(form.Zapisz) << row;
    EXPECT_EQ(Utf8(form.txtHaslo.Text()), Utf8(password)) << row;
    EXPECT_EQ(asked, confirms && !closes ? (std::vector{Change::Focus, Change::Selection})
                                         : std::vector<Change>{})
        << row;
  }
}

TEST(PasswordForm, CancelForgetsThePassword) {
  MessageHost host;
  dlgBazaHaslo form(host);
  form.Zapisz = true;
  form.txtHaslo.SetText(u"tajne");
  form.SetVisible(true);
  form.cmdAnuluj.Click();
  EXPECT_FALSE(form.Zapisz);
  EXPECT_TRUE(form.txtHaslo.Text().empty());
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(host.shown, "");
}

std::string Look(const dlgBazaHaslo& form) {
  const auto field = [](const platform::Label& label, const platform::TextBox& box) {
    return Utf8(label.Caption()) + (box.Masked() ? " masked" : " plain") +
           (box.Enabled() ? "" : " disabled") + "; ";
  };
  return field(form.labOpis, form.txtOpis) + field(form.labHaslo, form.txtHaslo) +
         Utf8(form.cmdOK.Caption()) + "; " + Utf8(form.cmdAnuluj.Caption()) + "; " +
         Utf8(form.Caption());
}

TEST(PasswordForm, LooksAsDesignedUntilItAsksForOneDatabase) {
  FakeHost host;
  dlgBazaHaslo form(host);
  EXPECT_FALSE(form.Visible());
  const std::string designed = "Wprowadź masked; Potwierdź masked; OK; Anuluj; ";
  EXPECT_EQ(Look(form), designed);
  form.NoweHaslo(false);
  EXPECT_EQ(Look(form), designed);
  EXPECT_EQ(host.busyDepth, -1) << "the pointer is set back in either case";
  form.NoweHaslo(true);
  EXPECT_EQ(Look(form), "Baza plain disabled; Haslo masked; Zapisz; Anuluj; Podaj hasło");
  EXPECT_EQ(host.busyDepth, -2);
}

TEST(PasswordPrompt, ShowsTheDatabaseAndBringsTheAnswer) {
  MessageHost host;
  const std::u16string path(300, u'p');
  const auto typed = dialogs::PromptForPassword(host, path, [&](dlgBazaHaslo& form) {
    EXPECT_EQ(form.txtOpis.Text(), path.substr(0, 255));
    EXPECT_EQ(Utf8(form.labOpis.Caption()), "Baza");
    form.SetVisible(true);
    form.cmdOK.Click();
    EXPECT_TRUE(form.Visible()) << "an empty password is no answer";
    form.txtHaslo.SetText(u"Tajne");
    form.cmdOK.Click();
    EXPECT_FALSE(form.Visible());
  });
  ASSERT_TRUE(typed);
  EXPECT_EQ(Utf8(*typed), "Tajne");
  EXPECT_FALSE(dialogs::PromptForPassword(host, path, [](dlgBazaHaslo& form) {
    form.txtHaslo.SetText(u"Tajne");
    form.cmdAnuluj.Click();
  }));
}

}  // namespace
}  // namespace zimbrat::tests

// The report by mail: by link, through Outlook, through MAPI; what refuses on the way.
#include <gtest/gtest.h>

#include "errors/ModOutlook.h"
#include "errors/mail_method.h"
#include "suite/ModSysReg.h"
#include "suite/product.h"
#include "tests/errors/error_bench.h"

namespace zimbrat::tests {
namespace {

using errors::MailWay;

std::string Subject() {
  return "Błąd programu " + Utf8(suite::ProductTitle()) + " wersja " + Utf8(suite::ProductVersion());
}
std::string Address() { return Utf8(suite::SupportAddress()); }
std::string Join(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

const std::string kBody =
    "Proszę nie kasować poniższego tekstu\r\n-----------------------------------------\r\nNumer: 3022\r\n"
    "Źródło: DAO.Field\r\nOpis1: Wyjaśnienie & #\r\nOpis2: Opis & # [Procedura]";

class Mail : public testing::Test {
 protected:
  // One report of which Send is pressed.
  void Send(std::u16string_view method, std::u16string_view description = u"Opis & #") {
    bench_.state.mailMethod = method;
    bench_.WriteTexts("[DAO]\n3022=Wyjaśnienie & #\n");
    const int depth = bench_.host.busyDepth;
    bench_.use = [&](errors::dlgError& dialog) {
      bench_.use = [](errors::dlgError& nested) { nested.cmdOK.Click(); };
      dialog.cmdWyslij.Click();
      EXPECT_TRUE(dialog.Visible()) << "the dialog stays open";
      EXPECT_EQ(bench_.host.busyDepth, depth - 1 - nested_) << "the hourglass is gone";
      dialog.cmdOK.Click();
    };
    bench_.Report(3022, u"DAO.Field", description);
  }

  ErrorBench bench_;
  int nested_ = 0;  // reports that Send itself leads to
};

TEST(MailMethod, ChoosesTheWay) {
  const std::pair<const char16_t*, MailWay> rows[] = {
      {u"1", MailWay::Link},     {u"", MailWay::Outlook},    {u"2", MailWay::Outlook}, {u" 2 ", MailWay::Outlook},
      {u"2,0", MailWay::Outlook}, {u"abc", MailWay::Outlook}, {u"1a", MailWay::Outlook}, {u" 1", MailWay::Mapi},
      {u"0", MailWay::Mapi},     {u"3", MailWay::Mapi},      {u"2,4", MailWay::Mapi},  {u"-2", MailWay::Mapi}};
  for (const auto& [method, way] : rows) EXPECT_EQ(errors::WayOf(method), way) << Utf8(method);
}

TEST(MailMethod, IsReadAndNotWritten) {
  Bench bench;
  EXPECT_EQ(errors::ReadMailMethod(bench.registry), u"");
  suite::RegKeyCreate(bench.registry, suite::kWizardKey, platform::RegistryRoot::CurrentUser);
  EXPECT_EQ(errors::ReadMailMethod(bench.registry), u"");
  EXPECT_EQ(suite::RegKeyValueGet(bench.registry, suite::kWizardKey, errors::kMailMethodValue), suite::RegVariant());
  suite::RegStringSave(bench.registry, suite::kWizardKey, errors::kMailMethodValue, u"3");
  EXPECT_EQ(errors::ReadMailMethod(bench.registry), u"3");
}

TEST_F(Mail, GoesThroughOutlookUnlessTold) {
  for (const std::u16string_view method : {u"", u"2", u"poczta"}) {
    bench_.automation.done.clear();
    Send(method);
    EXPECT_EQ(Join(bench_.automation.done), "Outlook.application\nCreateItem(0)\nSubject=" + Subject() + "\nTo=" +
                                                Address() + "\nbody=" + kBody + "\nDisplay()\n");
  }
  EXPECT_TRUE(bench_.host.messages.empty());
  EXPECT_EQ(bench_.dialogs, 3);
}

TEST_F(Mail, IsHtmlWhereItSaysSo) {
  Send(u"", u"a <html> b");
  EXPECT_EQ(bench_.automation.done.at(4).substr(0, 9), "HTMLBody=");
  bench_.automation.done.clear();
  Send(u"", u"a <HTML> b");
  EXPECT_EQ(bench_.automation.done.at(4).substr(0, 5), "body=");
}

TEST_F(Mail, SaysThatThereIsNoOutlook) {
  bench_.automation.isInstalled = false;
  Send(u"");
  ASSERT_EQ(bench_.host.messages.size(), 1u);
  EXPECT_EQ(Utf8(bench_.host.messages[0]),
            "Błąd nr 429. Program nie może wysłać pocztę elektroniczną stosująć aplikację MS Outlook. Zmień "
            "ustawienia programu: menu Narzędzia, polecenie Parametry programu, zakładka Aplikacja i spróbuj "
            "ponownie.");
  EXPECT_EQ(bench_.dialogs, 1);
}

TEST_F(Mail, OfOutlookWithoutAnItemIsLeft) {
  bench_.automation.givesItems = false;
  Send(u"");
  EXPECT_EQ(Join(bench_.automation.done), "Outlook.application\nCreateItem(0)\n");
  EXPECT_EQ(bench_.dialogs, 1);
}

TEST_F(Mail, ThatOutlookRefusesIsReportedInItsTurn) {
  for (const char* member : {"CreateItem", "Subject", "To", "body", "Display"}) {
    bench_.automation.refused = member;
    bench_.dialogs = 0;
    nested_ = 1;
    Send(u"");
    EXPECT_EQ(bench_.dialogs, 2) << member;
    EXPECT_EQ(Utf8(bench_.host.reports.back()), "SendOutlookMail");
  }
  EXPECT_TRUE(bench_.state.forms.empty());
}

TEST_F(Mail, OfALinkIsPassedAsItStands) {
  Send(u"1");
  ASSERT_EQ(bench_.shell.opened.size(), 1u);
  EXPECT_EQ(Utf8(bench_.shell.opened[0]),
            "mailto:" + Address() + "?subject=" + Subject() +
                "&Body=(Nie kasować) :     Numer: 3022   Źródło: DAO.Field   Opis1: Wyjaśnienie & #   Opis2: "
                "Opis & # [Procedura]");
  Send(u"1", std::u16string(5000, u'ł'));
  EXPECT_GT(bench_.shell.opened[1].size(), 5000u) << "nothing is cut";
  EXPECT_TRUE(bench_.automation.done.empty());
}

TEST_F(Mail, GoesThroughMapiForOtherNumbers) {
  const std::string send = "Send 7 to " + Address() + ": " + Subject() +
                           "\n(>tutaj wpisz okoliczności wystąpienia błędu<)\r\n\r\n\r\n" + kBody + "\r\n";
  Send(u"3");
  EXPECT_EQ(Join(bench_.mapi.done), "SignOn\n" + send + "\nSignOff 7\n");
  // Each step that is refused is passed over, and nobody is told.
  const std::pair<const char*, std::string> rows[] = {
      {"SignOn", "SignOff 0\n"}, {"Send", "SignOn\nSignOff 7\n"}, {"SignOff", "SignOn\n" + send + "\n"}};
  for (const auto& [refused, done] : rows) {
    bench_.mapi.done.clear();
    bench_.mapi.refused = refused;
    Send(u"3");
    EXPECT_EQ(Join(bench_.mapi.done), done) << refused;
  }
  EXPECT_TRUE(bench_.host.messages.empty());
  EXPECT_EQ(bench_.dialogs, 4);
}

// A session that could not be ended is used for the next mail.
TEST_F(Mail, SignsOnOnceWhileTheSessionLasts) {
  bench_.state.mailMethod = u"3";
  bench_.mapi.refused = "SignOff";
  bench_.use = [&](errors::dlgError& dialog) {
    dialog.cmdWyslij.Click();
    dialog.cmdWyslij.Click();
  };
  bench_.Report(1, u"DAO", u"x");
  EXPECT_EQ(std::count(bench_.mapi.done.begin(), bench_.mapi.done.end(), "SignOn"), 1);
}

// While the mail program is at work the dialog's buttons may still be heard; ending the program stays possible.
TEST_F(Mail, IsDisturbedByAbortAlone) {
  class Impatient : public FakeMapi {
   public:
    errors::dlgError* dialog = nullptr;
    void Send(platform::MailSession, const platform::MailMessage&) override {
      dialog->cmdWyslij.Click();
      dialog->cmdOK.Click();
      EXPECT_TRUE(dialog->Visible());
      dialog->cmdPrzerwij.Click();
    }
  } mapi;
  int ends = 0;
  bench_.host.answer = platform::kAnswerYes;
  bench_.state.mailMethod = u"3";
  const errors::Outside outside{bench_.shell, bench_.automation, mapi, [&] { ++ends; }};
  errors::dlgError dialog(bench_.state, outside);
  mapi.dialog = &dialog;
  dialog.SetVisible(true);
  dialog.cmdWyslij.Click();
  EXPECT_EQ(Join(mapi.done), "SignOn\nSignOff 7\n");
  EXPECT_EQ(ends, 1);
}

TEST_F(Mail, TakesAttachments) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"", ""},
      {u"C:\\a b.log", "Attachments()\nAdd(\"C:\\a b.log\")\n"},
      {u"a;ł;c", "Attachments()\nAdd(\"a\")\nAttachments()\nAdd(\"ł\")\nAttachments()\nAdd(\"c\")\n"},
      {u"a;", "Attachments()\nAdd(\"a\")\nAttachments()\nAdd(\"\")\n"}};
  for (const auto& [attachments, lines] : rows) {
    bench_.automation.done.clear();
    errors::SendOutlookMail(bench_.state, bench_.automation, u"T", u"do@x", u"Treść", attachments);
    EXPECT_EQ(Join(bench_.automation.done),
              "Outlook.application\nCreateItem(0)\nSubject=T\nTo=do@x\nbody=Treść\n" + std::string(lines) + "Display()\n");
  }
}

TEST_F(Mail, WithAnAttachmentThatIsRefusedEndsInTheDialogAndTheLog) {
  bench_.automation.refused = "Add";
  bench_.WriteTexts("[Microsoft Outlook]\n287=Outlook odmówił.\n");
  bench_.use = [](errors::dlgError& dialog) {
    EXPECT_EQ(Utf8(dialog.txtErrorPolski.Text()), "Outlook odmówił.");
    dialog.cbrejestr.SetValue(1);
    dialog.cmdOK.Click();
  };
  errors::SendOutlookMail(bench_.state, bench_.automation, u"T", u"do@x", u"Treść", u"brak.log");
  EXPECT_EQ(bench_.dialogs, 1);
  EXPECT_EQ(bench_.automation.done.back(), "Attachments()") << "nothing is displayed";
  EXPECT_NE(bench_.Log().find("Źródło=Microsoft Outlook\r\nNumer=287\r\nObiekt=SendOutlookMail\r\n"
                              "Opis=Odmowa [SendOutlookMail]\r\n"),
            std::string::npos)
      << bench_.Log();
}

}  // namespace
}  // namespace zimbrat::tests

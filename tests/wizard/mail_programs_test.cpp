// The report by mail from the error window: Outlook, a MAPI library and a program for links as stand-ins of what a
// system has.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

#include "errors/ModOutlook.h"
#include "suite/ModSysReg.h"
#include "suite/product.h"
#include "tests/wizard/error_driver.h"
#include "tests/wizard/outlook_stand_in.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

using MailPrograms = ErrorDriver;

const std::string kBody =
    "Proszę nie kasować poniższego tekstu\r\n-----------------------------------------\r\nNumer: 3022\r\n"
    "Źródło: DAO.Field\r\nOpis1: Wyjaśnienie żółci.\r\nOpis2: Powtórzenie [RegBaseKeySave]";

TEST_F(MailPrograms, LaysAMailBeforeTheUserInOutlook) {
  OutlookStandIn outlook;
  Report({Then(Click("Wyślij"), Click("OK"))});
  const std::vector<std::string> expected = {"CreateItem(0)", "Subject=" + ReportSubject(), "To=" + ReportAddress(),
                                             "Body=" + kBody, "Display()"};
  EXPECT_EQ(outlook.done, expected);
  outlook.done.clear();
  Report({Then(Click("Wyślij"), Click("OK"))}, u"<html><b>Żółć</b></html>");
  ASSERT_EQ(outlook.done.size(), 5u);
  EXPECT_EQ(outlook.done[3].substr(0, 9), "HTMLBody=");
  EXPECT_NE(outlook.done[3].find("<html><b>Żółć</b></html>"), std::string::npos);
  EXPECT_EQ(outlook.References(), 0);
}

TEST_F(MailPrograms, AttachesFilesInOutlook) {
  OutlookStandIn outlook;
  errors::SendOutlookMail(stage_.state, stage_.automation, u"Temat ł", u"a@b", u"Treść", u"C:\\Dziennik błędów.log");
  const std::vector<std::string> one = {"CreateItem(0)",  "Subject=Temat ł", "To=a@b",
                                        "Body=Treść",     "Attachments()",   "Add(C:\\Dziennik błędów.log)",
                                        "Display()"};
  EXPECT_EQ(outlook.done, one);
  outlook.done.clear();
  errors::SendOutlookMail(stage_.state, stage_.automation, u"", u"", u"", u"a;b");
  const std::vector<std::string> two = {"CreateItem(0)", "Subject=", "To=", "Body=", "Attachments()", "Add(a)",
                                        "Attachments()", "Add(b)",   "Display()"};
  EXPECT_EQ(outlook.done, two);
  EXPECT_EQ(outlook.References(), 0);
}

TEST_F(MailPrograms, ReportsAnAttachmentThatIsRefused) {
  OutlookStandIn outlook;
  outlook.refused = "Add";
  suite::RegStringSave(stage_.bench.registry, u"", errors::kSaveErrorsValue, u"1");
  {
    const Person person({Then(
                            [](HWND dialog) {
                              Click("Szczegóły")(dialog);
                              EXPECT_NE(SeenIn(dialog).find("287\nŹródło\nMicrosoft Outlook\nOdmowa: żółć [SendOutlookMail]"),
                                        std::string::npos)
                                  << SeenIn(dialog);
                            },
                            Click("OK"))},
                        kFormClass);
    errors::SendOutlookMail(stage_.state, stage_.automation, u"T", u"a@b", u"Treść", u"brak.log");
  }
  EXPECT_NE(Log().find("Numer=287\r\nObiekt=SendOutlookMail\r\nOpis=Odmowa: żółć [SendOutlookMail]\r\n"),
            std::string::npos)
      << Log();
  EXPECT_EQ(outlook.References(), 0);
}

TEST_F(MailPrograms, SaysThatThereIsNoOutlook) {
  HWND dialog = nullptr;
  const Act send = Then([&](HWND shown) { dialog = shown; }, Start("Wyślij"));
  const Act answer = [&](HWND box) {
    EXPECT_EQ(::GetWindow(box, GW_OWNER), dialog);
    Press(IDOK)(box);
    WaitUntilGone(box);
    Close()(dialog);
  };
  const auto seen = Report({send, answer});
  EXPECT_EQ(seen.at(1), Utf8(suite::MessageTitle()) +
                            ": Błąd nr 429. Program nie może wysłać pocztę elektroniczną stosująć aplikację MS Outlook. "
                            "Zmień ustawienia programu: menu Narzędzia, polecenie Parametry programu, zakładka "
                            "Aplikacja i spróbuj ponownie.");
}

std::wstring FolderOfThisProgram() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path().wstring();
}

class MapiPrograms : public ErrorDriver {
 protected:
  MapiPrograms() {
    stage_.state.mailMethod = u"3";
    ::SetEnvironmentVariableW(L"ZIMBRAT_MAPI_RECORD", platform::Lend(record_));
  }
  void Refuse(const wchar_t* call) { ::SetEnvironmentVariableW(L"ZIMBRAT_MAPI_REFUSES", call); }
  // As UTF-8.
  std::string Record() {
    return Utf8(platform::Utf16FromAnsi1250(stage_.bench.folder.Read(u"mapi.txt")));
  }

  std::u16string record_ = stage_.bench.PathOf(u"mapi.txt");
  RegistryChange client_{L"SOFTWARE\\Clients\\Mail", L"", L"ZimbratPoczta"};
  RegistryChange library_{L"SOFTWARE\\Clients\\Mail\\ZimbratPoczta", L"DLLPath",
                          FolderOfThisProgram() + L"\\mapi_stand_in.dll"};
};

TEST_F(MapiPrograms, SendsThroughTheMailProgramOfTheSystem) {
  Refuse(nullptr);
  Report({Then(Click("Wyślij"), Click("OK"))});
  EXPECT_EQ(Record(), "MAPILogon 1\nMAPISendMail 77 8 to 1 " + ReportAddress() + " SMTP:" + ReportAddress() + ": " + ReportSubject() +
                          "\n(>tutaj wpisz okoliczności wystąpienia błędu<)\r\n\r\n\r\n" + kBody +
                          "\r\n\nMAPILogoff 77\n");
}

TEST_F(MapiPrograms, SaysNothingWhenTheMailProgramRefuses) {
  const std::pair<const wchar_t*, std::string> rows[] = {{L"MAPILogon", ""},
                                                         {L"MAPISendMail", "MAPILogon 1\nMAPILogoff 77\n"}};
  for (const auto& [refused, record] : rows) {
    stage_.bench.folder.Write(u"mapi.txt", "");
    Refuse(refused);
    const auto seen = Report({Then(Click("Wyślij"), Click("OK"))});
    EXPECT_EQ(seen.size(), 1u) << "no other dialog";
    EXPECT_EQ(Record(), record);
  }
}

TEST_F(MailPrograms, OpensALinkOfTheMailProgram) {
  const std::u16string caught = stage_.bench.PathOf(u"link.txt");
  const RegistryChange command(L"SOFTWARE\\Classes\\mailto\\shell\\open\\command", L"",
                               L"\"" + FolderOfThisProgram() + L"\\link_catcher.exe\" \"" + platform::Lend(caught) +
                                   L"\" \"%1\"");
  stage_.state.mailMethod = u"1";
  Report({Then(Click("Wyślij"), Click("OK"))}, u"żółć & #1");
  for (int i = 0; i < 500 && !stage_.bench.folder.Exists(u"link.txt"); ++i) ::Sleep(20);
  EXPECT_EQ(stage_.bench.folder.Read(u"link.txt"),
            "mailto:" + ReportAddress() + "?subject=" + ReportSubject() +
                "&Body=(Nie kasować) :     Numer: 3022   Źródło: DAO.Field   Opis1: Wyjaśnienie żółci.   Opis2: "
                "żółć & #1 [RegBaseKeySave]");
}

}  // namespace
}  // namespace zimbrat::tests

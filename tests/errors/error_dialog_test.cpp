// The dialog: what it shows, what closing it leaves behind, where it stands.
#include <gtest/gtest.h>

#include "app/run_host.h"
#include "errors/mail_method.h"
#include "suite/ModSysReg.h"
#include "suite/product.h"
#include "tests/errors/error_bench.h"
#include "tests/product/raising_registry.h"

namespace zimbrat::tests {
namespace {

using errors::dlgError;

constexpr std::u16string_view kRoot;  // the empty path is the user's root itself

std::string ProgramLine() {
  return "Program=" + Utf8(suite::ProductTitle()) + " ver. " + Utf8(suite::ProductVersion()) + "\r\n";
}

// One error, in the order of writing.
std::string LogSection(const std::string& minute, const std::string& source, const std::string& number,
                       const std::string& routine, const std::string& description) {
  return "[" + minute + "]\r\n" + ProgramLine() + "Źródło=" + source + "\r\nNumer=" + number + "\r\nObiekt=" +
         routine + "\r\nOpis=" + description + " [" + routine + "]\r\n";
}

// Each question for the time moves the clock on by one of these.
class PassingClock : public FakeClock {
 public:
  std::vector<std::u16string> times;
  std::u16string ShortTime() override {
    if (times.empty()) return shortTime;
    const std::u16string time = times.front();
    if (times.size() > 1) times.erase(times.begin());
    return time;
  }
};

TEST(ErrorDialog, ShowsTheErrorAndHidesTheDetails) {
  ErrorBench bench;
  bench.WriteTexts("[DAO]\n3022=Wyjaśnienie\n");
  bench.use = [](dlgError& dialog) {
    EXPECT_EQ(Utf8(dialog.Caption()), "Błąd programu");
    EXPECT_EQ(Utf8(dialog.txtErrorPolski.Text()), "Wyjaśnienie");
    EXPECT_EQ(Utf8(dialog.txtErrorNumber.Text()), "3022");
    EXPECT_EQ(Utf8(dialog.txtErrorSource.Text()), "DAO.Recordset");
    EXPECT_EQ(Utf8(dialog.txtErrorOpis.Text()), "Zduplikowane & #1 [Procedura]");
    EXPECT_EQ(Utf8(dialog.errFunkcja), "Procedura");
    const platform::Control* const details[] = {&dialog.labErrorNumber, &dialog.txtErrorNumber,
                                                &dialog.labErrorSource, &dialog.txtErrorSource,
                                                &dialog.txtErrorOpis};
    for (const platform::Control* control : details) EXPECT_FALSE(control->Visible());
    EXPECT_EQ(dialog.Height(), 0);
    dialog.cmdSzczegol.Click();
    for (const platform::Control* control : details) EXPECT_TRUE(control->Visible());
    EXPECT_EQ(dialog.Height(), 4740);
    EXPECT_FALSE(dialog.cmdSzczegol.Enabled());
    EXPECT_TRUE(dialog.Visible());
    dialog.cmdOK.Click();
    EXPECT_FALSE(dialog.Visible());
  };
  bench.Report(3022, u"DAO.Recordset", u"Zduplikowane & #1");
  EXPECT_EQ(bench.dialogs, 1);
  EXPECT_EQ(bench.host.busyDepth, -1) << "the hourglass of the routine that failed is taken away once";
  EXPECT_TRUE(bench.state.forms.empty());
}

TEST(ErrorDialog, KeepsTheChoiceWhereTheRunsKeyIs) {
  struct Row {
    const char16_t* saved;  // null: nothing
    int preset;
    int left;
    const char* kept;
    bool isLogged;
  };
  const Row rows[] = {{nullptr, 0, 0, "0", false}, {nullptr, 0, 1, "1", true}, {u"1", 1, 1, "1", true},
                      {u"1", 1, 0, "0", false},    {u"0", 0, 0, "0", false},   {u"2", 0, 2, "2", false},
                      {u"01", 0, 0, "0", false},   {u" 1", 0, 0, "0", false},  {u"", 0, 1, "1", true}};
  for (const std::u16string_view key : {kRoot, suite::kWizardKey}) {
    for (const Row& row : rows) {
      ErrorBench bench;
      bench.state.StatusKey = key;
      if (row.saved) suite::RegStringSave(bench.bench.registry, key, errors::kSaveErrorsValue, row.saved);
      bench.use = [&](dlgError& dialog) {
        EXPECT_EQ(dialog.cbrejestr.Value(), row.preset);
        dialog.cbrejestr.SetValue(row.left);
        dialog.Unload();
      };
      bench.Report(13, u"Zimbrat", u"Niezgodność");
      EXPECT_EQ(bench.SavedChoice(key), row.kept) << row.left;
      EXPECT_EQ(bench.SavedChoice(key.empty() ? suite::kWizardKey : kRoot), "<none>");
      EXPECT_EQ(!bench.Log().empty(), row.isLogged) << row.left;
    }
  }
}

TEST(ErrorLog, HasASectionForEachMinute) {
  ErrorBench bench;
  bench.use = [](dlgError& dialog) {
    dialog.cbrejestr.SetValue(1);
    dialog.cmdOK.Click();
  };
  bench.Report(3022, u"DAO.Recordset", u"Powtórzenie", u"RegBaseKeySave");
  const std::string first = LogSection("05.02.2003 06:00", "DAO.Recordset", "3022", "RegBaseKeySave", "Powtórzenie");
  EXPECT_EQ(bench.Log(), first);
  bench.Report(-2147467259, u"Zimbrat", u"Żółć", u"SendOutlookMail");
  const std::string second = LogSection("05.02.2003 06:00", "Zimbrat", "-2147467259", "SendOutlookMail", "Żółć");
  EXPECT_EQ(bench.Log(), second) << "in one minute the later error takes the place of the earlier";
  bench.bench.clock.shortDate = u"5/2/2003";
  bench.bench.clock.shortTime = u"7:01 PM";
  bench.Report(3022, u"DAO.Recordset", u"Powtórzenie", u"RegBaseKeySave");
  EXPECT_EQ(bench.Log(),
            second + LogSection("5/2/2003 7:01 PM", "DAO.Recordset", "3022", "RegBaseKeySave", "Powtórzenie"));
  EXPECT_TRUE(bench.bench.folder.Exists(u"Error.log"));
  bench.state.errorFolder = bench.bench.PathOf(u"dziennik");
  bench.bench.folder.Write(u"dziennik/x", "");
  bench.Report(9, u"Zimbrat", u"Inny folder");
  EXPECT_TRUE(bench.bench.folder.Exists(u"dziennik/Error.log"));
}

TEST(ErrorLog, IsSplitWhereTheMinutePasses) {
  ErrorBench bench;
  PassingClock clock;
  clock.times = {u"06:00", u"06:00", u"06:01"};
  suite::ProgramState state({bench.bench.files, bench.bench.registry, bench.bench.profile, clock,
                             bench.bench.environment, bench.host, nullptr});
  dlgError dialog(state, bench.outside);
  dialog.txtErrorSource.SetText(u"DAO");
  dialog.txtErrorNumber.SetText(u"1");
  dialog.errFunkcja = u"F";
  dialog.txtErrorOpis.SetText(u"x [F]");
  dialog.WriteErrorLog();
  EXPECT_EQ(bench.Log(), "[05.02.2003 06:00]\r\n" + ProgramLine() +
                             "Źródło=DAO\r\n[05.02.2003 06:01]\r\nNumer=1\r\nObiekt=F\r\nOpis=x [F]\r\n");
}

TEST(ErrorLog, ThatCannotBeWrittenStopsNothing) {
  ErrorBench bench;
  bench.bench.folder.Write(u"Error.log/x", "a folder of that name");
  bench.use = [](dlgError& dialog) {
    dialog.cbrejestr.SetValue(1);
    dialog.cmdOK.Click();
    EXPECT_FALSE(dialog.Visible());
  };
  bench.Report(3022, u"DAO", u"x");
  EXPECT_EQ(bench.SavedChoice(kRoot), "1");
}

TEST(ErrorDialog, EndsTheProgramWithoutATrace) {
  const std::pair<int, int> rows[] = {{platform::kAnswerNo, 0}, {platform::kAnswerYes, 1}, {platform::kAnswerNone, 0}};
  for (const auto& [answer, ends] : rows) {
    ErrorBench bench;
    suite::RegStringSave(bench.bench.registry, kRoot, errors::kSaveErrorsValue, u"0");
    bench.host.answer = answer;
    dlgError* shown = nullptr;
    bench.use = [&](dlgError& dialog) {
      shown = &dialog;
      dialog.cbrejestr.SetValue(1);
      dialog.cmdPrzerwij.Click();
      EXPECT_TRUE(dialog.Visible());
    };
    // Somebody closes the window under the question: that runs no step either.
    bench.host.onMessage = [&] { shown->Unload(); };
    bench.Report(3022, u"DAO", u"x");
    EXPECT_EQ(bench.ends, ends);
    EXPECT_EQ(bench.SavedChoice(kRoot), "0");
    EXPECT_EQ(bench.Log(), "");
    ASSERT_EQ(bench.host.messages.size(), 1u);
    EXPECT_EQ(Utf8(bench.host.messages[0]),
              "Nastąpi przerwanie działania programu. Wszystkie niezapisane dane zostaną utracone. Kontynuować?");
  }
}

TEST(ErrorDialog, StandsOverTheWizardOrTheActiveForm) {
  using errors::DialogOwner;
  platform::Form wizard, other, dialog;
  wizard.Tag = u"mdi";
  EXPECT_EQ(errors::OwnerAmong({}), DialogOwner::None);
  EXPECT_EQ(errors::OwnerAmong({&dialog}), DialogOwner::None);
  EXPECT_EQ(errors::OwnerAmong({&wizard}), DialogOwner::None);
  EXPECT_EQ(errors::OwnerAmong({&wizard, &dialog}), DialogOwner::FirstForm);
  EXPECT_EQ(errors::OwnerAmong({&other, &wizard, &dialog}), DialogOwner::ActiveForm);
  ErrorBench bench;
  const suite::Loaded loaded(bench.state, wizard);
  errors::ErrorReport(bench.state, {1, u"", u""}, u"F", u"ignored", bench.outside,
                      [&](dlgError& shown, DialogOwner owner) {
                        EXPECT_EQ(owner, DialogOwner::FirstForm);
                        EXPECT_EQ(bench.state.forms.back(), &shown);
                      });
  EXPECT_EQ(bench.state.forms.size(), 1u);
}

// Where nobody may be shown anything the log follows the choice made before.
TEST(ErrorReport, IsLoggedUnseenInAnAutomaticRun) {
  for (const bool isChosen : {false, true}) {
    ErrorBench bench;
    bench.WriteTexts("[Program]\n7=Wyjaśnienie\n");
    app::RunHost host(bench.host, bench.state);
    bench.state.ArgAuto = u"auto";
    bench.state.StatusKey = suite::kWizardKey;
    suite::RegStringSave(bench.bench.registry, suite::kWizardKey, errors::kSaveErrorsValue, isChosen ? u"1" : u"0");
    host.ReportError({7, u"Zimbrat", u"Brak pamięci"}, u"RegBaseKeySave");
    EXPECT_EQ(bench.dialogs, 0);
    EXPECT_EQ(bench.Log(), isChosen ? LogSection("05.02.2003 06:00", "Zimbrat", "7", "RegBaseKeySave", "Brak pamięci")
                                    : "");
    EXPECT_EQ(Utf8(host.Suppressed()), "Brak pamięci [RegBaseKeySave]\r\nWyjaśnienie\r\n");
  }
}

TEST(ErrorReport, ComesFromTheListOfDatabases) {
  for (const bool isRaising : {true, false}) {
    RaisingRegistry registry;
    registry.isRaising = isRaising;
    ErrorBench bench(&registry);
    bench.WriteTexts("[Program]\n7=Zabrakło pamięci.\n");
    bench.use = [](dlgError& dialog) {
      EXPECT_EQ(Utf8(dialog.txtErrorPolski.Text()), "Zabrakło pamięci.");
      dialog.cbrejestr.SetValue(1);
      dialog.cmdOK.Click();
    };
    suite::RegBaseKeySave(bench.state, u"Firma", u"C:\\Firma.mdb");
    EXPECT_EQ(bench.dialogs, isRaising ? 1 : 0) << "a registry that refuses raises nothing";
    EXPECT_EQ(bench.Log(),
              isRaising ? LogSection("05.02.2003 06:00", "Zimbrat", "7", "RegBaseKeySave", "Brak pamięci") : "");
  }
}

// Whatever is missing or refuses, the dialog is shown and can be closed.
TEST(ErrorReport, NeedsNeitherRegistryNorFolder) {
  RaisingRegistry registry;
  ErrorBench bench(&registry);
  bench.state.errorFolder = std::u16string(u"\0:|?", 4);
  EXPECT_EQ(errors::ReadMailMethod(registry), u"");
  bench.use = [](dlgError& dialog) {
    dialog.cbrejestr.SetValue(1);
    dialog.cmdOK.Click();
  };
  bench.Report(0, u"", u"");
  bench.Report(std::numeric_limits<std::int32_t>::min(), std::u16string(70'000, u'x'), std::u16string(70'000, u'ł'));
  EXPECT_EQ(bench.dialogs, 2);
}

}  // namespace
}  // namespace zimbrat::tests

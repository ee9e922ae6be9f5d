// The command line and the automatic run.
#include "tests/product/wizard_bench.h"

#include "suite/ModSysReg.h"

namespace zimbrat::tests {
namespace {

TEST(CommandLine, IsSplitAtBarsAndTabs) {
  const std::tuple<const char16_t*, int, const char*> rows[] = {
      {u"a|b", 0, "[a][b]"},
      {u"a\tb", 0, "[a][b]"},
      {u"a||b", 0, "[a][][b]"},
      {u"a|\tb", 0, "[a][][b]"},
      {u"|a", 0, "[a]"},
      {u"a|", 0, "[a]"},
      {u"||a", 0, "[][a]"},
      {u"a||", 0, "[a][]"},
      {u"|", 0, ""},
      {u" a b | \"c\" ", 0, "[ a b ][ \"c\" ]"},
      {u"1|2|3|4|5|6|7|8|9|10|11|12", 0, "[1][2][3][4][5][6][7][8][9][10]"},
      {u"||||||||||||x", 0, "[][][][][][][][][][]"},
      {u"a|b|c", 2, "[a][b]"},
      {u"a|||b", 2, "[a][]"}};
  for (const auto& [line, limit, expected] : rows) {
    std::vector<std::u16string> Args;
    int most = limit;
    EXPECT_TRUE(app::ParseCommandLine(line, Args, most));
    std::string tokens;
    for (std::size_t i = 1; i < Args.size(); ++i) tokens += "[" + Utf8(Args[i]) + "]";
    EXPECT_EQ(tokens, expected) << Utf8(line);
    EXPECT_EQ(most, limit == 0 ? 10 : limit);
  }
  std::vector<std::u16string> Args;
  int most = 3;
  EXPECT_FALSE(app::ParseCommandLine(u"", Args, most));
  EXPECT_EQ(Args, std::vector<std::u16string>(4));
}

// A host whose every answer in an automatic run is a fault.
class NobodyHost : public platform::Host {
 public:
  int ShowMessage(std::u16string_view prompt, int, std::u16string_view) override {
    ADD_FAILURE() << "shown: " << Utf8(prompt);
    return platform::kAnswerYes;
  }
  void Pulse() override {}
  void VerifyCopy(std::u16string_view, std::u16string_view) override {
    if (onVerify) onVerify();
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view) override {
    ADD_FAILURE() << "asked for a password";
    return std::nullopt;
  }
  void ReportError(const platform::RunTimeError&, std::u16string_view routine) override {
    ADD_FAILURE() << "reported: " << Utf8(routine);
  }
  void SetBusy(bool) override { ADD_FAILURE() << "a pointer without a window"; }

  std::function<void()> onVerify;
};

class AutomaticRun : public testing::Test {
 protected:
  AutomaticRun() {
    wizard_.WriteProgram("AB");
    wizard_.MakeDatabase(u"Firma ąę", wizard_.bench.PathOf(u"AB.stb"));
    suite::RegBaseKeySave(wizard_.bench.state, u"Lista", wizard_.bench.PathOf(u"Firma ąę.mdb"));
  }

  // The status afterwards; "-" when none was written.
  std::string Run(const std::u16string& commandLine) {
    suite::RegStringSave(wizard_.bench.registry, suite::kWizardKey, app::kStatusValue, u"-");
    WizardProgram program(wizard_.bench, nobody_);
    bool isShown = false;
    app::Main(program.state, program.form, commandLine, [&] { isShown = true; });
    EXPECT_FALSE(isShown) << Utf8(commandLine);
    EXPECT_FALSE(program.form.Visible());
    suppressed_ = Utf8(program.host.Suppressed());
    return Status();
  }
  std::string Status() {
    return Utf8(
        suite::RegStringRead(wizard_.bench.registry, suite::kWizardKey, app::kStatusValue, u""));
  }
  // A newer structure of the program, so that a check has something to change.
  void Upgrade(int minor) {
    std::string text = wizard_.bench.folder.Read(u"AB.stb");
    const std::size_t at = text.find("VerMinor=");
    wizard_.bench.folder.Write(u"AB.stb", text.replace(at, 10, "VerMinor=" + std::to_string(minor)));
  }
  std::u16string Database() const { return wizard_.bench.PathOf(u"Firma ąę.mdb"); }

  WizardBench wizard_;
  NobodyHost nobody_;
  std::string suppressed_;
};

TEST_F(AutomaticRun, ChecksListedNamesListedPathsAndOtherPaths) {
  const std::u16string unlisted = wizard_.bench.PathOf(u"Inna.mdb");
  wizard_.bench.folder.Write(u"Inna.mdb", wizard_.bench.folder.Read(u"Firma ąę.mdb"));
  int minor = 4;
  for (const std::u16string& database : {std::u16string(u"Lista"), Database(), unlisted}) {
    Upgrade(minor++);
    std::string during;
    nobody_.onVerify = [&] { during = Status(); };
    EXPECT_EQ(Run(u"auto|" + database), "Ok") << Utf8(database) << ": " << suppressed_;
    EXPECT_EQ(during, "start");
    EXPECT_EQ(suppressed_, "");
  }
}

TEST_F(AutomaticRun, EndsInErrorWhateverIsWrong) {
  wizard_.bench.folder.Write(u"tekst.mdb", "to nie jest baza");
  const std::pair<std::u16string, const char*> rows[] = {
      {u"auto", "Wskaż bazę danych"},
      {u"|auto", "Wskaż bazę danych"},
      {u"auto||" + Database(), "Wskaż bazę danych"},
      {u"auto|(brak)", "Wskaż bazę danych"},
      {u"auto|" + wizard_.bench.PathOf(u"brak.mdb"), "Sprawdzenie, naprawa bazy nie powiodły się."},
      {u"auto|" + wizard_.bench.PathOf(u"tekst.mdb"), "Sprawdzenie, naprawa bazy nie powiodły się."}};
  for (const auto& [line, message] : rows) {
    EXPECT_EQ(Run(line), "Error") << Utf8(line);
    EXPECT_EQ(suppressed_.rfind(message, 0), 0u) << Utf8(line) << ": " << suppressed_;
  }
}

TEST_F(AutomaticRun, DoesNothingWithAnEmptyFirstToken) {
  EXPECT_EQ(Run(u"||" + Database()), "-");
  EXPECT_EQ(Run(u"|"), "-");
}

TEST_F(AutomaticRun, EndsInErrorWhenTheRunFails) {
  Upgrade(9);
  const std::string former = wizard_.bench.folder.Read(u"Firma ąę.mdb");
  nobody_.onVerify = [] { throw platform::RunTimeError(3049, u"Zimbrat", u"Zła kopia"); };
  EXPECT_EQ(Run(u"auto|Lista"), "Error");
  EXPECT_EQ(wizard_.bench.folder.Read(u"Firma ąę.mdb"), former);
  nobody_.onVerify = {};
  EXPECT_EQ(Run(u"auto|Lista"), "Ok");
  EXPECT_NE(wizard_.bench.folder.Read(u"Firma ąę.mdb"), former);
}

// Not even what fails while the form is loaded.
TEST_F(AutomaticRun, ShowsNothingOfWhatFailsAtItsStart) {
  suite::RegStringSave(wizard_.bench.registry, suite::kSuiteKey, u"Folder baza",
                       std::u16string_view(u"ab\0cd", 5));
  EXPECT_EQ(Run(u"auto|Lista"), "Ok") << suppressed_;
}

TEST(InteractiveRun, ShowsTheFormAndItsMessages) {
  WizardBench wizard;
  bool isShown = false;
  app::Main(wizard.state, wizard.form, u"", [&] { isShown = true; });
  EXPECT_TRUE(isShown);
  EXPECT_TRUE(wizard.state.StatusKey.empty());
  wizard.bench.host.answer = platform::kAnswerYes;
  EXPECT_EQ(wizard.state.on.host.ShowMessage(u"Pytanie", platform::kMsgQuestionYesNoDefaultNo, u""),
            platform::kAnswerYes);
  EXPECT_EQ(wizard.TakeMessages(), "Pytanie\n");
}

}  // namespace
}  // namespace zimbrat::tests

#include <gtest/gtest.h>

#include <algorithm>

#include "console/arguments.h"
#include "console/nearest.h"
#include "fake_console.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

using Words = std::vector<std::u16string>;

std::string Fault(const Words& words) {
  return Utf8(console::ParseArguments(words).fault.value_or(u""));
}

TEST(Arguments, TakeValuesInBothForms) {
  const auto parsed = console::ParseArguments({u"nowa", u"--folder", u"a b", u"--nazwa=--Firma=1",
                                               u"--struktury", u"x.stb", u"--nadpisz", u"--json"});
  ASSERT_FALSE(parsed.fault) << Utf8(*parsed.fault);
  EXPECT_EQ(parsed.Value(u"--folder"), u"a b");
  EXPECT_EQ(parsed.Value(u"--nazwa"), u"--Firma=1");
  EXPECT_TRUE(parsed.Has(u"--nadpisz"));
  EXPECT_FALSE(parsed.Has(u"--do-listy"));
  EXPECT_TRUE(parsed.isJson);
}

TEST(Arguments, NameTheNearestRightWord) {
  const std::pair<Words, const char*> rows[] = {
      {{u"nwa"}, "Nieznane polecenie: nwa. Czy chodziło o nowa?"},
      {{u"PROGRAM"}, "Nieznane polecenie: PROGRAM. Czy chodziło o programy?"},
      {{u"nowa", u"--folde", u"x"}, "Nieznana opcja: --folde. Czy chodziło o --folder?"},
      {{u"nowa", u"--nadpis"}, "Nieznana opcja: --nadpis. Czy chodziło o --nadpisz?"},
      {{u"lista", u"--folder=x"}, "Nieznana opcja: --folder. Czy chodziło o --pomoc?"},
      {{u"lista", u"x"},
       "Zbędne słowo: x. Wartości podaje się po nazwie opcji, a tekst ze spacjami w cudzysłowie."},
      {{u"stan", u"--haslo", u"moje", u"tajne"},
       "Zbędne słowo po wartości opcji --haslo. Wartości podaje się po nazwie opcji, a tekst ze "
       "spacjami w cudzysłowie."},
      {{u"nowa", u"--folder", u"--nazwa", u"x"}, "Brak wartości opcji --folder. Podaj: --folder F"},
      {{u"nowa", u"--folder"}, "Brak wartości opcji --folder. Podaj: --folder F"},
      {{u"nowa", u"--nadpisz=tak"}, "Opcja --nadpisz nie przyjmuje wartości."},
      {{u"nowa", u"--cicho=1"}, "Opcja --cicho nie przyjmuje wartości."},
      {{u"stan", u"--baza", u"a", u"--baza", u"b"}, "Opcja --baza występuje więcej niż raz."},
      {{u"stan"}, "Brak opcji --baza P polecenia stan."},
      {{u"lista", u"--silnik"}, "Brak wartości opcji --silnik. Podaj: --silnik wbudowany"},
      {{u"--silnik", u"wbudowany", u"lista", u"--silnik=x"}, "Opcja --silnik występuje więcej niż raz."},
      {{u"lista", u"--silnk", u"wbudowany"}, "Nieznana opcja: --silnk. Czy chodziło o --silnik?"},
  };
  for (const auto& [words, fault] : rows) EXPECT_EQ(Fault(words), fault);
}

TEST(Arguments, KnowHelpAndVersionEverywhere) {
  for (const char16_t* word : {u"--pomoc", u"--help", u"-h"}) {
    EXPECT_TRUE(console::ParseArguments({u"nowa", word}).wantsHelp);
    EXPECT_TRUE(console::ParseArguments({word, u"bzdura"}).wantsHelp);
  }
  EXPECT_TRUE(console::ParseArguments({u"nowa", u"--nadpisz", u"-h"}).wantsHelp);
  EXPECT_FALSE(console::ParseArguments({u"nowa", u"--nazwa", u"-h"}).wantsHelp) << "a name";
  for (const char16_t* word : {u"--wersja", u"--version"}) {
    EXPECT_TRUE(console::ParseArguments({word}).wantsVersion);
  }
}

TEST(Arguments, ForgetPasswordsAndNothingElse) {
  const std::tuple<Words, std::vector<std::size_t>> rows[] = {
      {{u"stan", u"--baza", u"a", u"--haslo", u"b", u"--json"}, {4}},
      {{u"stan", u"--haslo=b", u"--baza=c"}, {1}},
      {{u"--haslo", u"--haslo", u"b"}, {1, 2}},
      {{u"stan", u"--haslow=b", u"--haslo"}, {}}};
  for (const auto& [given, hidden] : rows) {
    FakeConsole console;
    Words words = given;
    console::ForgetPasswords(console, words);
    EXPECT_EQ(console.hiddenWords, hidden);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const bool isHidden = std::count(hidden.begin(), hidden.end(), i) == 1;
      EXPECT_EQ(Utf8(words[i]), isHidden ? "" : Utf8(given[i]));
    }
  }
}

TEST(Period, IsAMonthAndAYear) {
  for (const char16_t* text : {u"1/2025", u"01/2025", u"12/1900", u"12/2999"}) {
    EXPECT_TRUE(console::FindMonthAndYear(text)) << Utf8(text);
  }
  for (const char16_t* text : {u"", u"2025", u"0/2025", u"13/2025", u"1/1899", u"1/3000", u"1/25",
                               u"-1/2025", u"1/2025/1", u" 1/2025", u"1/2025 ", u"001/2025",
                               u"1/99999999999", u"/2025", u"1/", u"a/bcde", u"٣/2025"}) {
    EXPECT_FALSE(console::FindMonthAndYear(text)) << Utf8(text);
  }
}

TEST(StructureNames, AreCutAtEitherSeparator) {
  EXPECT_EQ(console::SplitNames(u" a.stb, b.stb;;c.stb,"), (Words{u"a.stb", u"b.stb", u"c.stb"}));
  EXPECT_TRUE(console::SplitNames(u" ,; ").empty());
}

TEST(NearestWord, SurvivesHostileWords) {
  EXPECT_EQ(console::NearestWord(std::u16string(1000000, u'x'), {u"nowa", u"stan"}), u"nowa");
  EXPECT_EQ(console::NearestWord(u"", {u"nowa"}), u"nowa");
  EXPECT_EQ(console::NearestWord(u"x", {}), u"");
}

}  // namespace
}  // namespace zimbrat::tests

#include <gtest/gtest.h>

#include "suite/ModPrgFun.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

suite::Choices SomeChoices() {
  suite::Choices choices;
  choices.name = u"Firma";
  choices.folder = u"Dane";
  choices.database = u"Bazy" + std::u16string(1, platform::kPathSeparator) + u"Stara.mdb";
  choices.programs = u"Kadry;";
  choices.firstPeriod = u"1/2025";
  choices.lastPeriod = u"12/2025";
  return choices;
}

TEST(ResultText, NamesTheDatabaseAndItsFolder) {
  using suite::Task;
  const std::pair<Task, const char*> rows[] = {
      {Task::Nowa, "Baza danych: Firma\r\nFolder: Dane\r\nzostała poprawnie utworzona.\r\n"},
      {Task::Wzorzec, "Baza danych: Firma\r\nFolder: Dane\r\nzostała poprawnie utworzona.\r\n"},
      {Task::Dodaj,
       "Struktura bazy danych: Stara\r\nFolder: Bazy\r\nzostała poprawnie rozbudowana dla "
       "programu(ów): Kadry;\r\n"},
      {Task::Sprawdz,
       "Baza danych: Stara\r\nFolder: Bazy\r\nzostała poddana aktualizacji i weryfikacji. Tabele "
       "systemowe, indeksy oraz tablice programów posiadają poprawną strukturę.\r\n"}};
  for (const auto& [task, text] : rows) {
    EXPECT_EQ(Utf8(suite::ResultText(task, SomeChoices())), text);
  }
}

TEST(SummaryText, RepeatsTheChoices) {
  EXPECT_EQ(Utf8(suite::SummaryText(suite::Task::Nowa, SomeChoices())),
            "Tryb zimbrata: Utwórz nową, pustą bazę danych\r\nNazwa bazy: Firma\r\nFolder: Dane\r\n"
            "Dla programu(ów): Kadry;\r\nUtwórz okresy obliczeniowe: 1/2025 - 12/2025\r\n");
  EXPECT_TRUE(platform::Contains(suite::SummaryText(suite::Task::Wzorzec, SomeChoices()),
                                 u"Stara.mdb\r\nNazwa nowej bazy: Firma\r\n"));
}

TEST(ResultText, SurvivesAPathShorterThanAnExtension) {
  suite::Choices choices;
  choices.database = u"x";
  EXPECT_TRUE(platform::Contains(suite::ResultText(suite::Task::Sprawdz, choices),
                                 u"posiadają poprawną strukturę"));
}

}  // namespace
}  // namespace zimbrat::tests

#include "platform/error_numbers.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

class Records : public testing::Test {
 protected:
  Records() {
    bench_.Create(u"baza.mdb");
    const auto file = bench_.WriteStructure(u"t.stb", kCatalogueSections);
    for (const char16_t* table : {u"dbprg", u"dboso", u"dbfir", u"dboko"}) {
      EXPECT_TRUE(bench_.Table(table, file)) << bench_.Summary();
    }
    bench_.Close();
    path_ = bench_.PathOf(u"baza.mdb");
  }
  std::string Read(std::u16string_view query) {
    const std::string rows = Rows(bench_.Open(u"baza.mdb"), query);
    bench_.Close();
    return rows;
  }
  void Execute(std::u16string_view statement) {
    bench_.Open(u"baza.mdb").Execute(statement);
    bench_.Close();
  }

  DatabaseBench bench_;
  std::u16string path_;
};

TEST_F(Records, CreateOnePeriodAMonthAndReplaceThoseBefore) {
  const std::pair<generator::Periods, const char*> rows[] = {
      {{11, 2024, 2, 2025}, "11|2024|Listopad 12|2024|Grudzień 1|2025|Styczeń 2|2025|Luty"},
      {{1, 2024, 3, 2024}, "1|2024|Styczeń 2|2024|Luty 3|2024|Marzec"},
      {{5, 2025, 5, 2025}, "5|2025|Maj"},
      {{6, 2025, 5, 2025}, ""},
  };
  for (const auto& [periods, text] : rows) {
    ASSERT_TRUE(generator::ZapiszOkresy(bench_.state, path_, periods)) << bench_.Summary();
    EXPECT_EQ(Read(u"SELECT * FROM dboko"), text);
  }
  EXPECT_EQ(Read(u"SELECT * FROM dbfir").substr(1),
            "||Nazwa firmy|Adres firmy|Dane kontaktowe (menu Baza / Dane Firmy / Nagłówek, logo)");
}

TEST_F(Records, AddARowForEachProgramAndRenewItsVersion) {
  generator::StructureHeader header;
  header.symbol = u"AB";
  header.program = u"Płace";
  header.verMajor = 1;
  header.verMinor = 3;
  ASSERT_TRUE(generator::ZapiszProgram(bench_.state, path_, header)) << bench_.Summary();
  header.symbol = u"CD";
  ASSERT_TRUE(generator::ZapiszProgram(bench_.state, path_, header));
  header.program = u"Inna nazwa";
  header.verMajor = 2;
  ASSERT_TRUE(generator::ZapiszProgram(bench_.state, path_, header));
  EXPECT_EQ(Read(u"SELECT * FROM dbprg"), "AB|Płace|1|3 CD|Płace|2|3");
  header.symbol = u"x'y";
  EXPECT_FALSE(generator::ZapiszProgram(bench_.state, path_, header));
  EXPECT_NE(bench_.state.context.Number, 0);
  EXPECT_FALSE(bench_.state.context.Description.empty());
}

TEST_F(Records, MakeTheAdministratorActiveAgain) {
  ASSERT_TRUE(generator::ZapiszAdministratora(bench_.state, path_)) << bench_.Summary();
  EXPECT_EQ(Read(u"SELECT * FROM dboso"), "AD|Administrator|KLX|-1|-1");
  Execute(u"DELETE FROM dboso");
  Execute(u"INSERT INTO dboso (Indoso, Imie, Aktywny, Admin) VALUES ('AD', 'Jan', False, False)");
  ASSERT_TRUE(generator::ZapiszAdministratora(bench_.state, path_));
  EXPECT_EQ(Read(u"SELECT * FROM dboso"), "AD|Jan||-1|-1");
}

TEST_F(Records, WriteTheCompanyHeaderIntoItsOneRow) {
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(generator::ZapiszFirme(bench_.state, path_)) << bench_.Summary();
    EXPECT_EQ(
        Read(u"SELECT * FROM dbfir"),
        "1|Nazwa firmy...|Nazwa firmy...|Menu Baza, polecenie Nazwa firmy|karta Nagłowek, logo");
  }
}

TEST_F(Records, FailWithTheEnginesErrorWhenTheirTableIsMissing) {
  bench_.Create(u"pusta.mdb");
  bench_.Close();
  EXPECT_FALSE(generator::ZapiszFirme(bench_.state, bench_.PathOf(u"pusta.mdb")));
  EXPECT_EQ(bench_.state.context.Number, platform::kErrTableNotFound);
  EXPECT_FALSE(generator::ZapiszFirme(bench_.state, bench_.PathOf(u"nie ma.mdb")));
  EXPECT_EQ(bench_.state.context.Number, platform::kErrCouldNotFindFile);
}

}  // namespace
}  // namespace zimbrat::tests

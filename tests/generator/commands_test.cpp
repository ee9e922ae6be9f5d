// Renaming commands and data statements on a database that records the program in version 1.3.
#include "platform/error_numbers.h"
#include "suite/manners.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

class Commands : public testing::Test {
 protected:
  Commands() {
    database_ = &bench_.Create();
    const auto file = bench_.WriteStructure(u"t.stb", SmallProgram("AB"));
    for (const char16_t* table : {u"dbprg", u"ABDok", u"ABPoz"}) {
      EXPECT_TRUE(bench_.Table(table, file)) << bench_.Summary();
    }
    EXPECT_TRUE(
        generator::UtwórzRelacje(bench_.state, *database_, u"ABDokPoz", u"ABDok,ABPoz,0", file));
    database_->Execute(u"INSERT INTO dbprg (Indprg, VerMajor, VerMinor) VALUES ('AB', 1, 3)");
  }

  // "true", "false", or the error's number.
  template <class Run>
  std::string Result(Run run) {
    bench_.state.context.Clear();
    bool result = false;
    const auto error = suite::Attempt([&] { result = run(); });
    if (error) return std::to_string(error->Number());
    return result ? "true" : "false";
  }
  std::string Upgrade(std::u16string_view command, std::u16string_view line) {
    return Result([&] {
      return generator::WykonajKomendeAktualizacji(bench_.state, command, line, *database_, 1, 3);
    });
  }
  std::string Data(std::u16string_view command, std::u16string_view line) {
    return Result([&] {
      return generator::WykonajKomendeDanych(bench_.state, command, line, *database_, 1, 3);
    });
  }
  std::string Section(const std::string& content, std::u16string_view symbol = u"AB") {
    const auto file = bench_.WriteStructure(u"u.stb", content);
    return Result([&] {
      return generator::AktualizujStrukture(bench_.state, *database_, file, symbol) &&
             generator::WpiszDane(bench_.state, *database_, file, symbol);
    });
  }

  DatabaseBench bench_;
  dao::Database* database_ = nullptr;
};

TEST_F(Commands, RefuseAnUnknownOneWithNumber1) {
  EXPECT_EQ(Upgrade(u"RENAME", u"1.3,A,B"), "false");
  EXPECT_EQ(bench_.state.context.Number, 1);
  EXPECT_EQ(Utf8(bench_.state.context.Source), "Plik struktury");
  EXPECT_EQ(Utf8(bench_.state.context.Description), "Nierozpoznana komenda aktualizacji: RENAME");
  EXPECT_EQ(Upgrade(u"rentable", u"1.3,A,B"), "false");
  EXPECT_EQ(Data(u"UPDATE", u"1.2,x"), "false");
  EXPECT_EQ(Utf8(bench_.state.context.Description), "Nierozpoznana komenda wpisu danych: UPDATE");
  EXPECT_TRUE(bench_.state.context.Detail.empty());
}

TEST_F(Commands, EndInError438WhenTheirLineCannotBeSplit) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"RENTABLE", u"13,A,B"},  {u"RENTABLE", u".3,A,B"}, {u"RENTABLE", u"1.,A,B"},
      {u"RENTABLE", u"1.3"},     {u"RENTABLE", u""},       {u"RENTABLE", u"1.3,A"},
      {u"RENFIELD", u"1.3,A,B"}, {u"RENRELAT", u"2.0,A"},  {u"RENINDEX", u"1.3,A,B"}};
  for (const auto& [command, line] : rows) {
    EXPECT_EQ(Upgrade(command, line), "438") << Utf8(command) << "=" << Utf8(line);
    EXPECT_EQ(bench_.state.context.Number, 2);
    EXPECT_EQ(Utf8(bench_.state.context.Source), "Plik struktury");
    EXPECT_TRUE(bench_.state.context.Detail.empty());
  }
  EXPECT_EQ(Data(u"EXECUTE", u"12,DELETE FROM dbprg"), "438");
}

TEST_F(Commands, AreSkippedWhenOlderThanTheDatabase) {
  // The table does not exist: only a line that is carried out notices.
  EXPECT_EQ(Upgrade(u"RENFIELD", u"1.2,Nie ma,A,B"), "true");
  EXPECT_EQ(Upgrade(u"RENFIELD", u"1.3,Nie ma,A,B"), std::to_string(platform::kErrItemNotFound));
  EXPECT_EQ(Upgrade(u"RENFIELD", u"2.0,Nie ma,A,B"), std::to_string(platform::kErrItemNotFound));
  EXPECT_EQ(Upgrade(u"RENFIELD", u"0.13,Nie ma,A,B"), std::to_string(platform::kErrItemNotFound));
  EXPECT_EQ(Upgrade(u"RENFIELD", u"1x.2y,Nie ma,A,B"), "true");
  EXPECT_EQ(Upgrade(u"RENTABLE", u"1.2,tylko"), "true");
}

TEST_F(Commands, OverflowLikeSixteenBits) {
  for (const char16_t* line : {u"3277.0,A,B", u"40000.0,A,B", u"3276.8,A,B"}) {
    EXPECT_EQ(Upgrade(u"RENTABLE", line), std::to_string(platform::kErrOverflow)) << Utf8(line);
  }
  EXPECT_EQ(Upgrade(u"RENTABLE", u"3276.7,A,B"), "true");
}

TEST_F(Commands, DoNothingForAnObjectThatIsNotThere) {
  EXPECT_EQ(Upgrade(u"RENTABLE", u"1.3,abdok,Nowa"), "true");
  EXPECT_EQ(Upgrade(u"RENFIELD", u"1.3,ABDok,numer,Nr"), "true");
  EXPECT_EQ(Upgrade(u"RENINDEX", u"1.3,ABDok,Brak,Nowy"), "true");
  EXPECT_EQ(Upgrade(u"RENRELAT", u"1.3,abdokpoz,Nowa"), "true");
  EXPECT_EQ(database_->Relations()->Count(), 1);
}

TEST_F(Commands, DropARelationToRenameIt) {
  EXPECT_EQ(Upgrade(u"RENRELAT", u"1.3,ABDokPoz,Nowa, z przecinkiem"), "true");
  EXPECT_EQ(database_->Relations()->Count(), 0);
}

TEST_F(Commands, RunTheWholeRestOfTheLineAsAStatement) {
  EXPECT_EQ(Data(u"EXECUTE", u"1.3,INSERT INTO dbprg (Indprg, Nazwa) VALUES ('C', 'a, b')"),
            "true");
  EXPECT_EQ(Rows(*database_, u"SELECT * FROM dbprg WHERE Indprg = 'C'"), "C|a, b|0|0");
  EXPECT_EQ(Data(u"EXECUTE", u"1.2,DELETE FROM dbprg"), "true");
  EXPECT_EQ(Data(u"EXECUTE", u"1.3,"), std::to_string(platform::kErrInvalidSql));
  EXPECT_NE(Rows(*database_, u"SELECT * FROM dbprg"), "");
}

TEST_F(Commands, RunOnlyForAProgramThatTheDatabaseRecords) {
  const std::string sections =
      "[UPGRADE]\nRENRELAT=1.3,ABDokPoz,X\n[UPDATE]\nEXECUTE=1.3,DELETE FROM dbprg\n";
  EXPECT_EQ(Section(sections, u"ZZ"), "true");
  EXPECT_EQ(database_->Relations()->Count(), 1);
  EXPECT_EQ(Section(sections, u"Z'Z"), std::to_string(platform::kErrQueryExpression));
  EXPECT_EQ(Section(sections), "true");
  EXPECT_EQ(database_->Relations()->Count(), 0);
  EXPECT_EQ(Rows(*database_, u"SELECT * FROM dbprg"), "");
}

TEST_F(Commands, StopAtTheFirstThatFails) {
  EXPECT_EQ(Section("[UPDATE]\nEXECUTE=1.3,INSERT INTO dbprg (Indprg) VALUES ('D')\n"
                    "EXECUTE=1.3,DELETE FROM [Nie ma]\nEXECUTE=1.3,DELETE FROM dbprg\n"),
            std::to_string(platform::kErrTableNotFound));
  EXPECT_EQ(Rows(*database_, u"SELECT * FROM dbprg WHERE Indprg = 'D'"), "D||0|0");
}

TEST(NewDatabase, RunsNoCommand) {
  DatabaseBench bench;
  dao::Database& database = bench.Create();
  const auto file = bench.WriteStructure(u"u.stb", "[UPGRADE]\nBZDURA=1\n[UPDATE]\nBZDURA=1\n");
  EXPECT_TRUE(generator::AktualizujStrukture(bench.state, database, file, u"AB"));
  EXPECT_TRUE(generator::WpiszDane(bench.state, database, file, u"AB"));
}

}  // namespace
}  // namespace zimbrat::tests

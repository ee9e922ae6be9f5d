// Statements: what they change, what they refuse, and what the sources leave open.
#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;
using DaoStatements = DaoBench;

TEST_F(DaoStatements, AreRefusedWithDaosNumbers) {
  Create();
  MakeTable(u"T", {{u"Id", dao::dbLong}, {u"Tekst", dao::dbText, 5}, {u"Liczba", dao::dbInteger}},
            {{u"PK", {u"Id"}, true}});
  Run(u"INSERT INTO T VALUES (1, 'a', 1)");
  struct Case {
    const char* name;
    Numbers numbers;
    const char16_t* statement;
  };
  const Numbers unknownName = {kErrTooFewParameters, 3070};
  const Case cases[] = {
      {"SELECT", kErrExecuteSelect, u"SELECT * FROM T"},
      {"empty statement", {kErrInvalidSql, kErrInvalidArgument, kErrTableNotFound}, u""},
      {"unknown word", {kErrTableNotFound, kErrInvalidSql}, u"Bzdura"},
      {"unknown words", kErrInvalidSql, u"Bzdura jak bzdura"},
      {"unknown table", kErrTableNotFound, u"DELETE FROM Brak"},
      {"unknown table of INSERT", kErrOutputTableNotFound, u"INSERT INTO Brak (A) VALUES (1)"},
      {"unknown column of INSERT", kErrUnknownInsertField, u"INSERT INTO T (Brak) VALUES (1)"},
      {"unknown column in SET", unknownName, u"UPDATE T SET Brak = 1"},
      {"unknown column behind SET", unknownName, u"UPDATE T SET Liczba = Brak"},
      {"unknown column of WHERE", unknownName, u"DELETE FROM T WHERE Brak = 1"},
      {"column twice", kErrDuplicateDestination, u"UPDATE T SET Liczba = 1, Liczba = 2"},
      {"number of values", kErrValueCount, u"INSERT INTO T (Id, Tekst) VALUES (2)"},
      {"UPDATE syntax", kErrUpdateSyntax, u"UPDATE T SET"},
      {"expression syntax", kErrQueryExpression, u"UPDATE T SET Liczba = 1 +* 2"},
      {"function of Access", kErrUndefinedFunction, u"UPDATE T SET Liczba = Nz(Liczba, 0)"},
      {"text behind the end", kErrAfterEndOfSql, u"DELETE FROM T; DELETE FROM T"},
      {"text compared with number", kErrCriteriaMismatch, u"DELETE FROM T WHERE Tekst = 1"},
      {"literal of a wrong type", {kErrCriteriaMismatch, kErrDataConversion}, u"INSERT INTO T VALUES (2, 'b', 'abc')"},
      {"number out of range", {kErrCriteriaMismatch, kErrOverflow, kErrDataConversion, 3349},
       u"INSERT INTO T VALUES (2, 'b', 99999)"},
      {"text too long", kErrFieldTooSmall, u"INSERT INTO T VALUES (2, 'abcdef', 1)"},
      {"duplicate key", kErrDuplicateKey, u"INSERT INTO T VALUES (1, 'b', 1)"},
      {"ALTER TABLE of a missing table", {kErrTableOrConstraintNotFound, kErrNoSuchTable, kErrTableNotFound, 3611},
       u"ALTER TABLE Brak ADD COLUMN A LONG"},
      {"DROP of a missing table", {kErrNoSuchTable, kErrTableNotFound}, u"DROP TABLE Brak"},
      {"DROP of a missing index", kErrNoSuchIndex, u"DROP INDEX Brak ON T"},
      {"CREATE of a table that exists", kErrTableExists, u"CREATE TABLE T (A LONG)"},
      {"CREATE of an index that exists", kErrIndexExistsInTable, u"CREATE INDEX PK ON T (Liczba)"},
      {"ADD of a column that exists", kErrFieldExistsInTable, u"ALTER TABLE T ADD COLUMN Liczba LONG"},
  };
  for (const Case& c : cases) ExpectOneOf(c.name, c.numbers, [&] { Run(c.statement); });
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Id = 1 AND Tekst = 'a' AND Liczba = 1"), 1u);
  EXPECT_EQ(CountRows(u"T"), 1u);
}

TEST_F(DaoStatements, CountTheRowsThatTheyChange) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  struct Case {
    const char16_t* statement;
    std::int32_t rows;
  };
  const Case cases[] = {{u"INSERT INTO T VALUES (1)", 1},
                        {u"INSERT INTO T SELECT A + 1 AS A FROM T", 1},
                        {u"INSERT INTO T SELECT A + 2 AS A FROM T", 2},
                        {u"UPDATE T SET A = A * 10 WHERE A > 1", 3},
                        {u"UPDATE T SET A = 0 WHERE A > 1000", 0},
                        {u"DELETE FROM T  ", 4},
                        {u"CREATE TABLE U (A LONG)", 0}};
  for (const Case& c : cases) {
    Run(c.statement);
    EXPECT_EQ(database->RecordsAffected(), c.rows) << Utf8FromUtf16(c.statement);
  }
}

// With dbFailOnError all rows or none, without it those that can be.
TEST_F(DaoStatements, AreCarriedOutWholeOrInPart) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}}, {{u"PK", {u"A"}, true}});
  for (const char16_t* statement :
       {u"INSERT INTO T VALUES (1)", u"INSERT INTO T VALUES (2)", u"INSERT INTO T VALUES (13)"}) {
    Run(statement);
  }
  const std::vector<dao::Value> before = {Long(1), Long(2), Long(13)};
  EXPECT_EQ(ErrorOfRun(u"UPDATE T SET A = IIf(A = 13, 11, A + 10)"), kErrDuplicateKey) << "the last of three rows";
  EXPECT_EQ(Column(u"SELECT A FROM T ORDER BY A", u"A"), before);
  database->Execute(u"UPDATE T SET A = IIf(A = 13, 11, A + 10)");
  EXPECT_EQ(database->RecordsAffected(), 2);
  EXPECT_EQ(Column(u"SELECT A FROM T ORDER BY A", u"A"), (std::vector<dao::Value>{Long(11), Long(12), Long(13)}));
  workspace->BeginTrans();
  Run(u"DELETE FROM T WHERE A = 11");
  EXPECT_EQ(ErrorOfRun(u"UPDATE T SET A = 12"), kErrDuplicateKey);
  workspace->CommitTrans();
  EXPECT_EQ(CountRows(u"T"), 2u) << "a failed statement leaves those before it";
}

TEST_F(DaoStatements, SeeOldValuesAndCompareAsTheSourcesSay) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}, {u"B", dao::dbLong}, {u"Bez", dao::dbText, 20}, {u"Z", dao::dbText, 20}},
            {{u"NaZ", {u"Z"}}});
  Run(u"INSERT INTO T VALUES (1, 2, 'Łódź  ', 'Łódź  ')");
  Run(u"UPDATE T SET A = B, B = A");
  const auto seen = [&](std::u16string_view column) {
    return std::to_string(std::get<std::int32_t>(Column(u"T", column).front()));
  };
  ExpectSeen("SET a = b, b = a of 1, 2", seen(u"A") + ", " + seen(u"B"), "2, 1");
  const auto found = [&](std::u16string_view query) { return CountRows(query) == 1 ? "found" : "not found"; };
  ExpectSeen("trailing blanks with =, without index", found(u"SELECT * FROM T WHERE Bez = 'łódź'"), "found");
  ExpectSeen("trailing blanks with =, with index", found(u"SELECT * FROM T WHERE Z = 'łódź'"), "found");
  ExpectSeen("trailing blanks with Like", found(u"SELECT * FROM T WHERE Bez Like 'łódź'"), "not found");
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Bez = 'lodz'"), 0u) << "accents count";
}

TEST_F(DaoStatements, OpenRowsOrSayWhyNot) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}, {u"B", dao::dbText, 5}});
  Run(u"INSERT INTO T VALUES (2, 'x')");
  Run(u"INSERT INTO T VALUES (1, 'y')");
  struct Case {
    const char* name;
    Numbers numbers;
    const char16_t* source;
    std::int32_t type;
  };
  const Case cases[] = {
      {"a table", 0, u"t", dao::dbOpenDynaset},
      {"a table as such", 0, u"T", dao::dbOpenTable},
      {"blanks and a semicolon", 0, u"  SELECT * FROM T ;  ", dao::dbOpenSnapshot},
      {"unknown table", kErrTableNotFound, u"Brak", dao::dbOpenDynaset},
      {"unknown table as such", {kErrObjectNotFound, kErrTableNotFound}, u"Brak", dao::dbOpenTable},
      {"unknown column", kErrTooFewParameters, u"SELECT C FROM T", dao::dbOpenDynaset},
      {"action as rows", {kErrInvalidOperation, kErrInvalidSql}, u"DELETE FROM T", dao::dbOpenDynaset},
      {"statement as a table", {kErrInvalidOperation, kErrObjectNotFound}, u"SELECT * FROM T", dao::dbOpenTable},
  };
  for (const Case& c : cases) {
    ExpectOneOf(c.name, c.numbers, [&] { database->OpenRecordset(c.source, c.type)->Close(); });
  }
  auto rows = database->OpenRecordset(u"SELECT B AS Nazwa, A * 2, A FROM T ORDER BY A", dao::dbOpenSnapshot);
  std::string names;
  for (int i = 0; i < rows->Fields()->Count(); ++i) names += Utf8FromUtf16(rows->Fields()->Item(i)->Name()) + ' ';
  EXPECT_EQ(names, "Nazwa Expr1001 A ");
  EXPECT_EQ(rows->Fields()->Item(u"NAZWA")->Value(), Text(u"y"));
  EXPECT_EQ(rows->Fields()->Item(u"Nazwa")->Type(), dao::dbText);
}

}  // namespace zimbrat::tests

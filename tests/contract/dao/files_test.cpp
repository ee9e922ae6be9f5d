// Creating, opening, closing and protecting database files.
#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;
using DaoFiles = DaoBench;

TEST_F(DaoFiles, ANewDatabaseHasTheFourSystemTables) {
  Create();
  std::u16string names;
  for (int i = 0; i < database->TableDefs()->Count(); ++i) {
    names += (i > 0 ? u" " : u"") + database->TableDefs()->Item(i)->Name();
    EXPECT_EQ(database->TableDefs()->Item(i)->Attributes() & dao::dbSystemObject & 0x7FFFFFFF, 0);
    EXPECT_NE(database->TableDefs()->Item(i)->Attributes(), 0) << i;
  }
  ExpectSeen("tables of a new file", Utf8FromUtf16(names), "MSysACEs MSysObjects MSysQueries MSysRelationships");
  for (const std::u16string_view name : {u"MSysACEs", u"MSysObjects", u"MSysQueries", u"MSysRelationships"}) {
    EXPECT_NO_THROW(database->TableDefs()->Item(name)) << Utf8FromUtf16(name);
  }
  EXPECT_LE(database->TableDefs()->Count(), 5);
  EXPECT_EQ(database->Version(), u"4.0");
  EXPECT_EQ(database->Name(), system.files->RealPath(path));
  EXPECT_EQ(database->Relations()->Count(), 0);
}

TEST_F(DaoFiles, EachWayToFailHasItsNumber) {
  folder.Write(u"tekst.mdb", "To nie jest baza danych.");
  folder.Write(u"pusty.mdb", "");
  folder.Write(u"zera.mdb", std::string(65536, '\0'));
  Create();
  database->Close();
  struct Case {
    const char* name;
    Numbers numbers;
    std::function<void()> work;
  };
  const auto open = [&](std::u16string_view file) {
    return [this, p = folder.PathOf(file)] { workspace->OpenDatabase(p, true, false, u";pwd=;"); };
  };
  const auto create = [&](std::u16string p, std::u16string locale, int options) {
    return [this, p, locale, options] { workspace->CreateDatabase(p, locale, options); };
  };
  const std::u16string fresh = folder.PathOf(u"nowa.mdb");
  const Case cases[] = {
      {"no file", kErrCouldNotFindFile, open(u"nie ma.mdb")},
      {"no folder", kErrInvalidPath, open(u"brak/Baza.mdb")},
      {"a text", kErrUnrecognizedFormat, open(u"tekst.mdb")},
      {"an empty file", kErrUnrecognizedFormat, open(u"pusty.mdb")},
      {"zeros", kErrUnrecognizedFormat, open(u"zera.mdb")},
      {"empty name", {kErrInvalidFileName, kErrCouldNotFindFile}, [&] { workspace->OpenDatabase(u"", true, false, u""); }},
      {"create over a file", kErrDatabaseExists, create(path, dao::dbLangGeneral, 2)},
      {"create in no folder", kErrInvalidPath, create(folder.PathOf(u"brak/a.mdb"), dao::dbLangGeneral, 2)},
      {"locale without country", kErrNoCountryCode, create(fresh, u";LANGID=0x0409;CP=1252", 2)},
      {"no locale", kErrInvalidLocale, create(fresh, u"", 2)},
      {"unknown option", kErrInvalidArgument, create(fresh, dao::dbLangGeneral, 32)},
      {"long path", {kErrBadDatabaseName, kErrInvalidPath},
       create(folder.PathOf(std::u16string(260, u'a')), dao::dbLangGeneral, 2)},
      {"other user", kErrInvalidAccount, [&] { engine->CreateWorkspace(u"", u"Ktoś", u""); }},
      {"user's password", kErrInvalidAccount, [&] { engine->CreateWorkspace(u"", u"Admin", u"x"); }},
  };
  for (const Case& c : cases) ExpectOneOf(c.name, c.numbers, c.work);
  EXPECT_FALSE(folder.Exists(u"nowa.mdb"));
  EXPECT_EQ(folder.Read(u"tekst.mdb"), "To nie jest baza danych.");
}

TEST_F(DaoFiles, AnOpenDatabaseIsRefusedToOthers) {
  Create();
  auto other = engine->CreateWorkspace(u"", u"Admin", u"");
  for (const bool readOnly : {false, true}) {
    ExpectOneOf("two exclusive opens in one process", {kErrFileInUse, 3356, 3704},
                [&] { other->OpenDatabase(path, true, readOnly, u""); });
  }
  database->Close();
  EXPECT_NO_THROW(other->OpenDatabase(path, true, false, u"")->Close());
}

TEST_F(DaoFiles, MembersOfAClosedDatabaseSayThatItIsInvalid) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  auto tables = database->TableDefs();
  auto table = tables->Item(u"T");
  auto field = table->Fields()->Item(u"A");
  auto rows = database->OpenRecordset(u"T");
  auto value = rows->Fields()->Item(u"A");
  database->Close();
  const std::function<void()> members[] = {
      [&] { database->Close(); }, [&] { database->Name(); }, [&] { database->Execute(u"DELETE FROM T"); },
      [&] { tables->Count(); },   [&] { table->Name(); },    [&] { table->Fields()->Count(); },
      [&] { field->Name(); },     [&] { rows->EndOfFile(); }, [&] { value->Value(); },
      [&] { rows->Close(); },
  };
  for (const auto& member : members) EXPECT_EQ(ErrorOf(member), kErrObjectInvalid);
  workspace->Close();
  EXPECT_EQ(ErrorOf([&] { workspace->Close(); }), kErrObjectInvalid);
}

TEST_F(DaoFiles, PasswordsAreSetAskedForAndCleared) {
  const std::u16string polish = u"Zażółć gęślą jaźń ĄĆ";  // 20 characters
  for (const std::int32_t options : {0, int{dao::dbEncrypt}}) {
    Create(options);
    EXPECT_EQ(ErrorOf([&] { database->NewPassword(u"źle", u"nowe"); }), kErrInvalidPassword);
    ExpectOneOf("a password of 21 characters", {kErrInvalidArgument, kErrInvalidAccount},
                [&] { database->NewPassword(u"", polish + u"x"); });
    database->NewPassword(u"", polish);
    database->Close();
    for (const std::u16string_view wrong : {u";pwd=;", u"", u";pwd=zażółć gęślą jaźń ąć;"}) {
      EXPECT_EQ(ErrorOf([&] { workspace->OpenDatabase(path, true, false, wrong); }), kErrInvalidPassword);
    }
    database = workspace->OpenDatabase(path, true, false, u";pwd=" + polish + u";");
    database->NewPassword(polish, u"");
    database->Close();
    EXPECT_NO_THROW(workspace->OpenDatabase(path, true, false, u";pwd=cokolwiek;")->Close());
    system.files->Delete(path);
  }
}

TEST_F(DaoFiles, ReadOnlyDatabasesTakeNoChange) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  database->Close();
  const std::string before = folder.Read(u"Baza.mdb");
  database = workspace->OpenDatabase(path, true, true, u"");
  EXPECT_FALSE(database->Updatable());
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (A) VALUES (1)"), kErrReadOnly);
  ExpectOneOf("a table in a read-only database", {kErrReadOnly, kErrDesignReadOnly},
              [&] { MakeTable(u"U", {{u"A", dao::dbLong}}); });
  ExpectOneOf("a row in a read-only database", {kErrReadOnly, kErrNotSupported},
              [&] { database->OpenRecordset(u"T")->AddNew(); });
  database->Close();
  EXPECT_EQ(folder.Read(u"Baza.mdb"), before);
}

TEST_F(DaoFiles, TransactionsNestAndComeUndone) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  EXPECT_EQ(ErrorOf([&] { workspace->CommitTrans(); }), kErrNoTransaction);
  workspace->BeginTrans();
  Run(u"INSERT INTO T (A) VALUES (1)");
  workspace->BeginTrans();
  Run(u"INSERT INTO T (A) VALUES (2)");
  MakeTable(u"U", {{u"B", dao::dbText, 10}});
  workspace->Rollback();
  EXPECT_EQ(CountRows(u"T"), 1u);
  EXPECT_EQ(ErrorOf([&] { database->TableDefs()->Item(u"U"); }), kErrItemNotFound);
  workspace->CommitTrans();
  workspace->BeginTrans();
  Run(u"DELETE FROM T");
  Reopen();  // closing undoes what is not committed
  EXPECT_EQ(CountRows(u"T"), 1u);
  for (int i = 0; i < 4; ++i) workspace->BeginTrans();
  EXPECT_EQ(ErrorOf([&] { workspace->BeginTrans(); }), kErrTooManyTransactions);
}

}  // namespace zimbrat::tests

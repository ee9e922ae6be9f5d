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
      {"empty name", {kErrInvalidFileName, kErrCouldNotFindFile},
       [&] { workspace->OpenDatabase(u"", true, false, u""); }},
      {"create over a file", kErrDatabaseExists, create(path, dao::dbLangGeneral, 2)},
      {"create in no folder", kErrInvalidPath, create(folder.PathOf(u"brak/a.mdb"), dao::dbLangGeneral, 2)},
      {"locale without country", kErrNoCountryCode, create(fresh, u";LANGID=0x0409;CP=1252", 2)},
      {"no locale", kErrInvalidLocale, create(fresh, u"", 2)},
      {"unknown option", kErrInvalidArgument, create(fresh, dao::dbLangGeneral, 4096)},
      {"option of an older format", {kErrInvalidArgument, kErrUnrecognizedFormat, 0},
       create(folder.PathOf(u"stara.mdb"), dao::dbLangGeneral, 32)},
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

TEST_F(DaoFiles, PasswordsAreComparedExactly) {
  for (const std::u16string_view password : {u"  odstępy  ", u"'\"[]=!", u"ŻÓŁW", u"x"}) {
    const std::u16string connect = u";pwd=" + std::u16string(password) + u";";
    SCOPED_TRACE(Utf8FromUtf16(connect));
    database = workspace->CreateDatabase(path, std::u16string(dao::dbLangGeneral) + u";pwd=" + std::u16string(password),
                                         dao::dbEncrypt);
    Reopen(connect);
    for (const std::u16string& wrong : {u";pwd=" + std::u16string(password) + u" ;", std::u16string(u";pwd=Y;")}) {
      database->Close();
      EXPECT_EQ(ErrorOf([&] { workspace->OpenDatabase(path, true, false, wrong); }), kErrInvalidPassword);
      database = workspace->OpenDatabase(path, true, true, u"MS Access" + connect);
    }
    EXPECT_EQ(ErrorOf([&] { database->NewPassword(password, u""); }), kErrReadOnly);
    database->Close();
    system.files->Delete(path);
  }
}

TEST_F(DaoFiles, EachOptionMakesAJet4File) {
  for (const int options : {0, 2, 64, 66}) {
    Create(options);
    MakeTable(u"T", {{u"A", dao::dbText, 20}});
    Run(u"INSERT INTO T VALUES ('Zawartość')");
    EXPECT_EQ(database->Version(), u"4.0") << options;
    EXPECT_TRUE(database->Updatable());
    database->Close();
    const std::string plain("Z\0a\0w\0a\0r\0t\0o\0", 14);
    EXPECT_EQ(folder.Read(u"Baza.mdb").find(plain) == std::string::npos, (options & dao::dbEncrypt) != 0) << options;
    system.files->Delete(path);
  }
  workspace->CreateDatabase(folder.PathOf(u"Bez rozszerzenia"), dao::dbLangGeneral, 0)->Close();
  ExpectSeen("name without an extension", Utf8FromUtf16(folder.Names().at(0)), "Bez rozszerzenia.mdb");
}

TEST_F(DaoFiles, SharedDatabasesKeepTheirPassword) {
  Create();
  database->Close();
  database = workspace->OpenDatabase(path, false, false, u"");
  EXPECT_EQ(ErrorOf([&] { database->NewPassword(u"", u"nowe"); }), kErrNotExclusive);
  auto other = engine->CreateWorkspace(u"", u"Admin", u"");
  ExpectOneOf("second shared open", {kErrFileInUse, 0}, [&] { other->OpenDatabase(path, false, false); });
}

TEST_F(DaoFiles, RepairOfASoundFileLosesNothing) {
  Create(dao::dbEncrypt);
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17}, {u"A", dao::dbMemo, 0, 0, true, true, u"\"x\""}},
            {{u"PK", {u"Id"}, true}});
  MakeTable(u"U", {{u"Id", dao::dbLong}});
  MakeRelation(u"R", u"T", u"U", 4352, {{u"Id", u"Id"}});
  for (int i = 1; i <= 50; ++i) Run(u"INSERT INTO T (A) VALUES ('wiersz " + DecimalText(i) + u"')");
  ExpectOneOf("repair of an open database", {kErrFileInUse, 3356, 3704}, [&] { engine->RepairDatabase(path); });
  database->Close();
  database.reset();
  const dao::RepairOutcome outcome = engine->RepairDatabase(path);
  EXPECT_FALSE(outcome.wasDamaged);
  EXPECT_TRUE(outcome.losses.empty() && outcome.keptFile.empty());
  EXPECT_EQ(folder.Names(), std::vector<std::u16string>{u"Baza.mdb"}) << "nothing lies beside it";
  Reopen();
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE A = 'wiersz ' & Id"), 50u);
  EXPECT_TRUE(database->TableDefs()->Item(u"T")->Fields()->Item(u"A")->Required());
  EXPECT_EQ(database->Relations()->Item(u"R")->Attributes(), 4352);
  EXPECT_EQ(ErrorOf([&] { engine->RepairDatabase(folder.PathOf(u"brak.mdb")); }), kErrCouldNotFindFile);
  folder.Write(u"tekst.mdb", "To nie jest baza danych.");
  EXPECT_EQ(ErrorOf([&] { engine->RepairDatabase(folder.PathOf(u"tekst.mdb")); }), kErrUnrecognizedFormat);
  EXPECT_EQ(folder.Read(u"tekst.mdb"), "To nie jest baza danych.");
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

TEST_F(DaoFiles, TransactionsUndoStructure) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  for (const std::u16string_view name : {u"Druga", u"Zbędna"}) MakeTable(name, {{u"A", dao::dbLong}});
  workspace->BeginTrans();
  MakeRelation(u"Luźna", u"T", u"Druga", dao::dbRelationDontEnforce, {{u"A", u"A"}});
  auto table = database->TableDefs()->Item(u"T");
  auto relation = database->Relations()->Item(u"Luźna");
  MakeIndex(*table, {u"NaA", {u"A"}});
  MakeField(*table, {u"B", dao::dbText, 10});
  table->Fields()->Item(u"A")->SetName(u"C");
  table->SetName(u"Inna");
  database->TableDefs()->Delete(u"Zbędna");
  workspace->Rollback();
  database->TableDefs()->Refresh();
  table = database->TableDefs()->Item(u"T");
  EXPECT_EQ(table->Fields()->Count(), 1);
  EXPECT_EQ(table->Fields()->Item(0)->Name(), u"A");
  EXPECT_EQ(table->Indexes()->Count(), 0);
  EXPECT_EQ(database->TableDefs()->Item(u"Zbędna")->RecordCount(), 0);
  EXPECT_EQ(database->Relations()->Count(), 0);
  EXPECT_EQ(ErrorOf([&] { relation->Table(); }), kErrObjectInvalid);
}

// A transaction is the session's: it holds for each of its databases.
TEST_F(DaoFiles, TransactionsSpanTheDatabasesOfASession) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbLong}});
  auto second = workspace->CreateDatabase(folder.PathOf(u"druga.mdb"), dao::dbLangGeneral, 0);
  second->Execute(u"CREATE TABLE T (A LONG)", dao::dbFailOnError);
  for (const bool commits : {false, true}) {
    workspace->BeginTrans();
    Run(u"INSERT INTO T VALUES (1)");
    second->Execute(u"INSERT INTO T VALUES (1)", dao::dbFailOnError);
    commits ? workspace->CommitTrans() : workspace->Rollback();
    EXPECT_EQ(CountRows(u"T"), commits ? 1u : 0u);
    EXPECT_EQ(second->TableDefs()->Item(u"T")->RecordCount(), commits ? 1 : 0);
  }
}

}  // namespace zimbrat::tests

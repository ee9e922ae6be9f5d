// Rows: what they may hold, what keeps them apart and together, recordsets.
#include <limits>

#include "platform/error_numbers.h"
#include "dao_bench.h"

namespace zimbrat::tests {

using namespace zimbrat::platform;
using DaoData = DaoBench;

TEST_F(DaoData, EveryTypeGivesItsValuesBack) {
  Create(dao::dbEncrypt);
  const dao::Guid guid{{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}, std::byte{5}, std::byte{6},
                        std::byte{7}, std::byte{8}, std::byte{9}}};
  const dao::Binary bytes = {std::byte{0}, std::byte{255}, std::byte{0}, std::byte{16}};
  const dao::Binary big(20'000, std::byte{0x5A});
  struct Case {
    int type;
    int size;
    std::vector<dao::Value> values;
  };
  const Case cases[] = {
      {dao::dbBoolean, 1, {true, false}},
      {dao::dbByte, 1, {std::uint8_t{0}, std::uint8_t{255}}},
      {dao::dbInteger, 2, {std::int16_t{-32768}, std::int16_t{32767}}},
      {dao::dbLong, 4, {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}},
      {dao::dbCurrency, 8,
       {dao::Currency{std::numeric_limits<std::int64_t>::min()}, dao::Currency{12345678}}},
      {dao::dbSingle, 4, {-1.5f, 3.4e38f}},
      {dao::dbDouble, 8, {-1.25e-300, 1.7e308}},
      {dao::dbDate, 8, {dao::Date{-657434.0}, dao::Date{2958465.75}, dao::Date{37657.25}, dao::Date{-1.75}}},
      {dao::dbBinary, 10, {bytes}},
      {dao::dbText, 255,
       {Text(u"Zażółć gęślą jaźń"), Text(u"abc"), Text(std::u16string(255, u'ż')), Text(u"漢字 \u0001\u00FF")}},
      {dao::dbLongBinary, 0, {bytes, big}},
      {dao::dbMemo, 0,
       {Text(u"krótka"), Text(std::u16string(100, u'a')), Text(std::u16string(3000, u'ł')),
        Text(std::u16string(100'000, u'x') + u"koniec")}},
      {dao::dbGUID, 16, {guid}},
  };
  std::vector<FieldPlan> plans;
  for (const Case& c : cases) plans.push_back({u"P" + DecimalText(c.type), c.type, c.size});
  MakeTable(u"T", plans);
  for (std::size_t row = 0; row < 4; ++row) {
    auto rows = database->OpenRecordset(u"T");
    rows->AddNew();
    for (const Case& c : cases) {
      if (row < c.values.size()) rows->Fields()->Item(u"P" + DecimalText(c.type))->SetValue(c.values[row]);
    }
    rows->Update();
    rows->Close();
  }
  Reopen();
  for (const Case& c : cases) {
    const std::vector<dao::Value> stored = Column(u"T", u"P" + DecimalText(c.type));
    ASSERT_EQ(stored.size(), 4u);
    for (std::size_t row = 0; row < 4; ++row) {
      const dao::Value none = c.type == dao::dbBoolean ? dao::Value(false) : dao::Value();
      EXPECT_TRUE(stored[row] == (row < c.values.size() ? c.values[row] : none)) << c.type << " row " << row;
    }
  }
}

TEST_F(DaoData, PutsAreConvertedOrRefused) {
  Create();
  MakeTable(u"T", {{u"Bajt", dao::dbByte}, {u"Krótka", dao::dbInteger}, {u"Długa", dao::dbLong},
                   {u"Waluta", dao::dbCurrency}, {u"Data", dao::dbDate}, {u"Tekst", dao::dbText, 5},
                   {u"Znak", dao::dbBoolean}, {u"Licznik", dao::dbLong, 4, 17}, {u"Bajty", dao::dbBinary, 2}});
  struct Case {
    std::u16string field;
    dao::Value put;
    Numbers numbers;
    dao::Value stored;
  };
  const Numbers outOfRange = {kErrDataConversion, 3349, kErrOverflow};
  const Case cases[] = {
      {u"Bajt", Long(256), outOfRange, {}},
      {u"Bajt", Long(-1), outOfRange, {}},
      {u"Krótka", Text(u"12"), 0, std::int16_t{12}},
      {u"Krótka", 2.5, 0, std::int16_t{2}},
      {u"Krótka", Text(u"99999"), outOfRange, {}},
      {u"Krótka", Text(u"abc"), kErrDataConversion, {}},
      {u"Krótka", true, 0, std::int16_t{-1}},
      {u"Długa", Text(u""), kErrDataConversion, {}},
      {u"Waluta", Text(u"1,25"), 0, dao::Currency{12500}},
      {u"Waluta", dao::Decimal{true, {0, 0, 0, 125}, 1}, 0, dao::Currency{-125000}},
      {u"Waluta", 0.00005, 0, dao::Currency{0}},
      {u"Długa", dao::Decimal{false, {0, 0, 0, 70000}, 0}, 0, Long(70000)},
      {u"Długa", dao::Currency{35000}, 0, Long(4)},
      {u"Data", dao::Date{-0.25}, 0, dao::Date{-0.25}},
      {u"Data", Text(u"2001-02-03"), 0, dao::Date{36925}},
      {u"Data", Text(u"jutro"), kErrDataConversion, {}},
      {u"Data", 3.0e7, outOfRange, {}},
      {u"Tekst", Text(u"123456"), kErrFieldTooSmall, {}},
      {u"Tekst", Long(42), 0, Text(u"42")},
      {u"Znak", dao::Null{}, 0, false},
      {u"Znak", Text(u"Tak"), kErrDataConversion, {}},
      {u"Znak", Long(5), 0, true},
      {u"Licznik", Long(5), kErrFieldNotUpdatable, {}},
      {u"Bajty", dao::Binary(3), kErrFieldTooSmall, {}},
  };
  auto rows = database->OpenRecordset(u"T");
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"Długa")->SetValue(Long(1)); }), kErrNoEdit);
  for (const Case& c : cases) {
    rows->AddNew();
    auto field = rows->Fields()->Item(c.field);
    ExpectOneOf("put into " + Utf8FromUtf16(c.field), c.numbers, [&] { field->SetValue(c.put); });
    if (c.numbers.all.front() == 0) {
      EXPECT_TRUE(field->Value() == c.stored) << Utf8FromUtf16(c.field);
    }
  }
}

TEST_F(DaoData, RowsMustKeepTheRules) {
  Create();
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17},
                   {u"Nazwa", dao::dbText, 20, 0, true},
                   {u"Opis", dao::dbText, 20, 0, false, true},
                   {u"Kod", dao::dbInteger, 2, 0, false, false, u"1+2"},
                   {u"Seria", dao::dbText, 5, 0, false, false, u"\"A\""}},
            {{u"PK", {u"Id"}, true}, {u"Klucz", {u"Kod", u"Seria"}, false, true}, {u"Wymagany", {u"Opis"}, false,
             false, true}});
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Opis) VALUES ('x')"), kErrRequired);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis) VALUES ('', 'x')"), kErrZeroLength);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa) VALUES ('x')"), kErrNullInIndex);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis) VALUES ('x', '')"), 0);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis) VALUES ('y', 'y')"), kErrDuplicateKey);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis, Seria) VALUES ('y', 'y', 'a')"), kErrDuplicateKey)
      << "case does not count";
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis, Kod, Seria) VALUES ('n', 'y', Null, Null)"), 0);
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO T (Nazwa, Opis, Kod, Seria) VALUES ('n', 'y', Null, Null)"), 0)
      << "all null is free";
  EXPECT_EQ(Column(u"T", u"Kod").front(), dao::Value(std::int16_t{3}));
  EXPECT_EQ(CountRows(u"T"), 3u);
  const bool counts = Column(u"T", u"Id") == std::vector<dao::Value>{Long(1), Long(2), Long(3)};
  ExpectSeen("numbers of a counter for refused rows", counts ? "none" : "used up", "none");
  Run(u"INSERT INTO T (Id, Nazwa, Opis, Kod) VALUES (100, 'z', 'z', 9)");
  Run(u"INSERT INTO T (Nazwa, Opis, Kod) VALUES ('z', 'z', 10)");
  EXPECT_EQ(Column(u"SELECT Id FROM T WHERE Kod = 10", u"Id"), std::vector<dao::Value>{Long(101)});
}

TEST_F(DaoData, CascadesFollowParents) {
  Create();
  MakeTable(u"A", {{u"Id", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeTable(u"B", {{u"Id", dao::dbLong, 4, 17}, {u"IdA", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeTable(u"C", {{u"IdB", dao::dbLong}, {u"Uwagi", dao::dbMemo}});
  MakeTable(u"D", {{u"IdA", dao::dbLong}});
  MakeTable(u"Drzewo", {{u"Id", dao::dbLong}, {u"Nad", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeRelation(u"AB", u"A", u"B", 4352, {{u"Id", u"IdA"}});
  MakeRelation(u"BC", u"B", u"C", 4096, {{u"Id", u"IdB"}});
  MakeRelation(u"AD", u"A", u"D", 0, {{u"Id", u"IdA"}});
  MakeRelation(u"Drzewo2", u"Drzewo", u"Drzewo", 4096, {{u"Id", u"Nad"}});
  for (int i = 1; i <= 3; ++i) {
    Run(u"INSERT INTO A (Id) VALUES (" + DecimalText(i) + u")");
    Run(u"INSERT INTO B (IdA) VALUES (" + DecimalText(i) + u")");
    Run(u"INSERT INTO C (IdB, Uwagi) VALUES (" + DecimalText(i) + u", '" + std::u16string(200, u'u') + u"')");
  }
  Run(u"INSERT INTO D (IdA) VALUES (3)");
  EXPECT_EQ(ErrorOfRun(u"DELETE FROM A"), kErrRelatedRecords);
  EXPECT_EQ(CountRows(u"A"), 3u) << "all or nothing";
  EXPECT_EQ(CountRows(u"C"), 3u);
  Run(u"DELETE FROM A WHERE Id = 1");
  EXPECT_EQ(CountRows(u"C"), 2u);
  Run(u"INSERT INTO B (IdA) VALUES (2)");
  Run(u"UPDATE A SET Id = 20 WHERE Id = 2");
  EXPECT_EQ(CountRows(u"SELECT * FROM B WHERE IdA = 20"), 2u);
  EXPECT_EQ(ErrorOfRun(u"UPDATE A SET Id = 30 WHERE Id = 3"), kErrRelatedRecords);
  EXPECT_EQ(CountRows(u"SELECT * FROM B WHERE IdA = 3"), 1u);
  Run(u"INSERT INTO Drzewo (Id, Nad) VALUES (1, 1)");  // a row may be its own parent
  for (int i = 2; i < 400; ++i) {
    Run(u"INSERT INTO Drzewo (Id, Nad) VALUES (" + DecimalText(i) + u", " + DecimalText(i - 1) + u")");
  }
  EXPECT_EQ(ErrorOfRun(u"INSERT INTO Drzewo (Id, Nad) VALUES (900, 901)"), kErrRelatedRecordRequired);
  Run(u"DELETE FROM Drzewo WHERE Id = 1");
  EXPECT_EQ(CountRows(u"Drzewo"), 0u);
}

// Rows that refer to themselves and to each other, with nothing but refusals.
TEST_F(DaoData, DeletingSkipsWhatOthersReferTo) {
  Create();
  MakeTable(u"Osoba", {{u"Id", dao::dbLong}, {u"Szef", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeTable(u"Umowa", {{u"Id", dao::dbLong}, {u"Osoba", dao::dbLong}}, {{u"PK", {u"Id"}, true}});
  MakeRelation(u"Szefowie", u"Osoba", u"Osoba", 0, {{u"Id", u"Szef"}});
  MakeRelation(u"Umowy", u"Osoba", u"Umowa", 0, {{u"Id", u"Osoba"}});
  // 1 refers to itself; 2 and 3 to each other; 4 <- 5 <- 6; 7 has a contract, 8 nothing.
  const char16_t* statements[] = {
      u"INSERT INTO Osoba VALUES (1, 1)",    u"INSERT INTO Osoba VALUES (2, Null)",
      u"INSERT INTO Osoba VALUES (3, 2)",    u"UPDATE Osoba SET Szef = 3 WHERE Id = 2",
      u"INSERT INTO Osoba VALUES (4, Null)", u"INSERT INTO Osoba VALUES (5, 4)",
      u"INSERT INTO Osoba VALUES (6, 5)",    u"INSERT INTO Osoba VALUES (7, Null)",
      u"INSERT INTO Osoba VALUES (8, Null)", u"INSERT INTO Umowa VALUES (1, 7)"};
  for (const char16_t* statement : statements) Run(statement);
  EXPECT_EQ(ErrorOfRun(u"DELETE FROM Osoba"), kErrRelatedRecords);
  EXPECT_EQ(CountRows(u"Osoba"), 8u) << "all or nothing";
  const auto leaves = [&](std::string_view expected) {
    database->Execute(u"DELETE FROM Osoba");
    std::string seen = std::to_string(database->RecordsAffected()) + " gone, left";
    for (const dao::Value& id : Column(u"SELECT Id FROM Osoba ORDER BY Id", u"Id")) {
      seen += ' ' + std::to_string(std::get<std::int32_t>(id));
    }
    ExpectSeen("DELETE that skips rows", seen, expected);
  };
  leaves("3 gone, left 2 3 4 5 7");  // 6 is gone after 5 was asked for
  leaves("1 gone, left 2 3 4 7");
  leaves("1 gone, left 2 3 7");
  leaves("0 gone, left 2 3 7");
  EXPECT_EQ(ErrorOfRun(u"DELETE FROM Osoba WHERE Id = 2"), kErrRelatedRecords);
  Run(u"UPDATE Osoba SET Szef = Null");
  Run(u"DELETE FROM Umowa");
  leaves("3 gone, left");
  Run(u"INSERT INTO Osoba VALUES (1, 1)");
  Run(u"DELETE FROM Osoba");
  auto rows = database->OpenRecordset(u"Osoba");
  rows->AddNew();
  for (const char16_t* field : {u"Id", u"Szef"}) rows->Fields()->Item(field)->SetValue(Long(9));
  rows->Update();
  rows->MoveFirst();
  EXPECT_EQ(ErrorOf([&] { rows->Delete(); }), 0);
}

TEST_F(DaoData, RecordsetsWalkAndEdit) {
  Create();
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17}, {u"A", dao::dbText, 200}}, {{u"PK", {u"Id"}, true}});
  auto rows = database->OpenRecordset(u"SELECT * FROM T", dao::dbOpenDynaset);
  EXPECT_TRUE(rows->EndOfFile() && rows->BeginOfFile());
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->Edit(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->Update(); }), kErrNoEdit);
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"A")->Value(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"B"); }), kErrItemNotFound);
  for (int i = 0; i < 50; ++i) {
    rows->AddNew();
    rows->Fields()->Item(u"A")->SetValue(Text(u"x"));
    rows->Update();
  }
  EXPECT_TRUE(rows->EndOfFile()) << "no row was current, none is now";
  rows->MoveFirst();
  for (; !rows->EndOfFile(); rows->MoveNext()) {  // every row outgrows its page
    rows->Edit();
    rows->Fields()->Item(u"A")->SetValue(Text(std::u16string(200, u'ł')));
    rows->Update();
  }
  rows->MoveFirst();
  rows->Delete();
  EXPECT_EQ(ErrorOf([&] { rows->Fields()->Item(u"A")->Value(); }), kErrNoCurrentRecord);
  rows->Close();
  EXPECT_EQ(CountRows(u"SELECT * FROM T WHERE Len(A) = 200"), 49u);
  EXPECT_EQ(database->TableDefs()->Item(u"T")->RecordCount(), 49);
  auto snapshot = database->OpenRecordset(u"T", dao::dbOpenSnapshot);
  const Numbers readsOnly = {kErrNotSupported, kErrReadOnly, 3326};
  ExpectOneOf("snapshot edit", readsOnly, [&] { snapshot->Edit(); });
  ExpectOneOf("snapshot addition", readsOnly, [&] { snapshot->AddNew(); });
}

TEST_F(DaoData, EditsAreBegunAndCancelled) {
  Create();
  MakeTable(u"T", {{u"A", dao::dbText, 5, 0, true, false, u"\"nowy\""}, {u"B", dao::dbBoolean}, {u"C", dao::dbLong}});
  auto rows = database->OpenRecordset(u"T");
  EXPECT_EQ(ErrorOf([&] { rows->MoveFirst(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->Delete(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->CancelUpdate(); }), kErrNoEdit);
  auto a = rows->Fields()->Item(u"A"), c = rows->Fields()->Item(u"C");
  rows->AddNew();
  EXPECT_EQ(a->Value(), Text(u"nowy"));
  EXPECT_EQ(rows->Fields()->Item(u"B")->Value(), dao::Value(false));
  EXPECT_TRUE(dao::IsNull(c->Value()));
  a->SetValue({});
  EXPECT_EQ(ErrorOf([&] { rows->Update(); }), kErrRequired);
  a->SetValue(Text(u""));
  EXPECT_EQ(ErrorOf([&] { rows->Update(); }), kErrZeroLength);
  a->SetValue(Text(u"x"));  // what was begun is still there after a refusal
  rows->Update();
  rows->MoveFirst();
  EXPECT_FALSE(rows->BeginOfFile() || rows->EndOfFile());
  rows->Edit();
  c->SetValue(Long(1));
  rows->CancelUpdate();
  EXPECT_TRUE(dao::IsNull(c->Value()));
  rows->Edit();
  c->SetValue(Long(2));
  rows->Edit();  // begins anew
  EXPECT_TRUE(dao::IsNull(c->Value()));
  c->SetValue(Long(3));
  rows->Update();
  EXPECT_EQ(c->Value(), Long(3)) << "the row is still the current one";
  rows->MoveNext();
  EXPECT_TRUE(rows->EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }), kErrNoCurrentRecord);
  EXPECT_EQ(rows->RecordCount(), 1);
}

TEST_F(DaoData, LongTextsComeAndGoWithoutLeavingPages) {
  Create();
  MakeTable(u"T", {{u"Id", dao::dbLong, 4, 17}, {u"A", dao::dbMemo}}, {{u"PK", {u"Id"}, true}});
  const auto fill = [&] {
    auto rows = database->OpenRecordset(u"T");
    for (int i = 0; i < 60; ++i) {
      rows->AddNew();
      rows->Fields()->Item(u"A")->SetValue(Text(std::u16string(static_cast<std::size_t>(i * i * 10 + 1), u'm')));
      rows->Update();
    }
  };
  fill();
  Run(u"DELETE FROM T");
  Reopen();
  const std::uint64_t size = system.files->State(path)->size;
  fill();
  Run(u"UPDATE T SET A = A & 'koniec'");
  Run(u"DELETE FROM T");
  Reopen();
  const bool reuses = system.files->State(path)->size <= size + 40 * 4096;
  ExpectSeen("pages of deleted memos", reuses ? "used again" : "kept", "used again");
}

}  // namespace zimbrat::tests

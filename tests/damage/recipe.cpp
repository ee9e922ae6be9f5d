#include "recipe.h"

#include <functional>
#include <random>

#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::tests {

namespace {

const char16_t* const kStructure[] = {
    u"CREATE TABLE Klient (Id COUNTER CONSTRAINT pk PRIMARY KEY, Nip TEXT(12) CONSTRAINT nip UNIQUE, Nazwa TEXT(60), "
    u"Miasto TEXT(30), Opis MEMO, Obraz LONGBINARY, Aktywny BIT, Poziom BYTE, Rabat SHORT, Waga SINGLE, Wynik DOUBLE, "
    u"Saldo CURRENCY, Od DATETIME, Znak GUID, Skrot BINARY(20))",
    u"CREATE INDEX wgNazwy ON Klient (Nazwa ASC, Miasto DESC)",
    u"CREATE INDEX wgMiasta ON Klient (Miasto) WITH IGNORE NULL",
    u"CREATE INDEX wgOpisu ON Klient (Opis)",
    u"CREATE INDEX wgLiczb ON Klient (Poziom DESC, Rabat, Waga DESC, Wynik)",
    u"CREATE INDEX wgSalda ON Klient (Saldo DESC, Od, Aktywny)",
    u"CREATE INDEX wgZnaku ON Klient (Znak, Skrot DESC)",
    u"CREATE TABLE Faktura (Rok LONG, Nr LONG, Klient LONG CONSTRAINT doKlienta REFERENCES Klient (Id), "
    u"Kwota CURRENCY, CONSTRAINT pkf PRIMARY KEY (Rok, Nr))",
    u"CREATE TABLE Pozycja (Id COUNTER CONSTRAINT pkp PRIMARY KEY, Rok LONG, Nr LONG, Lp LONG, Nazwa TEXT(200), "
    u"Uwaga MEMO)",
    u"CREATE INDEX wgLp ON Pozycja (Lp DESC) WITH DISALLOW NULL",
    u"CREATE TABLE Dawna (Id LONG CONSTRAINT pkd PRIMARY KEY, Opis MEMO)"};

class Cook {
 public:
  explicit Cook(const Recipe& recipe) : recipe_(recipe), random_(recipe.seed) {}

  FileBytes Run();

 private:
  using Row = std::vector<std::pair<const char16_t*, dao::Value>>;

  std::uint32_t Below(std::size_t most) {
    return static_cast<std::uint32_t>(random_()) % static_cast<std::uint32_t>(most);
  }
  std::u16string Text(std::size_t most);
  dao::Binary Bytes(std::size_t most);
  dao::Value OrNull(dao::Value value) { return Below(6) == 0 ? dao::Value() : value; }
  void Relate();
  void Store(const char16_t* table, const Row& row);
  void StoreCustomer(std::size_t number);
  void StoreInvoice(std::size_t number);
  void ChangeRows();
  void Execute(const std::u16string& statement) { database_->Execute(statement, dao::dbFailOnError); }

  Recipe recipe_;
  std::mt19937 random_;
  MemoryFiles files_;
  FakeClock clock_;
  std::shared_ptr<dao::Engine> engine_ = jet::MakeEngine(files_, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::shared_ptr<dao::Database> database_;
};

std::u16string Cook::Text(std::size_t most) {
  static constexpr std::u16string_view kLetters = u"aąbcćdeęfghi jklłmnoópqrsśtuvwxyzźż-'0123456789";
  std::u16string text;
  for (std::size_t left = most == 0 ? 0 : 1 + Below(most); left > 0; --left) text += kLetters[Below(kLetters.size())];
  return text;
}

dao::Binary Cook::Bytes(std::size_t most) {
  dao::Binary bytes(1 + Below(most));
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(Below(256));
  return bytes;
}

void Cook::Relate() {
  const auto relation = database_->CreateRelation(u"doFaktury", u"Faktura", u"Pozycja",
                                                  dao::dbRelationUpdateCascade | dao::dbRelationDeleteCascade);
  for (const char16_t* name : {u"Rok", u"Nr"}) {
    const auto field = relation->CreateField(name);
    field->SetForeignName(name);
    relation->Fields()->Append(field);
  }
  database_->Relations()->Append(relation);
}

void Cook::Store(const char16_t* table, const Row& row) {
  const auto rows = database_->OpenRecordset(table);
  rows->AddNew();
  for (const auto& [name, value] : row) rows->Fields()->Item(name)->SetValue(value);
  rows->Update();
}

void Cook::StoreCustomer(std::size_t number) {
  dao::Guid guid;
  for (std::byte& byte : guid.bytes) byte = static_cast<std::byte>(Below(256));
  const auto memo = [&] { return Text(Below(3) == 0 ? recipe_.longest : 40); };
  Store(u"Klient", {{u"Nip", platform::DecimalText(static_cast<long long>(1000000 + number * 7))},
                    {u"Nazwa", OrNull(Text(60))},
                    {u"Miasto", OrNull(Text(Below(2) == 0 ? 3 : 30))},
                    {u"Opis", OrNull(memo())},
                    {u"Obraz", OrNull(Bytes(Below(4) == 0 ? 2 * recipe_.longest : 60))},
                    {u"Aktywny", Below(2) == 0},
                    {u"Poziom", OrNull(static_cast<std::uint8_t>(Below(256)))},
                    {u"Rabat", OrNull(static_cast<std::int16_t>(Below(65536)))},
                    {u"Waga", OrNull(static_cast<float>(Below(9999)) / 8.0f)},
                    {u"Wynik", OrNull(Below(0xFFFFFF) / -1024.0)},
                    {u"Saldo", OrNull(dao::Currency{std::int64_t{Below(0xFFFFFF)} * 1'000'003})},
                    {u"Od", OrNull(dao::Date{Below(60'000) + 0.25})},
                    {u"Znak", OrNull(guid)},
                    {u"Skrot", OrNull(Bytes(20))}});
}

void Cook::StoreInvoice(std::size_t number) {
  const auto year = static_cast<std::int32_t>(2000 + Below(3));
  const auto id = static_cast<std::int32_t>(number);
  Store(u"Faktura", {{u"Rok", year},
                     {u"Nr", id},
                     {u"Klient", OrNull(static_cast<std::int32_t>(1 + Below(recipe_.rows)))},
                     {u"Kwota", dao::Currency{std::int64_t{Below(0xFFFFFF)}}}});
  for (std::int32_t line = 1; line <= 3; ++line) {
    Store(u"Pozycja", {{u"Rok", year},
                       {u"Nr", id},
                       {u"Lp", line},
                       {u"Nazwa", OrNull(Text(Below(4) == 0 ? 200 : 20))},
                       {u"Uwaga", Below(5) == 0 ? dao::Value(Text(recipe_.longest)) : dao::Value()}});
  }
  Store(u"Dawna", {{u"Id", id}, {u"Opis", Text(recipe_.longest)}});
}

// Rows that outgrow their pages move; others shrink or go, with their long values.
void Cook::ChangeRows() {
  const std::u16string third = platform::DecimalText(static_cast<long long>(1 + recipe_.rows / 3));
  Execute(u"UPDATE Pozycja SET Nazwa = '" + std::u16string(180, u'w') + u"' WHERE Id Mod 4 = 1");
  Execute(u"UPDATE Klient SET Opis = '" + std::u16string(50, u'k') + u"', Miasto = 'Kielce' WHERE Id Mod 5 = 2");
  Execute(u"DELETE FROM Faktura WHERE Nr = " + third + u" OR Nr Mod 9 = 4");
  Execute(u"UPDATE Faktura SET Rok = 2010 WHERE Nr Mod 7 = 3");
  Execute(u"DELETE FROM Pozycja WHERE Id Mod 6 = 3");
  Execute(u"DROP TABLE Dawna");
}

FileBytes Cook::Run() {
  database_ = workspace_->CreateDatabase(kPath, dao::dbLangGeneral, recipe_.encode ? dao::dbEncrypt : 0);
  if (recipe_.rows != 0) {
    for (const char16_t* statement : kStructure) Execute(statement);
    Relate();
    for (std::size_t i = 1; i <= recipe_.rows; ++i) StoreCustomer(i);
    for (std::size_t i = 1; i <= recipe_.rows; ++i) StoreInvoice(i);
    ChangeRows();
  }
  database_->Close();
  return files_.BytesOf(kPath);
}

}  // namespace

FileBytes BytesOfNewDatabase(const Recipe& recipe) {
  return Cook(recipe).Run();
}

}  // namespace zimbrat::tests

// The first records of the catalogue tables: the program's row, the administrator, the company
// header, the accounting periods.
#include "generator/ModGeneruj.h"

#include "patience.h"
#include "suite/manners.h"
#include "platform/dao_connect.h"
#include "platform/dates.h"
#include "platform/text.h"

#include <array>
#include <memory>

namespace zimbrat::generator {
namespace {

constexpr std::array<std::u16string_view, 12> kMonthNames = {
    u"Styczeń", u"Luty",     u"Marzec",   u"Kwiecień",    u"Maj",      u"Czerwiec",
    u"Lipiec",  u"Sierpień", u"Wrzesień", u"Październik", u"Listopad", u"Grudzień"};

void Put(dao::Recordset& row, std::u16string_view field, const dao::Value& value) {
  row.Fields()->Item(field)->SetValue(value);
}

void PutText(dao::Recordset& row, std::u16string_view field, std::u16string_view text) {
  Put(row, field, dao::Value(std::u16string(text)));
}

// The envelope of all four: a session of its own around the work.
template <class Work>
bool RecordInSession(ProgramState& state, std::u16string_view databasePath,
                     std::u16string_view connect, Work&& work) {
  return suite::Record(state.context, [&] {
    const auto session = OpenPatiently(state, databasePath, connect);
    work(session->Database());
    session->Close();
    return true;
  });
}

// Starts editing the first row of the query, or a new one; tells whether it is new.
bool EditOrAdd(dao::Recordset& rows) {
  const bool isNew = rows.EndOfFile();
  if (isNew) {
    rows.AddNew();
  } else {
    rows.Edit();
  }
  return isNew;
}

void WritePeriod(dao::Database& database, const platform::DateParts& date) {
  const auto row = database.OpenRecordset(u"SELECT * FROM dboko WHERE miesiac = " +
                                          platform::DecimalText(date.month) + u" And rok = " +
                                          platform::DecimalText(date.year));
  if (row->EndOfFile()) {
    row->AddNew();
    Put(*row, u"Miesiac", dao::Value(static_cast<std::int16_t>(date.month)));
    Put(*row, u"Rok", dao::Value(static_cast<std::int16_t>(date.year)));
    PutText(*row, u"Nazwa", kMonthNames[static_cast<std::size_t>(date.month) - 1]);
    row->Update();
  }
  row->Close();
}

void WritePeriods(dao::Database& database, const Periods& periods) {
  constexpr int kMoreThanAMonth = 35;
  const double end = platform::DateSerial(periods.yearTo, periods.monthTo, 1);
  double current = platform::DateSerial(periods.yearFrom, periods.monthFrom, 1);
  while (current <= end) {
    WritePeriod(database, platform::PartsOfDate(current));
    const platform::DateParts next = platform::PartsOfDate(current + kMoreThanAMonth);
    current = platform::DateSerial(next.year, next.month, 1);
  }
}

}  // namespace

bool ZapiszProgram(ProgramState& state, std::u16string_view databasePath,
                   const StructureHeader& header) {
  return RecordInSession(state, databasePath, dao::ConnectText(state.databasePassword),
                         [&](dao::Database& database) {
                           const auto row = database.OpenRecordset(
                               u"SELECT * FROM dbprg WHERE Indprg = '" + header.symbol + u"' ");
                           if (EditOrAdd(*row)) {
                             PutText(*row, u"Indprg", header.symbol);
                             PutText(*row, u"Nazwa", header.program);
                           }
                           Put(*row, u"VerMajor", dao::Value(header.verMajor));
                           Put(*row, u"VerMinor", dao::Value(header.verMinor));
                           row->Update();
                           row->Close();
                         });
}

bool ZapiszAdministratora(ProgramState& state, std::u16string_view databasePath) {
  return RecordInSession(state, databasePath, u"", [&](dao::Database& database) {
    const auto row = database.OpenRecordset(u"SELECT * FROM dboso WHERE Indoso = 'AD' ");
    if (EditOrAdd(*row)) {
      PutText(*row, u"Indoso", u"AD");
      PutText(*row, u"Imie", u"Administrator");
      PutText(*row, u"Nazwisko", u"KLX");
    }
    Put(*row, u"Aktywny", dao::Value(true));
    Put(*row, u"Admin", dao::Value(true));
    row->Update();
    row->Close();
  });
}

bool ZapiszFirme(ProgramState& state, std::u16string_view databasePath) {
  return RecordInSession(state, databasePath, dao::ConnectText(state.databasePassword),
                         [&](dao::Database& database) {
                           const auto row = database.OpenRecordset(u"SELECT * FROM dbfir");
                           EditOrAdd(*row);
                           PutText(*row, u"Nazwa", u"Nazwa firmy...");
                           PutText(*row, u"Naglowek1", u"Nazwa firmy...");
                           PutText(*row, u"Naglowek2", u"Menu Baza, polecenie Nazwa firmy");
                           PutText(*row, u"Naglowek3", u"karta Nagłowek, logo");  // sic
                           row->Update();
                           row->Close();
                         });
}

bool ZapiszOkresy(ProgramState& state, std::u16string_view databasePath, const Periods& periods) {
  return RecordInSession(state, databasePath, u"", [&](dao::Database& database) {
    database.Execute(u"DELETE FROM dboko");
    WritePeriods(database, periods);
    // Kept: each time the company header goes back to one row of placeholders.
    database.Execute(u"DELETE FROM dbfir ");
    database.Execute(
        u"INSERT INTO dbfir ( Naglowek1,Naglowek2,Naglowek3) VALUES('Nazwa firmy', 'Adres firmy', "
        u"'Dane kontaktowe (menu Baza / Dane Firmy / Nagłówek, logo)' ) ",
        dao::dbFailOnError);
  });
}

}  // namespace zimbrat::generator

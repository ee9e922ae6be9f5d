#include "platform/dao_errors.h"

#include <algorithm>

#include "platform/error_numbers.h"
#include "platform/numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::dao {

namespace {

using namespace zimbrat::platform;

struct NumberText {
  std::int32_t number;
  std::u16string_view text;  // %1 and %2 stand for names
};

constexpr NumberText kTexts[] = {
    {kErrInvalidArgument, u"Nieprawidłowy argument."},
    {kErrTooManyTransactions, u"Zbyt wiele zagnieżdżonych transakcji."},
    {kErrBadDatabaseName, u"„%1” nie jest prawidłową nazwą bazy danych."},
    {kErrTableInUse, u"Nie można zablokować tabeli „%1”; jest używana."},
    {kErrTableExists, u"Tabela „%1” już istnieje."},
    {kErrObjectNotFound, u"Nie można odnaleźć obiektu „%1”."},
    {kErrObjectExists, u"Obiekt „%1” już istnieje."},
    {kErrNoEdit, u"Wywołano Update lub CancelUpdate bez AddNew lub Edit."},
    {kErrNoCurrentRecord, u"Brak bieżącego rekordu."},
    {kErrDuplicateKey,
     u"Zmiany nie powiodły się, gdyż utworzyłyby zduplikowane wartości w indeksie, kluczu podstawowym "
     u"lub relacji (tabela „%1”, indeks „%2”)."},
    {kErrCouldNotFindFile, u"Nie można odnaleźć pliku „%1”."},
    {kErrNoDiskSpace, u"Za mało miejsca na dysku."},
    {kErrReadOnly, u"Nie można aktualizować. Baza danych lub obiekt jest tylko do odczytu."},
    {kErrInvalidAccount, u"Nieprawidłowa nazwa konta lub hasło."},
    {kErrInvalidPassword, u"Nieprawidłowe hasło."},
    {kErrNoTransaction, u"Zatwierdzenie lub wycofanie transakcji bez jej rozpoczęcia."},
    {kErrDatabaseFull, u"Baza danych osiągnęła maksymalny rozmiar 2 GB."},
    {kErrDiskIo, u"Błąd dysku lub sieci."},
    {kErrInvalidPath, u"„%1” nie jest prawidłową ścieżką."},
    {kErrFileInUse, u"Nie można użyć „%1”; plik jest już używany."},
    {kErrRecordTooLarge, u"Rekord jest zbyt duży."},
    {kErrCannotOpenDatabase, u"Nie można otworzyć bazy danych; plik jest uszkodzony: %1."},
    {kErrCannotOpenFile,
     u"Aparat bazy danych nie może otworzyć pliku „%1”. Jest otwarty w trybie wyłączności lub brak "
     u"uprawnień."},
    {kErrInvalidFileName, u"Nieprawidłowa nazwa pliku."},
    {kErrCannotRepair, u"Nie można naprawić tej bazy danych%1."},
    {kErrNullInIndex, u"Indeks lub klucz podstawowy „%2” tabeli „%1” nie może zawierać wartości Null."},
    {kErrTooFewParameters, u"Zbyt mało parametrów. Oczekiwano %1."},
    {kErrDuplicateDestination, u"Zduplikowane miejsce docelowe „%1”."},
    {kErrExecuteSelect, u"Nie można wykonać kwerendy wybierającej."},
    {kErrNoInputTable, u"Kwerenda musi zawierać co najmniej jedną tabelę lub kwerendę."},
    {kErrQueryExpression, u"%1 w wyrażeniu kwerendy „%2”."},
    {kErrTableNotFound,
     u"Aparat bazy danych nie może odnaleźć tabeli wejściowej lub kwerendy „%1”. Sprawdź, czy istnieje "
     u"i czy jej nazwa jest poprawna."},
    {kErrUndefinedFunction, u"Niezdefiniowana funkcja „%1” w wyrażeniu."},
    {kErrTwoCounters, u"Tabela „%1” może mieć tylko jedno pole autonumerowania."},
    {kErrInvalidName, u"„%1” nie jest prawidłową nazwą."},
    {kErrBracketing, u"Nieprawidłowe nawiasy nazwy „%1”."},
    {kErrUnknownInsertField, u"Instrukcja INSERT INTO zawiera nieznaną nazwę pola: „%1”."},
    {kErrInvalidSql,
     u"Nieprawidłowa instrukcja SQL; oczekiwano 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' lub 'UPDATE'."},
    {kErrDeleteSyntax, u"Błąd składni w instrukcji DELETE."},
    {kErrFromSyntax, u"Błąd składni w klauzuli FROM."},
    {kErrInsertSyntax, u"Błąd składni w instrukcji INSERT INTO."},
    {kErrOrderBySyntax, u"Błąd składni w klauzuli ORDER BY."},
    {kErrSelectSyntax, u"Błąd składni w instrukcji SELECT."},
    {kErrAfterEndOfSql, u"Znaleziono znaki po końcu instrukcji SQL."},
    {kErrUpdateSyntax, u"Błąd składni w instrukcji UPDATE."},
    {kErrWhereSyntax, u"Błąd składni w klauzuli WHERE."},
    {kErrFieldTooSmall, u"Pole „%1” jest zbyt małe, aby pomieścić dodawane dane."},
    {kErrFieldNotUpdatable, u"Nie można zaktualizować pola „%1”."},
    {kErrTooManyFields, u"Zdefiniowano zbyt wiele pól."},
    {kErrFieldDefinedTwice, u"Pole „%1” zdefiniowano więcej niż raz."},
    {kErrOutputTableNotFound, u"Nie można odnaleźć tabeli wynikowej „%1”."},
    {kErrRelatedRecords,
     u"Nie można usunąć ani zmienić rekordu; tabela „%1” zawiera rekordy powiązane."},
    {kErrRelatedRecordRequired,
     u"Nie można dodać ani zmienić rekordu; wymagany jest rekord powiązany w tabeli „%1”."},
    {kErrDatabaseExists, u"Baza danych „%1” już istnieje."},
    {kErrFieldRelatedToItself, u"Nie można utworzyć relacji pola „%1” z samym sobą."},
    {kErrInvalidOperation, u"Nieprawidłowa operacja."},
    {kErrNotSupported, u"Operacja nie jest obsługiwana dla tego typu obiektu."},
    {kErrInvalidFieldType, u"Nieprawidłowy typ danych pola „%1”."},
    {kErrTableLocked, u"Tabela „%1” jest zablokowana w trybie wyłączności."},
    {kErrNoFieldDefined, u"Nie zdefiniowano pola – nie można dołączyć obiektu TableDef ani Index „%1”."},
    {kErrItemNotFound, u"Nie znaleziono elementu „%1” w tej kolekcji."},
    {kErrFieldAppendedTwice, u"Nie można dołączyć pola „%1”, które należy już do kolekcji."},
    {kErrValueNeedsRecordset, u"Właściwość można ustawić tylko w zestawie rekordów."},
    {kErrPropertyFixed, u"Nie można ustawić tej właściwości po dołączeniu obiektu do kolekcji."},
    {kErrIndexAppendedTwice, u"Nie można dołączyć indeksu „%1”, który należy już do kolekcji."},
    {kErrInvalidPropertyValue, u"Nieprawidłowa wartość właściwości."},
    {kErrTooManyIndexFields, u"Indeks „%1” nie może mieć więcej niż 10 pól."},
    {kErrFieldInIndex, u"Nie można usunąć pola „%1” będącego częścią indeksu lub potrzebnego systemowi."},
    {kErrUsedInRelation, u"Nie można usunąć „%1”: indeks lub tabela są używane w relacji."},
    {kErrPrimaryKeyExists, u"Klucz podstawowy już istnieje w tabeli „%1”."},
    {kErrIndexExists, u"Indeks „%1” już istnieje."},
    {kErrInvalidIndexDefinition, u"Nieprawidłowa definicja indeksu „%1”."},
    {kErrCannotIndexField, u"Nie można utworzyć indeksu na polu „%1”."},
    {kErrFieldInRelation, u"Nie można usunąć pola „%1” należącego do relacji."},
    {kErrPropertyTooLarge, u"Wartość właściwości jest zbyt długa."},
    {kErrExpressionNotAllowed, u"Nie można umieścić tego wyrażenia na polu „%1”."},
    {kErrRequired, u"Pole „%1” nie może zawierać wartości Null; właściwość Required ma wartość True."},
    {kErrZeroLength, u"Pole „%1” nie może być ciągiem o zerowej długości."},
    {kErrTableRule, u"Wartości są zabronione przez regułę tabeli „%1”."},
    {kErrFieldRule, u"Wartość jest zabroniona przez regułę „%1” dla „%2”."},
    {kErrExpressionSyntax, u"Błąd składni w wyrażeniu „%1”."},
    {kErrUnrecognizedFormat, u"Nierozpoznany format bazy danych „%1”%2."},
    {kErrUnknownNameInExpression, u"Nieznana nazwa „%1” w wyrażeniu."},
    {kErrValueCount, u"Liczba wartości kwerendy i pól docelowych jest różna."},
    {kErrDefaultSyntax, u"Błąd składni w wartości domyślnej „%1” pola „%2”."},
    {kErrRelationNoFields, u"Nie można dołączyć relacji „%1” bez pól."},
    {kErrDuplicateName, u"Nie można dołączyć. Obiekt o nazwie „%1” już istnieje w kolekcji."},
    {kErrRelationFieldsDiffer, u"Relacja „%1” musi obejmować tę samą liczbę pól tych samych typów."},
    {kErrDesignReadOnly, u"Nie można zmienić projektu tabeli „%1”; baza jest tylko do odczytu."},
    {kErrRelationDataViolates,
     u"Nie można utworzyć relacji; istniejące dane tabeli „%1” naruszają więzy integralności w tabeli "
     u"„%2”."},
    {kErrFieldTooLong, u"Rozmiar pola „%1” jest zbyt duży."},
    {kErrUnknownFunctionInDefault, u"Nieznana funkcja „%1” w wyrażeniu."},
    {kErrInvalidFieldName, u"Nieprawidłowa nazwa pola „%1” w definicji indeksu lub relacji „%2”."},
    {kErrObjectInvalid, u"Obiekt jest nieprawidłowy lub nie jest już ustawiony."},
    {kErrDataConversion, u"Błąd konwersji typu danych."},
    {kErrInvalidLocale, u"Nie można utworzyć bazy danych; nieprawidłowe ustawienia regionalne."},
    {kErrNoCountryCode, u"Nie można utworzyć bazy danych; brak kodu kraju w ustawieniach."},
    {kErrCriteriaMismatch, u"Niezgodność typów danych w wyrażeniu kryterium."},
    {kErrNoUniqueIndex,
     u"Nie znaleziono unikatowego indeksu dla pola odwołania tabeli głównej „%1” (relacja „%2”)."},
    {kErrNotExclusive, u"Nie można zmienić hasła bazy otwartej w trybie współdzielonym."},
    {kErrRepeatedTableName, u"Nie można powtórzyć nazwy tabeli „%1” w klauzuli FROM."},
    {kErrNotUpdatableQuery, u"Operacja musi używać kwerendy, którą można aktualizować."},
    {kErrAmbiguousName, u"Pole „%1” może odnosić się do więcej niż jednej tabeli klauzuli FROM."},
    {kErrNotInJoin, u"Sprzężenie odwołuje się do pola „%1”, którego nie ma w sprzęganych tabelach."},
    {kErrCannotDelete, u"Nie można usunąć rekordów z określonych tabel."},
    {kErrOrderConflictsDistinct, u"Klauzula ORDER BY „%1” jest w konflikcie z DISTINCT."},
    {kErrAggregateInGroupBy, u"Funkcja agregująca nie może wystąpić w klauzuli GROUP BY („%1”)."},
    {kErrAggregateInWhere, u"Funkcja agregująca nie może wystąpić w klauzuli WHERE („%1”)."},
    {kErrAggregateInJoin, u"Funkcja agregująca nie może wystąpić w operacji JOIN („%1”)."},
    {kErrAggregateInOrderBy, u"Funkcja agregująca nie może wystąpić w klauzuli ORDER BY („%1”)."},
    {kErrNestedAggregate, u"Funkcja agregująca nie może wystąpić w wyrażeniu „%1”."},
    {kErrDistinctOnLongValue, u"Nie można wybrać unikatowych wartości pola Obiekt OLE „%1”."},
    {kErrAggregateOfLongValue, u"Pole Nota lub Obiekt OLE nie może być argumentem funkcji agregującej „%1”."},
    {kErrSortOnLongValue, u"Nie można sortować według pola Obiekt OLE „%1”."},
    {kErrJoinOnLongValue, u"Nie można sprzęgać według pola Nota lub Obiekt OLE „%1”."},
    {kErrGroupOnLongValue, u"Nie można grupować według pola Obiekt OLE „%1”."},
    {kErrNotAggregated, u"Wyrażenie „%1” nie jest częścią funkcji agregującej."},
    {kErrNoDeleteTable, u"Określ tabelę zawierającą rekordy do usunięcia."},
    {kErrGroupBySyntax, u"Błąd składni w klauzuli GROUP BY."},
    {kErrHavingSyntax, u"Błąd składni w klauzuli HAVING."},
    {kErrJoinSyntax, u"Błąd składni w operacji JOIN."},
    {kErrAmbiguousOuterJoin,
     u"Nie można wykonać instrukcji, ponieważ zawiera niejednoznaczne sprzężenia zewnętrzne."},
    {kErrConstraintSyntax, u"Błąd składni w klauzuli CONSTRAINT."},
    {kErrCreateTableSyntax, u"Błąd składni w instrukcji CREATE TABLE."},
    {kErrCreateIndexSyntax, u"Błąd składni w instrukcji CREATE INDEX."},
    {kErrFieldDefinitionSyntax, u"Błąd składni w definicji pola."},
    {kErrAlterTableSyntax, u"Błąd składni w instrukcji ALTER TABLE."},
    {kErrDropIndexSyntax, u"Błąd składni w instrukcji DROP INDEX."},
    {kErrDropSyntax, u"Błąd składni w instrukcji DROP TABLE lub DROP INDEX."},
    {kErrJoinNotSupported, u"Nieobsługiwane wyrażenie sprzężenia."},
    {kErrSubqueryColumns, u"Podkwerenda bez EXISTS może zwracać tylko jedno pole."},
    {kErrUnionColumns, u"Liczba kolumn kwerend połączonych instrukcją UNION jest różna."},
    {kErrTopSyntax, u"Błąd składni w klauzuli TOP."},
    {kErrUnionSyntax, u"Błąd składni w kwerendzie składającej."},
    {kErrUnionOrder, u"Wyrażenie „%1” klauzuli ORDER BY nie jest kolumną kwerendy składającej."},
    {kErrSubqueryRows, u"Podkwerenda może zwrócić najwyżej jeden rekord."},
    {kErrQueryTooComplex, u"Kwerenda jest zbyt złożona."},
    {kErrTableOrConstraintNotFound, u"Nie można odnaleźć tabeli lub więzów „%1”."},
    {kErrNoSuchIndex, u"Nie ma indeksu „%2” w tabeli „%1”."},
    {kErrNoPrimaryKey, u"Tabela „%1”, do której prowadzi odwołanie, nie ma klucza podstawowego."},
    {kErrNotUniquelyIndexed, u"Wskazane pola nie mają unikatowego indeksu w tabeli „%1”."},
    {kErrIndexExistsInTable, u"Tabela „%1” ma już indeks o nazwie „%2”."},
    {kErrNoSuchTable, u"Tabela „%1” nie istnieje."},
    {kErrRelationExists, u"W bazie danych istnieje już relacja o nazwie „%1”."},
    {kErrFieldExistsInTable, u"Pole „%2” już istnieje w tabeli „%1”."},
    {kErrNoSuchField, u"Nie ma pola „%2” w tabeli „%1”."},
    {kErrJoinTypeMismatch, u"Niezgodność typów w wyrażeniu JOIN."},
    {kErrTooManyIndexes, u"Zbyt wiele indeksów w tabeli „%1”."},
};

// A description is read in a message box; a statement may have a million characters.
constexpr std::size_t kMostQuoted = 300;

void AppendQuoted(std::u16string& text, std::u16string_view quoted) {
  text += quoted.substr(0, kMostQuoted);
  if (quoted.size() > kMostQuoted) text += u'…';
}

struct Translation {
  std::int32_t fileNumber;
  std::int32_t daoNumber;
};
constexpr Translation kFileErrors[] = {
    {kErrBadFileName, kErrBadDatabaseName}, {kErrFileNotFound, kErrCouldNotFindFile},
    {kErrDeviceIo, kErrDiskIo},             {kErrFileExists, kErrDatabaseExists},
    {kErrDiskFull, kErrNoDiskSpace},        {kErrPermissionDenied, kErrFileInUse},
    {kErrDiskNotReady, kErrDiskIo},         {kErrPathAccess, kErrCannotOpenFile},
    {kErrPathNotFound, kErrInvalidPath},
};

// Its text is kept; any other stays as it is.
RunTimeError FileErrorAsDao(const RunTimeError& error) {
  for (const Translation& row : kFileErrors) {
    if (row.fileNumber == error.Number()) {
      return RunTimeError(row.daoNumber, error.Source(), error.Description());
    }
  }
  return error;
}

}  // namespace

std::u16string ErrorText(std::int32_t number, std::u16string_view a, std::u16string_view b) {
  const auto* found = std::find_if(std::begin(kTexts), std::end(kTexts),
                                   [&](const NumberText& row) { return row.number == number; });
  if (found == std::end(kTexts)) {
    const std::u16string_view own = TextOfError(number);
    return std::u16string(own.empty() ? u"Błąd aparatu bazy danych." : own);
  }
  std::u16string text;
  for (std::size_t i = 0; i < found->text.size(); ++i) {
    if (found->text[i] == u'%' && i + 1 < found->text.size()) {
      AppendQuoted(text, found->text[++i] == u'1' ? a : b);
    } else {
      text += found->text[i];
    }
  }
  return text;
}

void RethrowAs(std::u16string_view source) {
  const RunTimeError error = FileErrorAsDao(CurrentRunTimeError());
  const bool isNamed = error.Source().starts_with(u"DAO.");
  throw RunTimeError(error.Number(), isNamed ? error.Source() : std::u16string(source), error.Description());
}

std::int32_t NumberArgument(const Value& value, std::u16string_view source) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return *number;
  const auto* text = std::get_if<std::u16string>(&value);
  const std::optional<double> number = text ? FindNumber(*text) : std::nullopt;
  if (!number || *number < -2147483648.0 || *number > 2147483647.0) {
    throw RunTimeError(kErrDataConversion, std::u16string(source), ErrorText(kErrDataConversion));
  }
  return LongFromDouble(*number);
}

}  // namespace zimbrat::dao

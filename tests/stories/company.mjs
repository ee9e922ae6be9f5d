// Rows of a small company for the example programs, as SQL: some thousands, with Polish letters in them, in tables of
// all seven prefixes.

const digits = [..."0123456789"];

// Statements between which the table Cyfry, of the ten digits, is at hand.
const withDigits = (statements) => [
  "CREATE TABLE Cyfry (c LONG)",
  ...digits.map((digit) => `INSERT INTO Cyfry VALUES (${digit})`),
  ...statements,
  "DROP TABLE Cyfry",
];

const hundreds = "Cyfry AS a, Cyfry AS b, Cyfry AS d";
const number = "(100 * a.c + 10 * b.c + d.c)";

export const invoicing = withDigits([
  "INSERT INTO dboso (Indoso, Imie, Nazwisko, Admin) VALUES ('ŻG', 'Żaneta', 'Gęś', False)",
  "INSERT INTO SLStawkiVat (Symbol, Opis, Stawka) VALUES ('23', 'podstawowa', 23)",
  "INSERT INTO SLStawkiVat (Symbol, Opis, Stawka) VALUES ('zw', 'zwolniona', 0)",
  "INSERT INTO SLJednostki (Symbol, Opis) VALUES ('szt.', 'sztuka')",
  "INSERT INTO SLJednostki (Symbol, Opis, Miejsca) VALUES ('kg', 'kilogram ważony', 3)",
  "INSERT INTO SLFormyPlatnosci (Nazwa, Termin, Gotówka) VALUES ('gotówka', 0, True)",
  "INSERT INTO SLFormyPlatnosci (Nazwa) VALUES ('przelew')",
  "INSERT INTO SLWaluty (Kod, Nazwa) VALUES ('PLN', 'złoty')",
  "INSERT INTO SLWaluty (Kod, Nazwa, Kurs, DataKursu) VALUES ('EUR', 'euro', 4.25, #2025-01-02#)",
  "INSERT INTO KOGrupy (Nazwa) VALUES ('odbiorcy')",
  "INSERT INTO KOGrupy (Nazwa) VALUES ('spółdzielnie')",
  `INSERT INTO KOKontrahenci (Symbol, Nazwa, IdGrupy, IdFormy, Rabat, Uwagi)
   SELECT 'K' & ${number}, 'Spółka Żółw nr ' & ${number}, 1 + d.c Mod 2, 1 + b.c Mod 2, d.c / 4,
          String(1 + 20 * d.c, 'ą') FROM ${hundreds} WHERE a.c < 3 ORDER BY ${number}`,
  `INSERT INTO KOAdresy (IdKontrahenta, Ulica, Miejscowość, Kod)
   SELECT IdKontrahenta, 'Źródlana ' & IdKontrahenta, Choose(1 + IdKontrahenta Mod 3, 'Łódź', 'Świdnica', 'Kraków'),
          '90-001' FROM KOKontrahenci ORDER BY IdKontrahenta`,
  "INSERT INTO TOGrupy (Nazwa) VALUES ('łożyska')",
  `INSERT INTO TOTowary (Symbol, Nazwa, IdGrupy, StawkaVat, Waga)
   SELECT 'T' & ${number}, 'Łożysko ćwierćcalowe ' & ${number}, 1, IIf(d.c = 0, 'zw', '23'), d.c / 8
   FROM ${hundreds} WHERE a.c = 0 ORDER BY ${number}`,
  "INSERT INTO TOCeny (IdTowaru, Netto) SELECT IdTowaru, IdTowaru * 1.25 FROM TOTowary",
  "INSERT INTO TOZdjecia (IdTowaru, Podpis) SELECT TOP 3 IdTowaru, 'Zdjęcie' FROM TOTowary ORDER BY IdTowaru",
  `INSERT INTO ZADokumenty (Numer, IdKontrahenta, Indoso, Data)
   SELECT 'ZA/' & IdKontrahenta, IdKontrahenta, 'ŻG', #2025-02-03# FROM KOKontrahenci ORDER BY IdKontrahenta`,
  `INSERT INTO ZAPozycje (IdZamowienia, Lp, IdTowaru, Ilość, Cena)
   SELECT IdZamowienia, c + 1, 1 + (IdZamowienia + c) Mod 100, 2.5, 9.99 FROM ZADokumenty, Cyfry WHERE c < 3`,
  `INSERT INTO FADokumenty (Numer, DataWystawienia, DataSprzedaży, IdKontrahenta, IdFormy, IdZamowienia, Netto, Vat)
   SELECT IdZamowienia & '/2025', DateAdd('d', IdZamowienia, #2024-12-01#), DateAdd('d', IdZamowienia, #2024-11-30#),
          IdKontrahenta, 2, IdZamowienia, 100, 23 FROM ZADokumenty ORDER BY IdZamowienia`,
  `INSERT INTO FAPozycje (IdFaktury, Lp, IdTowaru, Nazwa, Ilość, Cena)
   SELECT IdFaktury, Lp, IdTowaru, 'Łożysko', Ilość, Cena
   FROM FADokumenty INNER JOIN ZAPozycje ON FADokumenty.IdZamowienia = ZAPozycje.IdZamowienia`,
  "INSERT INTO FAPlatnosci (IdFaktury, Kwota, Tytuł) SELECT IdFaktury, 123, 'zapłata' FROM FADokumenty ORDER BY IdFaktury",
  `INSERT INTO FAZalaczniki (Klucz, IdFaktury, NazwaPliku)
   VALUES ('{01234567-89ab-cdef-0123-456789abcdef}', 1, 'umowa końcowa.pdf')`,
  `INSERT INTO KADokumenty (Numer, Kwota, IdKontrahenta, Opis)
   SELECT IdPlatnosci, Kwota, 1, 'wpłata gotówką' FROM FAPlatnosci WHERE IdPlatnosci < 100 ORDER BY IdPlatnosci`,
  "INSERT INTO BAWyciagi (Rachunek, Data) VALUES ('PL61109010140000071219812874', #2025-03-31#)",
  `INSERT INTO BAOperacje (IdWyciagu, Lp, Kwota, IdPlatnosci)
   SELECT 1, IdPlatnosci, Kwota, IdPlatnosci FROM FAPlatnosci WHERE IdPlatnosci >= 100`,
]);

export const payroll = withDigits([
  "INSERT INTO SLDzialy (Symbol, Nazwa) VALUES ('PROD', 'Produkcja łożysk')",
  "INSERT INTO SLStanowiska (Nazwa) VALUES ('ślusarz')",
  "INSERT INTO SLSkladniki (Kod, Nazwa) VALUES ('ZAS', 'płaca zasadnicza')",
  "INSERT INTO SLNieobecnosci (Kod, Nazwa) VALUES ('UW', 'urlop wypoczynkowy')",
  `INSERT INTO PRPracownicy (NrEwidencyjny, Nazwisko, Imię, IdDzialu, IdStanowiska, Zatrudniono)
   SELECT ${number}, 'Gżegżółka', 'Józef', 1, 1, #2020-09-01# FROM ${hundreds} WHERE a.c = 0 AND b.c < 3`,
  "INSERT INTO UMUmowy (Numer, IdPracownika, Stawka) SELECT 'U' & IdPracownika, IdPracownika, 5000 FROM PRPracownicy",
  "INSERT INTO UMSkladniki (IdUmowy, Kod, Kwota) SELECT IdUmowy, 'ZAS', Stawka FROM UMUmowy",
  "INSERT INTO KAKarty (IdPracownika, Rok, Miesiac, Zatwierdził) SELECT IdPracownika, 2025, 1, 'AD' FROM PRPracownicy",
  "INSERT INTO KADni (IdKarty, Dzień, Nieobecność) SELECT IdKarty, c + 1, IIf(c = 5, 'UW', Null) FROM KAKarty, Cyfry",
  "INSERT INTO PBListy (Numer, Rok, Miesiac) VALUES ('1', 2025, 1)",
  "INSERT INTO PBWyplaty (IdListy, IdPracownika, Brutto) SELECT 1, IdPracownika, 5000 FROM PRPracownicy",
  "INSERT INTO PBSkladniki (IdWyplaty, Kod, Kwota) SELECT IdWyplaty, 'ZAS', Brutto FROM PBWyplaty",
  "INSERT INTO BABadania (IdPracownika) SELECT IdPracownika FROM PRPracownicy",
  "INSERT INTO SESzkolenia (Temat) VALUES ('Bezpieczeństwo pracy')",
  "INSERT INTO SEUczestnicy (IdSzkolenia, IdPracownika) SELECT 1, IdPracownika FROM PRPracownicy",
]);

// The invoicing program one version on (of the text of its file): a table, a field, an index and a relationship
// under new names, new fields, a new table, statements for the rows that are there.
export function newInvoicing(text) {
  const change = (from, to) => {
    if (!text.includes(from)) throw new Error(`the structure file no longer holds ${from}`);
    text = text.replaceAll(from, to);
  };
  change("VerMinor=4", "VerMinor=5");
  change("TabCount=24\r\nRelCount=24", "TabCount=25\r\nRelCount=25");
  change("KOAdresy=1", "KOPlacowki=1\r\nKOKontakty=1");
  change("[KOAdresy]", "[KOPlacowki]");
  change("Field=Rodzaj,10,20,\"siedziba\"", "Field=Przeznaczenie,10,20,\"siedziba\"");
  change("Field=Kraj,10,2,\"PL\",True,False,2,\r\n", "Field=Kraj,10,2,\"PL\",True,False,2,\r\n" +
         "Field=Region,10,30,,False,True,2,\r\n");
  change("Index=Miejscowość,False,0,0,0", "Index=Położenie,False,0,0,0");
  change("[TOGrupy]\r\n", ["[KOKontakty]", "Field=IdKontaktu,4,4,,True,False,17,",
                           "Field=IdKontrahenta,4,4,,True,False,1,", "Field=Opis,10,60,,True,False,2,",
                           "Index=PrimaryKey,True,0,True,True", "IndexField=IdKontaktu,0", "",
                           "[TOGrupy]", ""].join("\r\n"));
  change("Field=Utworzono,8,8,=Now(),False,False,1,\r\nField=Uwagi,12,0,,False,True,2,\r\n" +
         "Index=PrimaryKey,True,0,True,True\r\nIndexField=IdFaktury,0",
         "Field=Utworzono,8,8,=Now(),False,False,1,\r\nField=Uwagi,12,0,,False,True,2,\r\n" +
         "Field=RokSprzedaży,3,2,,False,False,1,\r\n" +
         "Index=PrimaryKey,True,0,True,True\r\nIndexField=IdFaktury,0");
  change("KontrahenciAdresy=KOKontrahenci,KOAdresy,4352",
         "KontrahenciPlacowki=KOKontrahenci,KOPlacowki,4352\r\nKontrahenciKontakty=KOKontrahenci,KOKontakty,4352");
  change("[KontrahenciAdresy]\r\nField=IdKontrahenta,IdKontrahenta",
         "[KontrahenciPlacowki]\r\nField=IdKontrahenta,IdKontrahenta\r\n\r\n" +
         "[KontrahenciKontakty]\r\nField=IdKontrahenta,IdKontrahenta");
  change("\r\n\r\n[UPDATE]", ["", "RENTABLE=2.5,KOAdresy,KOPlacowki", "RENFIELD=2.5,KOPlacowki,Rodzaj,Przeznaczenie",
                              "RENINDEX=2.5,KOPlacowki,Miejscowość,Położenie",
                              "RENRELAT=2.5,KontrahenciAdresy,KontrahenciPlacowki", "", "[UPDATE]"].join("\r\n"));
  change("DELETE FROM KOAdresy WHERE Rodzaj = 'usunięty'", "DELETE FROM KOPlacowki WHERE Przeznaczenie = 'usunięty'");
  return text.trimEnd() + ["", "EXECUTE=2.5,UPDATE KOPlacowki SET Region = 'łódzkie' WHERE Miejscowość = 'Łódź'",
    "EXECUTE=2.5,UPDATE FADokumenty SET RokSprzedaży = Year(DataSprzedaży) WHERE RokSprzedaży IS NULL",
    "EXECUTE=2.5,INSERT INTO KOKontakty (IdKontrahenta, Opis) SELECT IdKontrahenta, 'sekretariat' " +
    "FROM KOKontrahenci WHERE IdKontrahenta NOT IN (SELECT IdKontrahenta FROM KOKontakty)", ""].join("\r\n");
}

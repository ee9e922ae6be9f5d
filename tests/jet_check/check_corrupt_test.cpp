// Faults planted in sound databases: each is named.
#include <algorithm>
#include <sstream>

#include "gtest/gtest.h"
#include "jet/check/check.h"
#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "platform/text.h"
#include "tests/support/access_files.h"
#include "tests/support/memory_files.h"

namespace zimbrat::jet {
namespace {

constexpr const char16_t* kPath = u"baza.mdb";

// Bytes of one page, and part of the line that tells of them.
struct Planted {
  const char* name;
  const char* file;
  PageNumber page;
  std::size_t offset;
  const char* bytes;
  const char16_t* line;
  bool isLoss = false;  // something cannot be read any more; else it is only not as it should be
};

// comp-index.mdb: table on page 15 with data on 17 to 20 and maps on 16, index root 29 with leaves
// 32 and 33. index.mdb: relationships between the tables of pages 24, 27 and 33. overflow.mdb:
// moved rows between pages 27, 28 and 31.
const Planted kPlanted[] = {
    // Header and maps.
    {"format mark", "comp-index.mdb", 0, 0x98, "55", u"brak oznaczenia formatu"},
    {"pointer to a system table", "comp-index.mdb", 0, 0x20, "00",
     u"jest wskazana w innym miejscu"},
    {"page in use marked free", "comp-index.mdb", 1, 0xFBB + 5 + 2, "02",
     u"mapa podaje ją jako wolną"},
    {"end of file not free", "comp-index.mdb", 1, 0xFBB + 5 + 60, "00",
     u"za końcem pliku nie są wolne"},
    {"map of another kind", "comp-index.mdb", 16, 0xFBB, "07", u"jest nieznanego rodzaju", true},
    {"data page missing in the map", "comp-index.mdb", 16, 0xFBB + 7, "1C", u"ale nie do jej map", true},
    {"page outside the file in the map", "comp-index.mdb", 16, 0xFBB + 68, "80",
     u"zawiera strony spoza pliku", true},
    {"another table's page in the map", "comp-index.mdb", 16, 0xFBB + 7, "9E", u"strona jest już", true},
    {"free space on a foreign page", "comp-index.mdb", 16, 0xF76 + 8, "80",
     u"z wolnym miejscem nie należy"},
    {"index page missing in the map", "comp-index.mdb", 16, 0xF31 + 9, "01",
     u"której nie ma w mapie indeksu"},
    {"more columns than any engine opens", "comp-index.mdb", 15, 0x29, "FF 01", u"definicja podaje 511 kolumn", true},
    {"more variable columns than any", "comp-index.mdb", 15, 0x2B, "FF 01", u"z nich 511 zmiennych", true},
    {"empty map that begins elsewhere", "comp-index.mdb", 1, 0xF77, "08", u"mapa stron 1 zaczyna się od strony 8"},
    {"empty map of another kind", "comp-index.mdb", 1, 0xF76, "01", u"nie wskazuje żadnej strony mapy"},
    {"page with room that no map tells of", "comp-index.mdb", 16, 0xF76 + 7, "00", u"mapa wolnego miejsca jej nie podaje"},
    {"sort order of the file", "comp-index.mdb", 0, 0x6E, "00", u"porządek sortowania pliku"},
    {"deleted map", "comp-index.mdb", 16, 15, "CF", u"mapy stron 0 nie ma", true},
    // Definitions.
    {"rows", "comp-index.mdb", 15, 16, "01", u"definicja podaje 513 wierszy"},
    {"length", "comp-index.mdb", 15, 8, "30", u"definicja", true},
    {"free bytes of a definition", "comp-index.mdb", 15, 2, "C1", u"liczba wolnych bajtów"},
    {"column of an unknown type", "comp-index.mdb", 15, 75, "0E", u"nieznanego typu 14", true},
    {"name of a column of the catalogue", "comp-index.mdb", 5, 301, "62", u"nie ma kolumny „ccolumn”", true},
    {"properties of a table", "comp-index.mdb", 30, 0xB42, "07", u"właściwości tabeli i jej pól są nieczytelne"},
    {"too many columns", "comp-index.mdb", 15, 45, "FF", u"nie może mieć", true},
    {"definition that goes on", "comp-index.mdb", 15, 4, "15", u"jest jeszcze jedna"},
    {"owned map is another table's", "comp-index.mdb", 15, 55, "00 06", u"ma dwóch właścicieli", true},
    {"other end of a relationship", "index.mdb", 24, 583, "09", u"drugiego końca"},
    {"ends that do not meet", "index.mdb", 24, 583, "01", u"nie wskazują na siebie"},
    {"cascades that differ", "index.mdb", 24, 591, "01", u"różne reguły kaskadowe"},
    {"tree that is not there", "index.mdb", 24, 578, "09", u"wskazuje drzewo 9"},
    // Data pages and rows.
    {"second byte", "comp-index.mdb", 17, 1, "00", u"drugi bajt strony"},
    {"free bytes of a data page", "comp-index.mdb", 17, 2, "06", u"liczba wolnych bajtów"},
    {"other owner", "comp-index.mdb", 17, 4, "15", u"innego właściciela", true},
    {"row above the one before", "comp-index.mdb", 17, 18, "E0", u"leży w niemożliwym miejscu", true},
    {"columns of a row", "comp-index.mdb", 17, 0xFE7, "09", u"podaje 9 kolumn", true},
    {"offsets of a row", "comp-index.mdb", 17, 0xFE7 + 18, "FF", u"część zmienna wiersza", true},
    {"moved row without target", "comp-index.mdb", 17, 15, "4F", u"przeniesionego wiersza nie ma", true},
    {"hidden row without home", "comp-index.mdb", 17, 15, "8F", u"nic nie wskazuje", true},
    {"deleted row with an entry", "comp-index.mdb", 17, 15, "CF",
     u"wpis wskazuje na brak wiersza 0"},
    {"value that is not its key's", "comp-index.mdb", 17, 0xFE7 + 2, "14",
     u"nie zgadza się z kolumną „CD_AGENTE”"},
    {"pointer of a moved row", "overflow.mdb", 27, 0xF6F, "05", u"przeniesionego wiersza nie ma", true},
    {"two pointers to one row", "overflow.mdb", 27, 0xF6F, "00 1C", u"wskazują dwa wiersze", true},
    {"ghost of a moved row", "overflow.mdb", 27, 19, "CF",
     u"na przeniesiony wiersz nic nie wskazuje", true},
    {"long value deleted", "comp-index.mdb", 30, 15, "CE", u"długiej wartości nie ma", true},
    {"long value moved", "comp-index.mdb", 30, 15, "4E", u"flagi przeniesionego wiersza", true},
    // Indexes.
    {"child twice", "comp-index.mdb", 29, 492, "21", u"po raz drugi"},
    {"child outside the map", "comp-index.mdb", 29, 492, "11", u"której nie ma w mapie indeksu"},
    {"no tail", "comp-index.mdb", 29, 20, "00", u"mapa indeksu ma 3 stron, a drzewo 2"},
    {"level of a node", "comp-index.mdb", 29, 26, "03", u"podaje poziom 3"},
    {"separator", "comp-index.mdb", 29, 484, "EB", u"mniejszy od ostatniego wpisu dziecka"},
    {"chain cut", "comp-index.mdb", 32, 16, "00", u"następną stroną jest 0"},
    {"chain backwards", "comp-index.mdb", 33, 12, "1D", u"poprzednią stroną jest 29"},
    {"free bytes of a leaf", "comp-index.mdb", 32, 2, "2A", u"liczba wolnych bajtów"},
    {"owner of a leaf", "comp-index.mdb", 32, 4, "10", u"właściciela 16", true},
    {"kind of page", "comp-index.mdb", 33, 0, "01", u"nie jest stroną indeksu", true},
    {"mask", "comp-index.mdb", 32, 27, "02", u"niemożliwą długość", true},
    {"prefix", "comp-index.mdb", 32, 24, "02", u"wpis"},
    {"order of keys", "comp-index.mdb", 32, 489, "EC", u"nie jest większy od poprzedniego"},
    {"row twice", "comp-index.mdb", 32, 494, "38", u"jest drugim wpisem wiersza"},
    {"entries with each other's rows", "comp-index.mdb", 32, 488, "37 ED 33 00 00 14 38", u"nie zgadza się z kolumną"},
    {"flag byte", "comp-index.mdb", 33, 480, "7E", u"nie zgadza się z kolumną"},
};

std::vector<std::byte> Bytes(const char* hex) {
  std::vector<std::byte> bytes;
  std::istringstream in(hex);
  for (unsigned byte = 0; in >> std::hex >> byte;) bytes.push_back(static_cast<std::byte>(byte));
  return bytes;
}

TEST(PlantedFaults, AreNamed) {
  if (!tests::HasAccessFiles()) GTEST_SKIP();
  for (const Planted& planted : kPlanted) {
    tests::MemoryFiles files;
    files.BytesOf(kPath) = tests::BytesOfFile(tests::AccessFile(planted.file));
    const std::vector<std::byte> bytes = Bytes(planted.bytes);
    std::copy(bytes.begin(), bytes.end(),
              files.BytesOf(kPath).begin() +
                  static_cast<std::ptrdiff_t>(planted.page * kPageSize + planted.offset));
    const std::vector<Fault> faults = CheckFile(files, kPath);
    std::string found;
    for (const Fault& fault : faults) {
      found += platform::Utf8FromUtf16(fault.place + u": " + fault.text) + "\n";
    }
    EXPECT_NE(std::string::npos, found.find(platform::Utf8FromUtf16(planted.line)))
        << planted.name << ", found:\n"
        << found;
    EXPECT_EQ(planted.isLoss, std::ranges::any_of(faults, &Fault::isLoss)) << planted.name << "\n" << found;
  }
}

}  // namespace
}  // namespace zimbrat::jet

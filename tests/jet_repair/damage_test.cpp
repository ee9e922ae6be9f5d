// Planted faults: what can be read is there afterwards, and the report tells of the rest.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "bench.h"
#include "jet/file/bytes.h"
#include "platform/text.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

// Bytes of one page, and what the report says of it: a line for each harmed table.
struct Planted {
  const char* name;
  const char* file;
  PageNumber page;
  std::size_t offset;
  const char* bytes;  // as hexadecimal numbers
  const char* losses;
};

// index.mdb: Table1 (rows on page 62) refers to Table2 (60) and Table3 (61), as MSysRelationships (37)
// says. overflow.mdb: moved rows between pages 27, 28 and 31. comp-index.mdb: definition on page 15,
// rows on 17 to 20, long values on 30.
const Planted kPlanted[] = {
    {"key twice", "index.mdb", 60, 0xFDC, "00",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: klucz tabeli "
     "„Table2” "
     "dopuszcza powtórzenia\n"
     "Table2: partial 0, lost 0; indeks „PrimaryKey” dopuszcza teraz powtórzenia, bo są w "
     "wierszach\n"},
    {"no key", "index.mdb", 60, 0xFFF, "02",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table2”\n"
     "Table2: partial 0, lost 0; indeks „PrimaryKey” dopuszcza teraz wartości Null, bo są w "
     "wierszach\n"},
    {"orphan", "index.mdb", 62, 0xFC3, "09",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table2”\n"},
    {"other end of a relationship", "index.mdb", 24, 583, "09",
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: brak jej drugiego "
     "końca\n"},
    {"number of columns of a relationship", "index.mdb", 37, 0xD7C + 7, "02", ""},
    {"position of a column of a relationship", "index.mdb", 37, 0xD7C + 10, "01", ""},
    {"rule of a relationship", "index.mdb", 37, 0xD7C + 3, "00", ""},
    {"place of a row", "index.mdb", 61, 16, "FF 0F", ""},
    {"row that seems deleted", "index.mdb", 61, 14, "FF FF",
     "Table1: partial 0, lost 0; relacja „Table3Table1” nie jest już wymuszana: są wiersze bez odpowiednika w "
     "tabeli „Table3”\n"
     "Table3: partial 0, lost 1\n"},
    {"places of two rows", "index.mdb", 61, 16, "FF 0F FF 0F",
     "Table1: partial 0, lost 0; relacja „Table3Table1” nie jest już wymuszana: są wiersze bez "
     "odpowiednika w "
     "tabeli „Table3”\n"
     "Table3: partial 0, lost 3\n"},
    {"number of rows on a page", "index.mdb", 61, 12, "FF FF", ""},
    {"owner of a page", "index.mdb", 61, 4, "FF 0F", ""},
    {"owner of a page is another table", "index.mdb", 60, 4, "18", ""},
    {"kind of a page", "index.mdb", 61, 0, "07", ""},
    {"number of rows in a definition", "index.mdb", 24, 16, "FF", ""},
    {"pointer of a moved row", "overflow.mdb", 27, 0xF6F, "05", ""},
    {"home slot of a moved row deleted", "overflow.mdb", 27, 19, "CF", ""},
    {"row that is deleted only on its page", "comp-index.mdb", 18, 15, "CF", "Table1: partial 0, lost 1\n"},
    {"long value deleted", "comp-index.mdb", 30, 15, "CE", "MSysObjects: partial 1, lost 0\n"},
    {"length of a long value", "comp-index.mdb", 30, 15, "0F", "MSysObjects: partial 1, lost 0\n"},
    {"properties of a table", "comp-index.mdb", 30, 0xB42, "07",
     "Table1: partial 0, lost 0; utracono właściwości pól: wartości domyślne, reguły, opisy\n"},
    {"type of a column", "comp-index.mdb", 15, 75, "0E",
     "Table1: partial 0, lost 0; poprawiono opis kolumny „CD_AGENTE”\n"},
    {"place of a Boolean, which has none", "common2.mdb", 15, 1258, "FF FF",
     "MSP_PROJECTS: partial 0, lost 0; poprawiono opis kolumny „PROJ_OPT_NEW_TASK_EST”\n"},
    {"type of a text", "index.mdb", 27, 112, "02",
     "Table2: partial 0, lost 0; poprawiono opis kolumny „data”\n"},
    {"variable part of a row", "comp-index.mdb", 17, 0xFE7 + 18, "FF",
     "Table1: partial 1, lost 0\n"},
    {"columns of a row", "comp-index.mdb", 17, 0xFE7, "09", "Table1: partial 0, lost 1\n"},
};

}  // namespace

TEST(PlantedDamage, CostsNoMoreThanItMust) {
  if (!HasAccessFiles()) GTEST_SKIP();
  for (const Planted& planted : kPlanted) {
    RepairBench bench(AccessFile(planted.file));
    std::istringstream in(planted.bytes);
    std::size_t at = planted.offset;
    for (unsigned byte = 0; in >> std::hex >> byte;)
      bench.Page(planted.page)[at++] = static_cast<std::byte>(byte);
    EXPECT_EQ(LossesOf(bench.Repair()), planted.losses) << planted.name;
    EXPECT_TRUE(CheckFile(bench.files, kPath).empty()) << planted.name;
  }
}

// What became of pages, and what the report says of it.
struct Displaced {
  const char* name;
  const char* file;
  std::function<void(RepairBench&)> damage;
  const char* losses;
};

void Swap(RepairBench& bench, PageNumber a, PageNumber b) {
  std::ranges::swap_ranges(bench.Page(a), bench.Page(b));
}

void Copy(RepairBench& bench, PageNumber from, PageNumber to) {
  std::ranges::copy(bench.Page(from), bench.Page(to).begin());
}

// empty.mdb: definitions of MSysObjects and MSysRelationships on pages 2 and 5. fixed-text.mdb: map of the table users
// on page 22, its rows beyond. comp-index.mdb: 92 rows more on page 18 than on 20, index entries on 32 and 33; overflow.mdb: moved rows on 31, and
// the places of their 4 homes on 27. properties.mdb: definition of MSysAccessXML on page 28. index.mdb: MSysObjects on page 14,
// as its map says on page 6.
const Displaced kDisplaced[] = {
    {"rows that changed places say whose they are", "index.mdb", [](RepairBench& b) { Swap(b, 60, 62); }, ""},
    {"definitions of the engine are known", "empty.mdb", [](RepairBench& b) { Swap(b, 2, 5); }, ""},
    {"the catalogue is known by its rows", "properties.mdb", [](RepairBench& b) { Swap(b, 2, 28); },
     "MSysAccessXML: partial 0, lost 25\n"},
    {"maps of tables that look alike changed places", "properties.mdb", [](RepairBench& b) { Swap(b, 44, 52); }, ""},
    {"rows overwritten by another table's", "index.mdb",
     [](RepairBench& b) { Copy(b, 61, 60); },
     "Table1: partial 0, lost 0; relacja „Table2Table1” nie jest już wymuszana: są wiersze bez odpowiednika w "
     "tabeli „Table2”\n"
     "Table2: partial 0, lost 3\n"},
    {"rows overwritten by others of the table, as the two pages tell", "comp-index.mdb",
     [](RepairBench& b) {
       Copy(b, 20, 18);
       b.Page(32)[0] = b.Page(33)[0] = std::byte{0};
     },
     "Table1: partial 0, lost 92\n"},
    {"rows overwritten by a page that is gone, as an index tells", "comp-index.mdb",
     [](RepairBench& b) {
       Copy(b, 20, 18);
       b.Page(18)[0xFFF] ^= std::byte{1};
     },
     "Table1: partial 0, lost 92\n"},
    {"rows overwritten by moved rows of the table", "overflow.mdb",
     [](RepairBench& b) {
       Copy(b, 31, 27);
       b.Page(27)[0xFF0] ^= std::byte{1};
     },
     "Table1: partial 0, lost 4\n"},
    {"file cut within a map", "fixed-text.mdb", [](RepairBench& b) { b.bytes().resize(92701); },
     "users: partial 0, lost 2\nMSysACEs: partial 0, lost 56\nMSysObjects: partial 5, lost 0\n"},
    {"map of the catalogue lies and nobody knows the free pages", "index.mdb",
     [](RepairBench& b) {
       Copy(b, 20, 1);
       b.Page(6)[0xFC1] = std::byte(0x20);
     },
     ""},
};

TEST(PlantedDamage, OfPagesOutOfPlace) {
  if (!HasAccessFiles()) GTEST_SKIP();
  for (const Displaced& displaced : kDisplaced) {
    RepairBench bench(AccessFile(displaced.file));
    displaced.damage(bench);
    EXPECT_EQ(LossesOf(bench.Repair()), displaced.losses) << displaced.name;
    EXPECT_TRUE(CheckFile(bench.files, kPath).empty()) << displaced.name;
  }
}

}  // namespace zimbrat::tests

#include "options.h"

namespace zimbrat::jetcheck {

const std::u16string_view kHelp =
    u"Użycie: jetcheck [--repair] [--json] [--haslo H] [--klucze] [--nieuzywane] PLIK...\n"
    u"\n"
    u"Sprawdza każdą stronę, mapę, definicję, wiersz i wpis indeksu baz danych Jet 4 (.mdb).\n"
    u"Bez --repair pliki nie są zmieniane. Każdy błąd to jeden wiersz: plik, miejsce, opis;\n"
    u"ostrzeżenia zaczynają się od „uwaga”.\n"
    u"\n"
    u"  --repair, --napraw\n"
    u"                naprawia: wszystko, co da się odczytać, trafia do nowego pliku, który po\n"
    u"                sprawdzeniu zastępuje stary; po błędach wypisuje tabele i ich straty\n"
    u"  --json        zamiast wierszy jedna tablica JSON, obiekt dla każdego pliku\n"
    u"  --haslo H     przyjmowane i pomijane: sprawdzanie i naprawa nie wymagają hasła, a "
    u"naprawiony\n"
    u"                plik ma to samo hasło\n"
    u"  --klucze      na koniec: ile kluczy indeksów odtworzono z wierszy bajt w bajt, według\n"
    u"                typu; tylko bez --repair\n"
    u"  --nieuzywane  ostrzega też o stronach, mapach i długich wartościach, których nic nie\n"
    u"                używa; tylko bez --repair\n"
    u"  --help, --pomoc\n"
    u"\n"
    u"Stan wyjścia: 0 pliki bez błędów (albo naprawione bez strat), 1 są błędy (po naprawie: "
    u"straty),\n"
    u"2 złe użycie albo pliku nie da się otworzyć lub naprawić.\n";

Options ReadOptions(const std::vector<std::u16string>& words) {
  Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::u16string& word = words[i];
    if (word == u"--help" || word == u"--pomoc") {
      options.wantsHelp = true;
    } else if (word == u"--repair" || word == u"--napraw") {
      options.wantsRepair = true;
    } else if (word == u"--json") {
      options.wantsJson = true;
    } else if (word == u"--klucze") {
      options.wantsKeys = true;
    } else if (word == u"--nieuzywane") {
      options.wantsUnused = true;
    } else if (word == u"--haslo") {
      options.isMisused = options.isMisused || ++i >= words.size();
    } else if (!word.starts_with(u"--haslo=")) {
      options.isMisused = options.isMisused || word.starts_with(u"--");
      options.paths.push_back(word);
    }
  }
  options.isMisused = options.isMisused || options.paths.empty();
  return options;
}

}  // namespace zimbrat::jetcheck

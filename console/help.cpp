#include "commands.h"

#include "suite/product.h"

namespace zimbrat::console {
namespace {

constexpr std::u16string_view kCommonHelp =
    u"\nWspólne opcje:\n"
    u"  --json           jeden obiekt JSON na standardowym wyjściu\n"
    u"  --cicho          bez paska postępu\n"
    u"  --silnik S       silnik baz danych: wbudowany albo zainstalowany (w systemie)\n"
    u"  --pomoc, --help  ta pomoc (także: zimbratc POLECENIE --pomoc)\n"
    u"  --wersja, --version\n"
    u"\nStan wyjścia: 0 wykonano, 1 zadanie nie powiodło się, 2 błędne wywołanie.\n"
    u"Hasło bazy można podać w zmiennej ZIMBRAT_HASLO, silnik w zmiennej ZIMBRAT_SILNIK.\n";

std::u16string Usage(const CommandSpec& command) {
  std::u16string text = u"zimbratc " + std::u16string(command.name);
  for (const OptionSpec& option : command.options) {
    std::u16string word(option.name);
    if (!option.value.empty()) word.append(u" ").append(option.value);
    text += option.isRequired ? u" " + word : u" [" + word + u"]";
  }
  if (!command.words.empty()) text.append(u" ").append(command.words);
  return text;
}

struct OptionHelp {
  std::u16string_view name;
  std::u16string_view text;
};

constexpr OptionHelp kOptionHelp[] = {
    {u"--folder", u"istniejący folder nowej bazy"},
    {u"--nazwa", u"nazwa bazy; rozszerzenie .mdb jest zbędne"},
    {u"--struktury",
     u"pliki struktur po przecinku lub średniku, z bieżącego folderu albo z folderu "
     u"programu"},
    {u"--od", u"pierwszy okres obliczeniowy, domyślnie styczeń bieżącego roku"},
    {u"--do", u"ostatni okres obliczeniowy, domyślnie grudzień bieżącego roku"},
    {u"--nadpisz", u"usuń istniejący plik o tej nazwie i utwórz nowy"},
    {u"--do-listy", u"dodaj bazę do podręcznej listy baz pakietu"},
    {u"--baza", u"plik bazy danych"},
    {u"--wzorzec", u"plik bazy, z której nowa baza bierze struktury i słowniki"},
    {u"--folder-struktur", u"folder plików *.stb, domyślnie folder programu"},
    {u"--haslo", u"hasło bazy"},
};

std::u16string_view HelpOf(std::u16string_view option) {
  for (const OptionHelp& help : kOptionHelp) {
    if (help.name == option) return help.text;
  }
  return {};
}

}  // namespace

std::u16string GeneralHelp() {
  std::u16string text = std::u16string(suite::ProductTitle()) + u" " +
                        std::u16string(suite::ProductVersion()) + u"\n\nPolecenia:\n";
  for (const CommandSpec& command : Commands()) {
    text.append(u"  ").append(Usage(command)).append(u"\n      ").append(command.purpose);
    text.append(u"\n");
  }
  return text.append(kCommonHelp);
}

std::u16string CommandHelp(const CommandSpec& command) {
  std::u16string text = Usage(command) + u"\n\n" + std::u16string(command.name) + u" " +
                        std::u16string(command.purpose) + u".\n";
  for (const OptionSpec& option : command.options) {
    text.append(u"  ").append(option.name).append(u" ").append(option.value);
    text.append(u"\n      ").append(HelpOf(option.name)).append(u"\n");
  }
  return text.append(kCommonHelp);
}

}  // namespace zimbrat::console

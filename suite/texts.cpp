#include "suite/ModPrgFun.h"

namespace zimbrat::suite {
namespace {

constexpr std::size_t kExtensionLength = 4;

struct Place {
  std::u16string folder;
  std::u16string name;
};

// Where an existing database lies: its name without the extension's four characters.
Place PlaceOfDatabase(std::u16string_view path) {
  Place place;
  SplitPath(path, place.folder, place.name);
  place.name.resize(place.name.size() - std::min(kExtensionLength, place.name.size()));
  return place;
}

Place PlaceFor(Task task, const Choices& choices) {
  if (task == Task::Nowa || task == Task::Wzorzec) return {choices.folder, choices.name};
  return PlaceOfDatabase(choices.database);
}

std::u16string Lines(std::initializer_list<std::u16string> lines) {
  std::u16string text;
  for (const std::u16string& line : lines) text.append(line).append(kCrLf);
  return text;
}

}  // namespace

std::u16string SummaryText(Task task, const Choices& choices) {
  const Place place = PlaceFor(task, choices);
  const std::u16string periods =
      u"Utwórz okresy obliczeniowe: " + choices.firstPeriod + u" - " + choices.lastPeriod;
  switch (task) {
    case Task::Nowa:
      return Lines({u"Tryb zimbrata: Utwórz nową, pustą bazę danych", u"Nazwa bazy: " + place.name,
                    u"Folder: " + place.folder, u"Dla programu(ów): " + choices.programs, periods});
    case Task::Dodaj:
      return Lines({u"Tryb zimbrata: Rozbuduj strukturę bazy", u"Nazwa bazy: " + place.name,
                    u"Folder: " + place.folder,
                    u"Dodaj strukturę dla programu(ów): " + choices.programs});
    case Task::Wzorzec:
      return Lines({u"Tryb zimbrata: Utwórz nową bazę danych",
                    u"używając jako wzorca bazę: " + choices.database,
                    u"Nazwa nowej bazy: " + place.name, u"Folder nowej bazy: " + place.folder,
                    periods});
    case Task::Sprawdz:
      break;
  }
  return Lines({u"Tryb zimbrata: Aktualizować, naprawić bazę danych", u"Nazwa bazy: " + place.name,
                u"Folder: " + place.folder});
}

std::u16string ResultText(Task task, const Choices& choices) {
  const Place place = PlaceFor(task, choices);
  const std::u16string folder = u"Folder: " + place.folder;
  switch (task) {
    case Task::Nowa:
    case Task::Wzorzec:
      return Lines({u"Baza danych: " + place.name, folder, u"została poprawnie utworzona."});
    case Task::Dodaj:
      return Lines({u"Struktura bazy danych: " + place.name, folder,
                    u"została poprawnie rozbudowana dla programu(ów): " + choices.programs});
    case Task::Sprawdz:
      break;
  }
  return Lines({u"Baza danych: " + place.name, folder,
                u"została poddana aktualizacji i weryfikacji. Tabele systemowe, indeksy oraz "
                u"tablice programów posiadają poprawną strukturę."});
}

}  // namespace zimbrat::suite

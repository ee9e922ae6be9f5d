#include "app/page_texts.h"

#include <algorithm>
#include <optional>
#include <span>

namespace zimbrat::app {
namespace {

struct Description {
  std::u16string_view page;
  std::optional<suite::Task> task;  // none: of every task
  std::u16string_view text;
};

constexpr std::nullopt_t kEveryTask = std::nullopt;

constexpr Description kOnNext[] = {
    {u"NowaBaza", suite::Task::Nowa,
     u"Utworzona zostanie nowa baza danych. Podaj nazwę bazy oraz folder w którym zostanie "
     u"utworzona. Kliknij Dalej > aby przejść do następnej planszy."},
    {u"NowaBaza", suite::Task::Wzorzec,
     u"Podaj nazwę bazy danych oraz folder w którym zostanie utworzona. Kliknij Dalej > "
     u"aby przejść do następnej planszy."},
    {u"NazwaBazy", suite::Task::Dodaj,
     u"Wybierz bazę danych, której struktura ma zostać rozbudowana. Kliknij Dalej > aby "
     u"przejść do następnej planszy."},
    {u"NazwaBazy", suite::Task::Wzorzec,
     u"Wybierz bazę danych, która posłuży jako wzorzec do utworzenia nowej bazy. Kliknij "
     u"Dalej > aby przejść do następnej planszy."},
    {u"NazwaBazy", suite::Task::Sprawdz,
     u"Wybierz bazę danych, która zostanie poddana weryfikacji. Kliknij Dalej > aby "
     u"przejść do następnej planszy."},
    {u"ProgBazy", kEveryTask,
     u"Zaznacz programy pakietu, które będą korzystały z bazy danych. Kliknij Dalej > aby "
     u"przejść do następnej planszy."},
    {u"Struktura", suite::Task::Dodaj,
     u"Zaznacz programy, dla których ma zostać rozbudowana struktura bazy. Kliknij Dalej > "
     u"aby przejść do następnej planszy."},
    {u"Struktura", suite::Task::Sprawdz,
     u"Sprawdź struktury zainstalowane w bazie. Kliknij Dalej > aby przejść do następnej "
     u"planszy."},
    {u"Okresy", kEveryTask,
     u"Zdefiniuj okresy obliczeniowe (miesiące) bazy. Okresy obliczeniowe możesz dodać "
     u"później w utworzonej bazie. Kliknij Dalej > aby przejść do następnej planszy."},
    {u"Generuj", suite::Task::Nowa,
     u"Sprawdź ustawione wcześniej właściwości nowej bazy. Kliknij Utwórz aby utworzyć "
     u"bazę danych."},
    {u"Generuj", suite::Task::Wzorzec,
     u"Sprawdź ustawione wcześniej właściwości nowej bazy. Kliknij Utwórz aby utworzyć "
     u"bazę danych."},
    {u"Generuj", suite::Task::Dodaj,
     u"Sprawdź wybrane wcześniej ustawienia zimbrata. Kliknij Rozbuduj aby utworzyć bazę "
     u"danych."},
    {u"Generuj", suite::Task::Sprawdz,
     u"Kliknij Sprawdź aby skontrolować strukturę bazy danych."},
    {u"Koniec", kEveryTask,
     u"Zimbrat bazy zakończył tworzenie bazy danych. Kliknij Zakończ aby zamknąć okno "
     u"zimbrata."},
    {u"Start", kEveryTask,
     u"Ten zimbrat pomoże Ci utworzyć nową lub rozbudować istniejącą bazę danych. Wybierz "
     u"co chcesz zrobić. Kliknij Dalej > aby przejść do następnej planszy."},
};

// The others are as on Next.
constexpr Description kOnBack[] = {
    {u"NowaBaza", suite::Task::Nowa,
     u"Utworzona zostanie nowa baza danych. Podaj nazwę bazy danych oraz folder w którym "
     u"zostanie utworzona baza. Kliknij Dalej > aby przejść do następnej planszy."},
    {u"NowaBaza", suite::Task::Wzorzec,
     u"Podaj nazwę bazy danych oraz folder w którym zostanie utworzona baza. Kliknij Dalej "
     u"> aby przejść do następnej planszy."},
    {u"ProgBazy", kEveryTask,
     u"Zaznacz programy Pakietu, które będą korzystały z bazy danych. Kliknij Dalej > aby "
     u"przejść do następnej planszy."},
    {u"Okresy", kEveryTask,
     u"Zdefiniuj okresy obliczeniowe (miesiące) dla wystawianych dokumentów. Kliknij Dalej "
     u"> aby przejść do następnej planszy."},
};

const Description* Find(std::span<const Description> descriptions, std::u16string_view page,
                        suite::Task task) {
  const auto found = std::ranges::find_if(descriptions, [&](const Description& description) {
    return description.page == page && description.task.value_or(task) == task;
  });
  return found == descriptions.end() ? nullptr : &*found;
}

}  // namespace

std::u16string_view DescriptionOnNext(std::u16string_view page, suite::Task task) {
  const Description* description = Find(kOnNext, page, task);
  return description == nullptr ? std::u16string_view() : description->text;
}

std::u16string_view DescriptionOnBack(std::u16string_view page, suite::Task task) {
  const Description* description = Find(kOnBack, page, task);
  return description == nullptr ? DescriptionOnNext(page, task) : description->text;
}

}  // namespace zimbrat::app

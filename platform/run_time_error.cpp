#include "platform/run_time_error.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "platform/error_numbers.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

struct ErrorText {
  std::int32_t number;
  std::u16string_view text;
};

constexpr ErrorText kErrorTexts[] = {
    {kErrInvalidCall, u"Nieprawidłowe wywołanie procedury lub argument"},
    {kErrOverflow, u"Przepełnienie"},
    {kErrOutOfMemory, u"Brak pamięci"},
    {kErrSubscript, u"Indeks poza zakresem"},
    {kErrDivisionByZero, u"Dzielenie przez zero"},
    {kErrTypeMismatch, u"Niezgodność typów"},
    {kErrUserInterrupt, u"Przerwano na żądanie użytkownika"},
    {kErrBadFileName, u"Zła nazwa lub numer pliku"},
    {kErrFileNotFound, u"Nie znaleziono pliku"},
    {kErrDeviceIo, u"Błąd wejścia/wyjścia urządzenia"},
    {kErrFileExists, u"Plik już istnieje"},
    {kErrDiskFull, u"Dysk jest pełny"},
    {kErrPermissionDenied, u"Odmowa uprawnień"},
    {kErrDiskNotReady, u"Dysk niegotowy"},
    {kErrPathAccess, u"Błąd dostępu do ścieżki lub pliku"},
    {kErrPathNotFound, u"Nie znaleziono ścieżki"},
    {kErrObjectNotSet, u"Nie ustawiono zmiennej obiektowej lub zmiennej bloku With"},
    {kErrInvalidNull, u"Nieprawidłowe użycie wartości Null"},
    {kErrAborted, u"Operacja została przerwana przez obiekt"},
    {kErrCannotCreateObject, u"Składnik ActiveX nie może utworzyć obiektu"},
    {kErrNoInterface, u"Klasa nie obsługuje automatyzacji"},
    {kErrNoSuchMember, u"Obiekt nie obsługuje tej właściwości lub metody"},
    {kErrAutomation, u"Błąd automatyzacji"},
    {kErrActionNotSupported, u"Obiekt nie obsługuje tej akcji"},
    {kErrNoNamedArguments, u"Obiekt nie obsługuje nazwanych argumentów"},
    {kErrArgumentNotFound, u"Nie znaleziono nazwanego argumentu"},
    {kErrArgumentNotOptional, u"Argument nie jest opcjonalny"},
    {kErrWrongArguments, u"Niewłaściwa liczba argumentów lub nieprawidłowe przypisanie właściwości"},
    {kErrNoMailSession, u"Brak sesji poczty"},
};

}  // namespace

RunTimeError::RunTimeError(std::int32_t number, std::u16string source, std::u16string description)
    : number_(number),
      source_(std::move(source)),
      description_(std::move(description)),
      what_(Utf8FromUtf16(description_)) {}

std::u16string_view TextOfError(std::int32_t number) {
  const auto* found = std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
                                   [number](const ErrorText& e) { return e.number == number; });
  return found == std::end(kErrorTexts) ? std::u16string_view() : found->text;
}

RunTimeError OwnError(std::int32_t number) {
  return RunTimeError(number, kOwnErrorSource, std::u16string(TextOfError(number)));
}

RunTimeError CurrentRunTimeError() {
  try {
    throw;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return OwnError(kErrOutOfMemory);
  } catch (const std::exception& error) {
    return RunTimeError(kErrAutomation, kOwnErrorSource, Utf16FromUtf8(error.what()));
  }
}

}  // namespace zimbrat::platform

#include "errors/error_texts.h"

#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "suite/product.h"
#include "platform/files.h"
#include "platform/text.h"

namespace zimbrat::errors {
namespace {

constexpr std::u16string_view kTextsFile = u"Errormsg.txt";
constexpr std::u16string_view kEngine = u"DAO";
constexpr std::size_t kBufferSize = 4000;

bool IsOfEngine(std::u16string_view source) { return source.starts_with(kEngine); }

std::u16string MissingFileText(const std::u16string& file) {
  return u"Brak dostępu do pliku opisów błędów: " + file +
         u" - sprawdź czy we wskazanym folderze znaduje się plik Errormsg.txt.";  // sic
}

std::u16string AdviceText() {
  std::u16string text =
      u"Jeżeli nie jesteś w stanie określić przyczyny błędu wyślij informację o okolicznościach jego "
      u"występowania na adres: ";
  text.append(suite::SupportAddress()).append(suite::kCrLf);
  return text.append(u" Do poczty załącz plik dziennika błędów: Error.log.");
}

}  // namespace

std::u16string ErrorFile(const suite::ProgramState& state, std::u16string_view name) {
  std::u16string path;
  suite::Attempt([&] {
    path = state.errorFolder.empty() ? state.on.environment.ProgramFolder() : state.errorFolder;
  });
  path += platform::kPathSeparator;
  return path.append(name);
}

std::u16string SourceLabel(std::u16string_view source) {
  if (IsOfEngine(source)) return std::u16string(kEngine);
  return source == platform::kOwnErrorSource ? u"Program" : std::u16string(source);
}

std::u16string FindErrorText(const suite::ProgramState& state, std::u16string_view sourceLabel,
                             std::int32_t errorNumber) {
  std::string buffer(kBufferSize, ' ');
  std::uint32_t count = 0;
  suite::Attempt([&] {
    count = state.on.profile.String(
        platform::Ansi1250FromUtf16(sourceLabel),
        platform::Ansi1250FromUtf16(platform::DecimalText(errorNumber)), {}, buffer,
        ErrorFile(state, kTextsFile));
  });
  if (count == 0) return {};
  // The buffer ends behind the NUL of the answer.
  buffer.resize(buffer.find_last_not_of(' ') + 1);
  buffer.pop_back();
  return platform::Utf16FromAnsi1250(buffer);
}

std::u16string FindErrorText(const suite::ProgramState& state, const platform::RunTimeError& error) {
  return FindErrorText(state, SourceLabel(error.Source()), error.Number());
}

std::u16string ErrorTextLookup(const suite::ProgramState& state, std::u16string_view sourceLabel,
                               std::int32_t errorNumber, std::u16string_view currentSource) {
  std::u16string text;
  const auto error = suite::Attempt([&] {
    const std::u16string file = ErrorFile(state, kTextsFile);
    bool isThere = false;
    suite::Attempt([&] { isThere = state.on.files.IsFile(file); });
    text = isThere ? FindErrorText(state, sourceLabel, errorNumber) : MissingFileText(file);
    if (!text.empty()) return;
    text = IsOfEngine(currentSource) ? u"Błąd dostępu lub przetwarzania danych. " : u"Błąd programu. ";
    text += AdviceText();
  });
  return error ? u"Błąd inicjowania okna obsługi błędów." : text;
}

}  // namespace zimbrat::errors

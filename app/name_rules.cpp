#include "app/name_rules.h"

#include "generator/new_database_file.h"
#include "platform/text.h"

#include <algorithm>
#include <array>

namespace zimbrat::app {
namespace {

constexpr std::u16string_view kExtension = u".MDB";
constexpr std::u16string_view kForbidden = u"\\/:*?\"<>|";
// Bytes of one name on the common file systems, less what a run puts behind it while it works.
constexpr std::size_t kLongestNameBytes = 230;

// Names that Windows takes for devices, also with an extension behind them.
constexpr std::array<std::u16string_view, 6> kDevices = {u"CON", u"PRN",    u"AUX",
                                                         u"NUL", u"CONIN$", u"CONOUT$"};

bool IsDeviceName(std::u16string_view name) {
  const std::u16string stem =
      platform::UpperCase(platform::TrimBlanks(name.substr(0, name.find(u'.'))));
  if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) return true;
  constexpr std::u16string_view kPortDigits = u"123456789\u00B9\u00B2\u00B3";
  return stem.size() == 4 && (stem.starts_with(u"COM") || stem.starts_with(u"LPT")) &&
         kPortDigits.find(stem[3]) != std::u16string_view::npos;
}

bool IsUnreadable(char16_t unit) {
  constexpr char16_t kDelete = 0x7F, kReplacement = 0xFFFD;
  return unit < u' ' || unit == kDelete || unit == kReplacement ||
         (unit >= 0xD800 && unit <= 0xDFFF);
}

std::u16string Quoted(std::u16string_view text) {
  return u"„" + std::u16string(text) + u"”";
}

}  // namespace

std::u16string_view WithoutExtension(std::u16string_view name) {
  if (platform::UpperCase(name).ends_with(kExtension)) name.remove_suffix(kExtension.size());
  return name;
}

std::optional<std::u16string> FindNameFault(std::u16string_view name) {
  if (const std::size_t at = name.find_first_of(kForbidden); at != std::u16string_view::npos) {
    return u"Nazwa bazy danych nie może zawierać znaku " + Quoted(name.substr(at, 1)) +
           u". Wpisz inną nazwę.";
  }
  if (std::any_of(name.begin(), name.end(), IsUnreadable)) {
    return u"Nazwa bazy danych zawiera znak, którego nie można użyć w\u00A0nazwie pliku. "
           u"Wpisz inną nazwę.";
  }
  if (name.empty() || name.front() == u' ' || name.back() == u' ' || name.back() == u'.') {
    return u"Nazwa bazy danych nie może zaczynać się spacją ani kończyć spacją lub kropką. "
           u"Wpisz inną nazwę.";
  }
  // The list of databases takes a path that ends so for the file itself.
  if (platform::UpperCase(name).ends_with(kExtension)) {
    return u"Nazwa bazy danych nie może kończyć się na „.mdb”. Wpisz inną nazwę.";
  }
  if (IsDeviceName(name)) {
    return u"Nazwa " + Quoted(name) + u" jest zastrzeżona dla urządzenia. Wpisz inną nazwę.";
  }
  if (platform::Utf8FromUtf16(name).size() > kLongestNameBytes) {
    return u"Nazwa bazy danych jest zbyt długa. Wpisz krótszą nazwę.";
  }
  return std::nullopt;
}

std::optional<std::u16string> FindPlaceFault(std::u16string_view folder, std::u16string_view name) {
  // The doubled separator of a share is made single on the way to the file: that would be another
  // place.
  if (platform::kPathSeparator == u'\\' && folder.starts_with(u"\\\\")) {
    return u"Folder sieciowy " + Quoted(folder) +
           u" nie może być folderem nowej bazy. Wskaż folder dysku.";
  }
  const std::size_t length = folder.size() + 1 + name.size() + kExtension.size();
  if (length + generator::kWorkingSuffix.size() > kLongestPath) {
    return u"Ścieżka bazy danych jest zbyt długa: ma " +
           platform::DecimalText(static_cast<long long>(length)) + u" znaków, a może mieć " +
           platform::DecimalText(
               static_cast<long long>(kLongestPath - generator::kWorkingSuffix.size())) +
           u". Wskaż inny folder lub krótszą nazwę.";
  }
  return std::nullopt;
}

std::optional<std::u16string> FindListFault(const std::vector<std::u16string>& paths,
                                            char16_t separator) {
  const auto found = std::ranges::find_if(paths, [&](const std::u16string& path) {
    return path.find(separator) != std::u16string::npos;
  });
  if (found == paths.end()) return std::nullopt;
  return (separator == u',' ? u"Ścieżka pliku struktury zawiera przecinek: "
                            : u"Ścieżka pliku struktury zawiera średnik: ") +
         *found + u". Umieść plik w\u00A0innym folderze.";
}

}  // namespace zimbrat::app

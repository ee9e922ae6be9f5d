#include "engine_wish.h"

#include "console/nearest.h"

namespace zimbrat::console {

std::optional<std::u16string> FindWishFault(const Arguments& arguments, platform::Environment& environment,
                                            engines::Wish& wish) {
  const bool isOption = arguments.Has(kEngineOption);
  const std::u16string word =
      isOption ? arguments.Value(kEngineOption) : environment.Variable(engines::kEngineVariable);
  if (isOption && word.empty()) {
    return u"W opcji " + std::u16string(kEngineOption) + u" brakuje słowa: " +
           std::u16string(engines::kInstalledWord) + u" albo " + std::u16string(engines::kEmbeddedWord) + u".";
  }
  const auto found = engines::FindWish(word);
  if (found) {
    wish = *found;
    return std::nullopt;
  }
  const std::u16string nearest = NearestWord(
      word, {std::u16string(engines::kEmbeddedWord), std::u16string(engines::kInstalledWord)});
  return u"Nieznany silnik " +
         (isOption ? std::u16string(u"w opcji ") + std::u16string(kEngineOption)
                   : std::u16string(u"w zmiennej ") + std::u16string(engines::kEngineVariable)) +
         u": " + word + u". Czy chodziło o " + nearest + u"?";
}

}  // namespace zimbrat::console

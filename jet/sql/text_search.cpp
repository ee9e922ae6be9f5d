#include "text_search.h"

#include "platform/text.h"

namespace zimbrat::jet {

TextSearch::TextSearch(std::u16string_view part, TextComparison comparison) : comparison_(comparison), part_(part) {
  for (char16_t& unit : part_) unit = Unit(unit);
  borders_.assign(part_.size() + 1, 0);
  for (std::size_t i = 1, border = 0; i < part_.size(); ++i) {
    while (border > 0 && part_[i] != part_[border]) border = borders_[border];
    if (part_[i] == part_[border]) ++border;
    borders_[i + 1] = border;
  }
}

char16_t TextSearch::Unit(char16_t unit) const {
  return comparison_ == TextComparison::Binary ? unit : platform::UpperCase(unit);
}

std::size_t TextSearch::Find(std::u16string_view text, std::size_t from) const {
  std::size_t matched = 0;
  for (std::size_t i = from; i < text.size(); ++i) {
    const char16_t unit = Unit(text[i]);
    while (matched > 0 && part_[matched] != unit) matched = borders_[matched];
    if (part_[matched] == unit) ++matched;
    if (matched == part_.size()) return i + 1 - matched;
  }
  return text.npos;
}

std::size_t TextSearch::FindLast(std::u16string_view text, std::size_t end) const {
  std::size_t last = text.npos, matched = 0;
  for (std::size_t i = 0; i < end && i < text.size(); ++i) {
    const char16_t unit = Unit(text[i]);
    while (matched > 0 && (matched == part_.size() || part_[matched] != unit)) matched = borders_[matched];
    if (part_[matched] == unit) ++matched;
    if (matched == part_.size()) last = i + 1 - matched;
  }
  return last;
}

}  // namespace zimbrat::jet

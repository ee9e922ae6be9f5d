// JSON as text, without blanks.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zimbrat::platform {

// A text in quotes. Half a surrogate pair goes out as an escape: it has no form in UTF-8.
std::u16string JsonString(std::u16string_view text);

// A key and its value, which is JSON already.
using JsonMember = std::pair<std::u16string_view, std::u16string>;
std::u16string JsonObject(const std::vector<JsonMember>& members);

// `shape` makes JSON of an element.
template <class Rows, class Shape>
std::u16string JsonArray(const Rows& rows, Shape shape) {
  std::u16string json = u"[";
  for (const auto& row : rows) {
    if (json.size() > 1) json += u',';
    json += shape(row);
  }
  return json + u']';
}

}  // namespace zimbrat::platform

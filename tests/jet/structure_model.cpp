#include "structure_model.h"

#include <algorithm>
#include <set>

#include "platform/text.h"

namespace zimbrat::tests {

bool ModelTable::HasColumn(std::u16string_view name) const {
  return std::any_of(columns.begin(), columns.end(),
                     [&](const ModelColumn& c) { return platform::EqualIgnoringCase(c.name, name); });
}

bool ModelTable::IsIndexed(std::u16string_view column) const {
  return std::any_of(indexes.begin(), indexes.end(), [&](const ModelIndex& index) {
    return std::find(index.columns.begin(), index.columns.end(), column) != index.columns.end();
  });
}

bool ModelTable::Repeats(std::u16string_view column) const {
  std::set<std::int32_t> seen;
  for (const auto& [id, row] : rows) {
    const auto* number = std::get_if<std::int32_t>(&row.at(std::u16string(column)));
    if (number && !seen.insert(*number).second) return true;
  }
  return false;
}

bool ModelTable::BreaksAnIndex() const {
  return std::any_of(indexes.begin(), indexes.end(),
                     [&](const ModelIndex& index) { return index.unique && Repeats(index.columns.front()); });
}

std::u16string Chance::Name(std::u16string_view kind) {
  constexpr std::u16string_view letters = u"abcdeńóśźż_ ABĄĆ";
  std::u16string name(kind);
  for (std::uint32_t i = Below(8); i > 0; --i) name += letters[Below(letters.size())];
  return name + platform::DecimalText(Below(40));
}

std::u16string Chance::Text(std::size_t most) {
  constexpr std::u16string_view letters = u"aąbcćdeę łńoóśźżÄß-'漢\u3042xyz0189";
  std::u16string text(Below(most) + 1, u'x');
  const std::size_t kinds = OneIn(3) ? 3 : letters.size();
  for (char16_t& c : text) c = letters[Below(kinds)];
  return text;
}

ModelColumn Chance::Column() {
  constexpr int types[] = {dao::dbBoolean, dao::dbByte, dao::dbInteger, dao::dbLong, dao::dbLong, dao::dbCurrency,
                           dao::dbSingle, dao::dbDouble, dao::dbDate, dao::dbBinary, dao::dbText, dao::dbText,
                           dao::dbText, dao::dbMemo, dao::dbLongBinary, dao::dbGUID};
  ModelColumn column{Name(u"Pole"), types[Below(std::size(types))], 0};
  if (column.type == dao::dbText || column.type == dao::dbBinary) column.size = static_cast<int>(Below(200)) + 20;
  return column;
}

dao::Value Chance::ValueFor(const ModelColumn& column) {
  if (column.type == dao::dbBoolean) return OneIn(2);
  if (OneIn(6)) return dao::Null{};
  const auto number = static_cast<std::int32_t>(Below(0xFFFFFFFF));
  const auto bytes = [&](std::size_t size) {
    dao::Binary value(size);
    for (std::byte& b : value) b = static_cast<std::byte>(Below(256));
    return value;
  };
  switch (column.type) {
    case dao::dbByte: return static_cast<std::uint8_t>(number);
    case dao::dbInteger: return static_cast<std::int16_t>(number);
    case dao::dbLong: return OneIn(2) ? number : static_cast<std::int32_t>(Below(300));
    case dao::dbCurrency: return dao::Currency{std::int64_t{number} * 1'000'003};
    case dao::dbSingle: return static_cast<float>(number % 10'000) / 8.0f;
    case dao::dbDouble: return number / 1024.0;
    case dao::dbDate: return dao::Date{static_cast<double>(Below(60'000)) + Below(86'400) / 86'400.0};
    case dao::dbBinary: return bytes(Below(static_cast<std::size_t>(column.size)) + 1);
    case dao::dbText: return Text(static_cast<std::size_t>(column.size));
    case dao::dbMemo: return Text(OneIn(15) ? 6'000 : 80);
    case dao::dbLongBinary: return bytes(OneIn(15) ? 9'000 : 90);
    default: {
      dao::Guid guid;
      for (std::byte& b : guid.bytes) b = static_cast<std::byte>(Below(256));
      return guid;
    }
  }
}

}  // namespace zimbrat::tests

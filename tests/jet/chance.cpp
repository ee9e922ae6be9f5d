#include "chance.h"

#include <algorithm>
#include <limits>

#include "platform/text.h"

namespace zimbrat::tests {

namespace {

constexpr std::size_t kLongText = 6'000;   // over several pages
constexpr std::size_t kLongBytes = 9'000;
constexpr double kFirstDay = -657'434, kLastDay = 2'958'465;  // of the years 100 to 9999

template <class T>
T Extreme(std::uint32_t which) {
  constexpr T values[] = {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), T{1}, T{0}};
  return values[which % std::size(values)];
}

}  // namespace

std::u16string Chance::Name(std::u16string_view kind) {
  constexpr std::u16string_view letters = u"abcdeńóśźż_ ABĄĆ";
  std::u16string name(kind);
  for (std::uint32_t i = Below(8); i > 0; --i) name += letters[Below(letters.size())];
  return name + platform::DecimalText(Below(40));
}

std::u16string Chance::Text(std::size_t most) {
  constexpr std::u16string_view letters = u"aąbcćdeę łńoóśźżÄß-'漢\u3042xyz0189";
  std::u16string text(Below(most) + 1, u'x');
  if (OneIn(40)) {
    for (char16_t& c : text) c = static_cast<char16_t>(Below(0xFFFF) + 1);
    return text;
  }
  const std::size_t kinds = OneIn(3) ? 3 : letters.size();
  for (char16_t& c : text) c = letters[Below(kinds)];
  return text;
}

std::u16string Chance::Word() {
  constexpr std::u16string_view letters = u"abcABC";
  std::u16string word(Below(6) + 1, u'a');
  for (char16_t& c : word) c = letters[Below(letters.size())];
  return word;
}

ModelColumn Chance::Column() {
  constexpr int types[] = {dao::dbBoolean, dao::dbByte, dao::dbInteger, dao::dbLong, dao::dbLong, dao::dbCurrency,
                           dao::dbSingle, dao::dbDouble, dao::dbDate, dao::dbBinary, dao::dbText, dao::dbText,
                           dao::dbText, dao::dbMemo, dao::dbLongBinary, dao::dbGUID};
  ModelColumn column{.name = Name(u"Pole"), .type = types[Below(std::size(types))]};
  if (column.type == dao::dbText || column.type == dao::dbBinary) column.size = static_cast<int>(Below(200)) + 20;
  if (OneIn(10) && column.type == dao::dbText) column.size = 255;
  column.isWord = column.type == dao::dbText && OneIn(3);
  column.required = column.type != dao::dbBoolean && OneIn(10);
  column.allowsEmpty = !OneIn(4);
  return column;
}

dao::Binary Chance::Bytes(std::size_t size) {
  dao::Binary value(size);
  for (std::byte& b : value) b = static_cast<std::byte>(Below(256));
  return value;
}

dao::Value Chance::TextFor(const ModelColumn& column) {
  if (OneIn(column.allowsEmpty ? 15 : 100)) return std::u16string();
  if (column.isWord) return Word();
  if (column.type == dao::dbText) {
    return OneIn(20) ? std::u16string(static_cast<std::size_t>(column.size), u'ż')
                     : Text(static_cast<std::size_t>(column.size));
  }
  return Text(OneIn(15) ? kLongText : OneIn(5) ? 1'500 : 80);
}

dao::Value Chance::NumberFor(int type) {
  const bool isExtreme = OneIn(12);
  const std::uint32_t which = Below(4);
  const auto number = static_cast<std::int32_t>(Below(0xFFFFFFFF));
  switch (type) {
    case dao::dbByte: return isExtreme ? Extreme<std::uint8_t>(which) : static_cast<std::uint8_t>(number);
    case dao::dbInteger: return isExtreme ? Extreme<std::int16_t>(which) : static_cast<std::int16_t>(number);
    case dao::dbLong:
      if (isExtreme) return Extreme<std::int32_t>(which);
      return OneIn(2) ? number : static_cast<std::int32_t>(Below(300));
    case dao::dbCurrency:
      return dao::Currency{isExtreme ? Extreme<std::int64_t>(which) : std::int64_t{number} * 1'000'003};
    case dao::dbSingle: return isExtreme ? Extreme<float>(which) : static_cast<float>(number % 10'000) / 8.0f;
    case dao::dbDouble: return isExtreme ? Extreme<double>(which) : number / 1024.0;
    default:
      if (isExtreme) return dao::Date{which % 2 == 0 ? kFirstDay : kLastDay + 0.999};
      return dao::Date{static_cast<double>(Below(60'000)) + Below(86'400) / 86'400.0};
  }
}

dao::Value Chance::ValueFor(const ModelColumn& column) {
  if (column.type == dao::dbBoolean) return OneIn(2);
  if (OneIn(column.required ? 100 : 6)) return dao::Null{};
  switch (column.type) {
    case dao::dbText:
    case dao::dbMemo: return TextFor(column);
    case dao::dbBinary: return Bytes(Below(static_cast<std::size_t>(column.size)) + 1);
    case dao::dbLongBinary: return Bytes(OneIn(15) ? kLongBytes : OneIn(5) ? 3'000 : 90);
    case dao::dbGUID: {
      const dao::Binary bytes = Bytes(16);
      dao::Guid guid;
      std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
      return guid;
    }
    default: return NumberFor(column.type);
  }
}

}  // namespace zimbrat::tests

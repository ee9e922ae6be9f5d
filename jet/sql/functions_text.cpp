// Texts: parts, searches, letters. Positions count from 1.
#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/table/convert.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "function.h"
#include "operators.h"
#include "text_search.h"

namespace zimbrat::jet {

namespace {

dao::Value Length(std::size_t length) { return static_cast<std::int32_t>(length); }

dao::Value Left(const Arguments& a) { return a.Text(0).substr(0, a.Count(1, 0)); }

dao::Value Right(const Arguments& a) {
  const std::u16string text = a.Text(0);
  return text.substr(text.size() - std::min(a.Count(1, 0), text.size()));
}

dao::Value Mid(const Arguments& a) {
  const std::u16string text = a.Text(0);
  const std::size_t start = std::min(a.Count(1, 1) - 1, text.size());
  return text.substr(start, a.Size() > 2 ? a.Count(2, 0) : text.npos);
}

dao::Value Len(const Arguments& a) { return Length(a.Text(0).size()); }

std::u16string_view WithoutBlanksInFront(std::u16string_view text) {
  return text.substr(std::min(text.find_first_not_of(u' '), text.size()));
}
std::u16string_view WithoutBlanksBehind(std::u16string_view text) {
  return text.substr(0, text.find_last_not_of(u' ') + 1);
}

dao::Value LTrim(const Arguments& a) { return std::u16string(WithoutBlanksInFront(a.Text(0))); }
dao::Value RTrim(const Arguments& a) { return std::u16string(WithoutBlanksBehind(a.Text(0))); }
dao::Value Trim(const Arguments& a) { return std::u16string(platform::TrimBlanks(a.Text(0))); }
dao::Value UCase(const Arguments& a) { return platform::UpperCase(a.Text(0)); }
dao::Value LCase(const Arguments& a) { return platform::LowerCase(a.Text(0)); }

dao::Value StrReverse(const Arguments& a) {
  std::u16string text = a.Text(0);
  std::reverse(text.begin(), text.end());
  return text;
}

// 0 binary, 1 text, 2 as the database.
TextComparison ComparisonAt(const Arguments& a, std::size_t i, TextComparison absent) {
  if (i >= a.Size()) return absent;
  const std::int32_t number = a.Long(i);
  if (number < 0 || number > 2) Raise(platform::kErrInvalidCall);
  return number == 0 ? TextComparison::Binary : TextComparison::Text;
}

// InStr(text, part), InStr(start, text, part[, comparison]).
dao::Value InStr(const Arguments& a) {
  const std::size_t first = a.Size() > 2 ? 1 : 0;
  if (a.IsNull(first) || a.IsNull(first + 1)) return dao::Null{};
  const std::size_t start = first == 1 ? a.Count(0, 1) : 1;
  const std::u16string text = a.Text(first), part = a.Text(first + 1);
  const TextComparison comparison = ComparisonAt(a, 3, TextComparison::Text);
  if (text.empty() || start > text.size()) return Length(0);
  if (part.empty()) return Length(start);
  return Length(TextSearch(part, comparison).Find(text, start - 1) + 1);
}

// InStrRev(text, part[, start[, comparison]]); start -1 is the end.
dao::Value InStrRev(const Arguments& a) {
  const std::u16string text = a.Text(0), part = a.Text(1);
  const std::int32_t start = a.LongOr(2, -1);
  if (start == 0 || start < -1) Raise(platform::kErrInvalidCall);
  const std::size_t end = start == -1 ? text.size() : static_cast<std::size_t>(start);
  const TextComparison comparison = ComparisonAt(a, 3, TextComparison::Text);
  if (text.empty() || end > text.size()) return Length(0);
  if (part.empty()) return Length(end);
  return Length(TextSearch(part, comparison).FindLast(text, end) + 1);
}

// Replace(text, find, with[, start[, count[, comparison]]]): the result begins at start.
dao::Value Replace(const Arguments& a) {
  const std::u16string whole = a.Text(0), find = a.Text(1), with = a.Text(2);
  const std::size_t start = a.Size() > 3 ? a.Count(3, 1) - 1 : 0;
  std::int32_t left = a.LongOr(4, -1);
  if (left < -1) Raise(platform::kErrInvalidCall);
  const TextComparison comparison = ComparisonAt(a, 5, TextComparison::Binary);
  const std::u16string text = whole.substr(std::min(start, whole.size()));
  if (find.empty()) return text;
  const TextSearch search(find, comparison);
  std::u16string result;
  std::size_t at = 0;
  for (; left != 0; left -= left > 0 ? 1 : 0) {
    const std::size_t hit = search.Find(text, at);
    if (hit == text.npos) break;
    CheckResultLength(result.size() + (hit - at) + with.size());
    result.append(text, at, hit - at).append(with);
    at = hit + find.size();
  }
  CheckResultLength(result.size() + text.size() - at);
  return result.append(text, at);
}

dao::Value Space(const Arguments& a) {
  CheckResultLength(a.Count(0, 0));
  return std::u16string(a.Count(0, 0), u' ');
}

char16_t AnsiCharacter(std::int32_t code) { return platform::Utf16FromAnsi1250(static_cast<char>(code)); }

// The character is the first of a text, or a code.
dao::Value String(const Arguments& a) {
  CheckResultLength(a.Count(0, 0));
  char16_t unit = 0;
  if (const auto* text = std::get_if<std::u16string>(&a[1])) {
    if (text->empty()) Raise(platform::kErrInvalidCall);
    unit = text->front();
  } else {
    unit = AnsiCharacter(a.Long(1) & 0xFF);
  }
  return std::u16string(a.Count(0, 0), unit);
}

dao::Value StrComp(const Arguments& a) {
  const std::u16string left = a.Text(0), right = a.Text(1);
  if (ComparisonAt(a, 2, TextComparison::Text) == TextComparison::Text) {
    const auto order = CompareText(left, right);
    return std::int32_t{order < 0 ? -1 : order > 0 ? 1 : 0};
  }
  return std::int32_t{left < right ? -1 : right < left ? 1 : 0};
}

std::u16string ProperCase(std::u16string_view text) {
  constexpr std::u16string_view kBetweenWords(u"\0\t\n\v\f\r ", 7);
  std::u16string proper = platform::LowerCase(text);
  bool first = true;
  for (char16_t& unit : proper) {
    if (first) unit = platform::UpperCase(unit);
    first = kBetweenWords.find(unit) != kBetweenWords.npos;
  }
  return proper;
}

// 1 upper, 2 lower, 3 first letters upper.
dao::Value StrConv(const Arguments& a) {
  switch (a.Long(1)) {
    case 1: return platform::UpperCase(a.Text(0));
    case 2: return platform::LowerCase(a.Text(0));
    case 3: return ProperCase(a.Text(0));
    default: Raise(platform::kErrInvalidCall);
  }
}

dao::Value Chr(const Arguments& a) {
  const std::size_t code = a.Count(0, 0);
  if (code > 255) Raise(platform::kErrInvalidCall);
  return std::u16string(1, AnsiCharacter(static_cast<std::int32_t>(code)));
}

// Codes from 32,768 on are also known as negative ones.
dao::Value ChrW(const Arguments& a) {
  const std::int32_t code = a.Long(0);
  if (code < -32768 || code > 65535) Raise(platform::kErrInvalidCall);
  return std::u16string(1, static_cast<char16_t>(code & 0xFFFF));
}

char16_t FirstUnit(const Arguments& a) {
  const std::u16string text = a.Text(0);
  if (text.empty()) Raise(platform::kErrInvalidCall);
  return text.front();
}

dao::Value Asc(const Arguments& a) {
  const char16_t unit = FirstUnit(a);
  const std::string bytes = platform::Ansi1250FromUtf16(std::u16string_view(&unit, 1));
  return std::int32_t{static_cast<unsigned char>(bytes.front())};
}

dao::Value AscW(const Arguments& a) { return std::int32_t{static_cast<std::int16_t>(FirstUnit(a))}; }

constexpr Function kFunctions[] = {
    {u"ASC", 1, 1, 0, {dao::dbInteger}, Asc},
    {u"ASCW", 1, 1, 0, {dao::dbInteger}, AscW},
    {u"CHR", 1, 1, 0, {dao::dbText}, Chr},
    {u"CHRW", 1, 1, 0, {dao::dbText}, ChrW},
    {u"INSTR", 2, 4, 0, {dao::dbLong}, InStr},
    {u"INSTRREV", 2, 4, 0b11, {dao::dbLong}, InStrRev},
    {u"LCASE", 1, 1, 1, {dao::dbText}, LCase},
    {u"LEFT", 2, 2, 1, {dao::dbText}, Left},
    {u"LEN", 1, 1, 1, {dao::dbLong}, Len},
    {u"LTRIM", 1, 1, 1, {dao::dbText}, LTrim},
    {u"MID", 2, 3, 1, {dao::dbText}, Mid},
    {u"REPLACE", 3, 6, 0, {dao::dbText}, Replace},
    {u"RIGHT", 2, 2, 1, {dao::dbText}, Right},
    {u"RTRIM", 1, 1, 1, {dao::dbText}, RTrim},
    {u"SPACE", 1, 1, 0, {dao::dbText}, Space},
    {u"STRCOMP", 2, 3, 0b11, {dao::dbInteger}, StrComp},
    {u"STRCONV", 2, 2, 1, {dao::dbText}, StrConv},
    {u"STRING", 2, 2, 0b11, {dao::dbText}, String},
    {u"STRREVERSE", 1, 1, 1, {dao::dbText}, StrReverse},
    {u"TRIM", 1, 1, 1, {dao::dbText}, Trim},
    {u"UCASE", 1, 1, 1, {dao::dbText}, UCase},
};

}  // namespace

std::span<const Function> TextFunctions() { return kFunctions; }

}  // namespace zimbrat::jet

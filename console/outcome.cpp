#include "console/outcome.h"

#include "suite/ModPrgFun.h"
#include "platform/text.h"

#include <utility>

namespace zimbrat::console {
namespace {

void AppendEscaped(std::u16string& json, char16_t unit) {
  constexpr std::u16string_view kHex = u"0123456789abcdef";
  constexpr std::pair<char16_t, char16_t> kShort[] = {{u'\r', u'r'}, {u'\n', u'n'}, {u'\t', u't'}};
  for (const auto& [escaped, letter] : kShort) {
    if (unit == escaped) {
      json.append({u'\\', letter});
      return;
    }
  }
  json += u"\\u";
  for (int shift = 12; shift >= 0; shift -= 4) json += kHex[(unit >> shift) & 0xF];
}

// Half a surrogate pair goes out as an escape: it has no form in UTF-8.
std::u16string Quoted(std::u16string_view text) {
  std::u16string json = u"\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
    const bool isPair =
        isHigh && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
    if (unit == u'"' || unit == u'\\') {
      json.append({u'\\', unit});
    } else if (isPair) {
      json.append({unit, text[++i]});
    } else if (unit < u' ' || unit == 0x7F || (unit >= 0xD800 && unit < 0xE000)) {
      AppendEscaped(json, unit);
    } else {
      json += unit;
    }
  }
  return json + u'"';
}

using Member = std::pair<std::u16string_view, std::u16string>;

// Values are JSON already.
std::u16string Object(const std::vector<Member>& members) {
  std::u16string json = u"{";
  for (const auto& [key, value] : members) {
    if (json.size() > 1) json += u',';
    json += Quoted(key) + u':' + value;
  }
  return json + u'}';
}

template <class Rows, class Shape>
std::u16string Array(const Rows& rows, Shape shape) {
  std::u16string json = u"[";
  for (const auto& row : rows) {
    if (json.size() > 1) json += u',';
    json += shape(row);
  }
  return json + u']';
}

std::u16string JsonOf(const ProgramRow& row) {
  return Object({{u"nazwa", Quoted(row.name)},
                 {u"symbol", Quoted(row.symbol)},
                 {u"wersja", Quoted(row.version)},
                 {u"plik", Quoted(row.file)},
                 {u"stan", Quoted(row.state)}});
}

std::u16string JsonOf(const DatabaseRow& row) {
  return Object({{u"nazwa", Quoted(row.name)}, {u"plik", Quoted(row.file)}});
}

// Lines end as the terminal wants them.
std::u16string ForTerminal(std::u16string_view text) {
  std::u16string lines = platform::ReplaceAll(text, suite::kCrLf, u"\n");
  if (!lines.empty() && lines.back() != u'\n') lines += u'\n';
  return lines;
}

}  // namespace

Outcome Failed(std::u16string text) {
  return {kStatusFailed, std::move(text), {}, {}, {}};
}

Outcome WrongUsage(std::u16string text) {
  return {kStatusUsage, std::move(text), {}, {}, {}};
}

std::u16string JsonText(const Outcome& outcome, std::u16string_view command) {
  const auto shape = [](const auto& row) { return JsonOf(row); };
  return Object({{u"wynik", outcome.status == kStatusDone ? u"\"ok\"" : u"\"blad\""},
                 {u"status", platform::DecimalText(outcome.status)},
                 {u"polecenie", Quoted(command)},
                 {u"opis", Quoted(outcome.text)},
                 {u"baza", Quoted(outcome.database)},
                 {u"programy", Array(outcome.programs, shape)},
                 {u"bazy", Array(outcome.databases, shape)}}) +
         u'\n';
}

void PrintOutcome(platform::Console& console, const Outcome& outcome, std::u16string_view command,
                  bool isJson) {
  if (outcome.status != kStatusDone) {
    console.WriteError(ForTerminal(outcome.text));
  } else if (!isJson) {
    console.WriteOutput(ForTerminal(outcome.text));
  }
  if (isJson) console.WriteOutput(JsonText(outcome, command));
}

}  // namespace zimbrat::console

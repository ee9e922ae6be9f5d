#include "console/outcome.h"

#include "suite/ModPrgFun.h"
#include "platform/json.h"
#include "platform/text.h"

#include <utility>

namespace zimbrat::console {
namespace {

using platform::JsonArray;
using platform::JsonObject;
using platform::JsonString;

std::u16string JsonOf(const ProgramRow& row) {
  return JsonObject({{u"nazwa", JsonString(row.name)},
                     {u"symbol", JsonString(row.symbol)},
                     {u"wersja", JsonString(row.version)},
                     {u"plik", JsonString(row.file)},
                     {u"stan", JsonString(row.state)}});
}

std::u16string JsonOf(const DatabaseRow& row) {
  return JsonObject({{u"nazwa", JsonString(row.name)}, {u"plik", JsonString(row.file)}});
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
  return JsonObject({{u"wynik", outcome.status == kStatusDone ? u"\"ok\"" : u"\"blad\""},
                     {u"status", platform::DecimalText(outcome.status)},
                     {u"polecenie", JsonString(command)},
                     {u"opis", JsonString(outcome.text)},
                     {u"baza", JsonString(outcome.database)},
                     {u"programy", JsonArray(outcome.programs, shape)},
                     {u"bazy", JsonArray(outcome.databases, shape)}}) +
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

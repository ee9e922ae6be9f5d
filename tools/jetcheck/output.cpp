#include "output.h"

#include <algorithm>

#include "platform/json.h"
#include "platform/text.h"

namespace zimbrat::jetcheck {

namespace {

using platform::JsonArray;
using platform::JsonObject;
using platform::JsonString;

std::u16string NumberText(std::uint64_t number) {
  return platform::DecimalText(static_cast<long long>(number));
}

std::u16string JsonOfFault(const jet::Fault& fault) {
  return JsonObject({{u"miejsce", JsonString(fault.place)},
                     {u"opis", JsonString(fault.text)},
                     {u"ostrzezenie", fault.isError ? u"false" : u"true"}});
}

std::u16string JsonOfTable(const jet::RepairedTable& table) {
  return JsonObject({{u"nazwa", JsonString(table.name)},
                     {u"systemowa", table.isSystem ? u"true" : u"false"},
                     {u"zachowano", NumberText(table.saved)},
                     {u"czesciowo", NumberText(table.partial)},
                     {u"utracono", NumberText(table.lost)},
                     {u"uwagi", JsonArray(table.notes, JsonString)}});
}

}  // namespace

std::u16string LinesOf(const FileResult& result) {
  std::u16string lines;
  for (const jet::Fault& fault : result.faults) {
    lines += result.path + (fault.isError ? u": " : u": uwaga: ") + fault.place + u": " +
             fault.text + u"\n";
  }
  const bool wasSound = result.faults.empty() && result.status == 0;
  if (!result.repair || wasSound) return lines;
  for (const jet::RepairedTable& table : result.repair->tables) {
    if (table.isSystem && !table.IsHarmed()) continue;
    for (const std::u16string& line : jet::LinesOf(table)) lines += result.path + u": " + line + u"\n";
  }
  if (!result.repair->keptFile.empty()) {
    lines += result.path + u": uszkodzony plik zachowano jako " + result.repair->keptFile + u"\n";
  }
  return lines + result.path +
         (result.status == 0 ? u": naprawiono bez strat\n" : u": naprawiono, są straty\n");
}

std::u16string JsonOf(const FileResult& result) {
  const auto& tables = result.repair ? result.repair->tables : std::vector<jet::RepairedTable>();
  return JsonObject({{u"plik", JsonString(result.path)},
                     {u"status", NumberText(static_cast<std::uint64_t>(result.status))},
                     {u"opis", JsonString(result.failure)},
                     {u"bledy", JsonArray(result.faults, JsonOfFault)},
                     {u"naprawiono", result.repair ? u"true" : u"false"},
                     {u"tabele", JsonArray(tables, JsonOfTable)},
                     {u"zachowany", JsonString(result.repair ? result.repair->keptFile : u"")}});
}

std::u16string LinesOf(const jet::KeyCounts& keys) {
  constexpr const char16_t* kTypes[] = {u"?",        u"Boolean", u"Byte",   u"Integer", u"Long",
                                        u"Currency", u"Single",  u"Double", u"Date",    u"Binary",
                                        u"Text",     u"OLE",     u"Memo",   u"?",       u"?",
                                        u"GUID",     u"Decimal"};
  std::u16string lines;
  for (const auto& [kind, count] : keys) {
    const auto& [type, isAscending] = kind;
    lines += std::u16string(kTypes[std::clamp<int>(type, 0, 16)]) +
             (isAscending ? u" rosnąco: " : u" malejąco: ") + NumberText(count.equal) + u" z " +
             NumberText(count.keys) + u"\n";
  }
  return lines;
}

}  // namespace zimbrat::jetcheck

// What a repair tells: whether anything was lost, and the words for it.
#include <algorithm>

#include "jet/repair.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

std::u16string NumberText(std::uint64_t number) {
  return platform::DecimalText(static_cast<long long>(number));
}

}  // namespace

bool RepairReport::IsAnythingLost() const {
  return std::ranges::any_of(tables, &RepairedTable::IsHarmed);
}

std::vector<std::u16string> LinesOf(const RepairedTable& table) {
  const std::u16string start = u"tabela „" + table.name + u"”: ";
  std::u16string rows = start + u"zachowano wierszy: " + NumberText(table.saved);
  if (table.partial != 0) rows += u", w tym częściowo: " + NumberText(table.partial);
  if (table.lost != 0) rows += u", utracono: " + NumberText(table.lost);
  std::vector<std::u16string> lines = {std::move(rows)};
  for (const std::u16string& note : table.notes) lines.push_back(start + note);
  return lines;
}

}  // namespace zimbrat::jet

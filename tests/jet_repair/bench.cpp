#include "bench.h"

#include "platform/text.h"

namespace zimbrat::tests {

std::string LossesOf(const jet::RepairReport& report) {
  std::string lines;
  for (const jet::RepairedTable& table : report.tables) {
    if (!table.IsHarmed()) continue;
    lines += platform::Utf8FromUtf16(table.name) + ": partial " + std::to_string(table.partial) +
             ", lost " + std::to_string(table.lost);
    for (const std::u16string& note : table.notes) lines += "; " + platform::Utf8FromUtf16(note);
    lines += "\n";
  }
  return lines;
}

}  // namespace zimbrat::tests

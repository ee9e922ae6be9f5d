#include "stored_tables.h"

#include <algorithm>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

// By the spelling of different versions.
constexpr std::u16string_view kLossTables[] = {u"MSysCompactError", u"MSysCompactErrors"};
constexpr std::u16string_view kOwnPrefixes[] = {u"MSYS", u"~"};
constexpr int kMostLosses = 3;
constexpr std::size_t kMostOfLoss = 50;  // characters

bool IsLossTable(std::u16string_view name) {
  return std::ranges::any_of(
      kLossTables, [&](std::u16string_view known) { return EqualIgnoringCase(name, known); });
}

bool IsUsers(std::u16string_view name) {
  const std::u16string upper = UpperCase(name);
  return std::ranges::none_of(
      kOwnPrefixes, [&](std::u16string_view prefix) { return upper.starts_with(prefix); });
}

}  // namespace

StoredTables TablesOf(dao::Database& database) {
  StoredTables stored;
  const auto tables = database.TableDefs();
  const int count = tables->Count();
  for (int i = 0; i < count; ++i) {
    const auto table = tables->Item(i);
    const std::u16string name = table->Name();
    if (IsUsers(name)) stored.rows.emplace(name, table->RecordCount());
    if (IsLossTable(name)) stored.losses += table->RecordCount();
  }
  return stored;
}

std::u16string TextOfLosses(dao::Database& database) {
  std::u16string text;
  const auto tables = database.TableDefs();
  const int count = tables->Count();
  for (int i = 0; i < count; ++i) {
    const std::u16string name = tables->Item(i)->Name();
    if (!IsLossTable(name)) continue;
    const auto rows = database.OpenRecordset(name, dao::dbOpenSnapshot);
    for (int left = kMostLosses; left > 0 && !rows->EndOfFile(); --left, rows->MoveNext()) {
      const dao::Value why = rows->Fields()->Item(u"ErrorDescription")->Value();
      const auto* told = std::get_if<std::u16string>(&why);
      if (told != nullptr) text.append(text.empty() ? u"" : u"; ").append(*told, 0, kMostOfLoss);
    }
    rows->Close();
  }
  return text;
}

std::vector<std::u16string> ShorterTables(const StoredTables& before, const StoredTables& now,
                                          std::u16string& missing) {
  std::vector<std::u16string> shorter;
  for (const auto& [name, rows] : before.rows) {
    const auto found = now.rows.find(name);
    if (found == now.rows.end()) {
      missing = name;
    } else if (found->second < rows) {
      shorter.push_back(u"tabela " + name + u": wierszy było " + DecimalText(rows) + u", jest " +
                        DecimalText(found->second));
    }
  }
  return shorter;
}

}  // namespace zimbrat::platform

#include "stored_tables.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

// By the spelling of different versions.
constexpr std::u16string_view kLossTables[] = {u"MSysCompactError", u"MSysCompactErrors"};
constexpr std::u16string_view kOwnPrefixes[] = {u"MSYS", u"~"};
constexpr std::size_t kMostRead = 10'000;  // rows
constexpr std::size_t kMostLosses = 3;
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

// Each row as its texts: description and table, whatever the columns are called.
void ReadLosses(dao::Database& database, std::u16string_view table, StoredTables& stored) {
  const auto rows = database.OpenRecordset(table, dao::dbOpenSnapshot);
  for (; !rows->EndOfFile() && stored.losses.size() < kMostRead; rows->MoveNext()) {
    std::u16string loss = u"?";
    const auto fields = rows->Fields();
    const int count = fields->Count();
    for (int i = 0; i < count; ++i) {
      const dao::Value value = fields->Item(i)->Value();
      const auto* text = std::get_if<std::u16string>(&value);
      if (text == nullptr) continue;
      if (loss == u"?") loss.clear();
      loss.append(loss.empty() ? u"" : u" ").append(*text);
    }
    stored.losses.insert(std::move(loss));
  }
  rows->Close();
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
    if (IsLossTable(name)) ReadLosses(database, name, stored);
  }
  return stored;
}

std::u16string TextOfNewLosses(const StoredTables& before, const StoredTables& now) {
  std::vector<std::u16string> added;
  std::ranges::set_difference(now.losses, before.losses, std::back_inserter(added));
  std::u16string text;
  for (const std::u16string& loss : std::span(added).first(std::min(added.size(), kMostLosses))) {
    text.append(text.empty() ? u"" : u"; ").append(loss, 0, kMostOfLoss);
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

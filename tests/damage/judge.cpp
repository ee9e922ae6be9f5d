#include "judge.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "platform/text.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

template <class... Parts>
std::string TextOf(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  return text.str();
}

using Rows = std::map<std::string, std::ptrdiff_t>;  // by text, how many

class Judge {
 public:
  // What is cut off counts as zeros.
  Judge(const Subject& before, const Touched& touched, const FileBytes& damaged, const RepairReport& report,
        const Anatomy& after)
      : before_(before), touched_(touched), damaged_(damaged), report_(report), after_(after) {
    damaged_.resize(std::max(damaged_.size(), before.bytes.size()));
  }

  std::string Run();

 private:
  bool IsTouched(PageNumber page) const { return touched_.pages.contains(page); }
  bool HasTouchedValue(const RowAnatomy& row) const;
  bool IsCatalogueTouched() const;
  bool IsDefinitionTouched(PageNumber table) const;
  const TableAnatomy* FindAfter(const TableAnatomy& table) const;
  const RepairedTable* FindReport(const TableAnatomy& table) const;
  void JudgeTable(const TableAnatomy& table);
  void JudgeRows(const TableAnatomy& table, const TableAnatomy& after, const RepairedTable& report);
  void JudgeLostDefinition(const TableAnatomy& table);
  std::size_t SlotsThatMayBeStrange(PageNumber table) const;
  bool AreMapAndDefinitionTouched() const;
  void JudgeStrangeTables();
  void Complain(const TableAnatomy& table, const std::string& text) {
    complaints_ += table.name + ": " + text + "\n";
  }

  const Subject& before_;
  const Touched& touched_;
  FileBytes damaged_;
  const RepairReport& report_;
  const Anatomy& after_;
  std::string complaints_;
};

bool Judge::HasTouchedValue(const RowAnatomy& row) const {
  return std::ranges::any_of(row.fields, [&](const FieldAnatomy& field) {
    return std::ranges::any_of(field.pages, [&](PageNumber page) { return IsTouched(page); });
  });
}

// Its rows, and the properties of its objects.
bool Judge::IsCatalogueTouched() const {
  const auto& rows = before_.anatomy.tables.at(kObjectsPage).rows;
  return std::ranges::any_of(rows, [&](const RowAnatomy& row) { return IsTouched(row.place) || IsTouched(row.home); });
}

bool Judge::IsDefinitionTouched(PageNumber table) const {
  return std::ranges::any_of(touched_.pages, [&](PageNumber page) {
    const PageAnatomy& what = before_.anatomy.pages[page];
    return what.kind == PageKind::Definition && what.table == table;
  });
}

const TableAnatomy* Judge::FindAfter(const TableAnatomy& table) const {
  if (const TableAnatomy* found = after_.FindTable(table.name)) return found;
  return IsCatalogueTouched() ? after_.FindTable("Odzyskana_" + std::to_string(table.page)) : nullptr;
}

const RepairedTable* Judge::FindReport(const TableAnatomy& table) const {
  const auto find = [&](const std::string& name) {
    return std::ranges::find_if(report_.tables, [&](const RepairedTable& report) {
      return platform::Utf8FromUtf16(report.name) == name;
    });
  };
  auto found = find(table.name);
  if (found == report_.tables.end() && IsCatalogueTouched()) found = find("Odzyskana_" + std::to_string(table.page));
  return found == report_.tables.end() ? nullptr : &*found;
}

// Of the pages that name a table, or named it before: those that were touched, and those that had been left behind.
std::size_t Judge::SlotsThatMayBeStrange(PageNumber table) const {
  std::size_t slots = 0;
  for (PageNumber page = 1; page < before_.anatomy.pages.size(); ++page) {
    const PageAnatomy& what = before_.anatomy.pages[page];
    if (!IsTouched(page) && what.kind != PageKind::Unused) continue;
    const bool wasTheirs = what.kind == PageKind::Data && what.table == table;
    if (!wasTheirs && Get32(PageOf(damaged_, page), kOffsetOwner) != table) continue;
    slots += std::min<std::size_t>(kMaxRowSlots, Get16(PageOf(damaged_, page), kOffsetRowCount));
  }
  return slots;
}

// Then pages of a table that nobody knows any more may stand in another one's map.
bool Judge::AreMapAndDefinitionTouched() const {
  const auto isAny = [&](PageKind kind) {
    return std::ranges::any_of(touched_.pages,
                               [&](PageNumber page) { return before_.anatomy.pages[page].kind == kind; });
  };
  return isAny(PageKind::MapRows) && isAny(PageKind::Definition);
}

void Judge::JudgeRows(const TableAnatomy& table, const TableAnatomy& after, const RepairedTable& report) {
  Rows whole, others;
  for (const RowAnatomy& row : after.rows) {
    ++whole[row.Text()];
    ++others[row.TextWithoutValues()];
  }
  std::size_t lost = 0, partial = 0, known = 0;
  for (const RowAnatomy& row : table.rows) {
    const bool isLost = IsTouched(row.place);
    const bool isPartial = !isLost && HasTouchedValue(row);
    const bool isThere = whole[row.Text()]-- > 0;
    const bool isThereInPart = others[row.TextWithoutValues()]-- > 0;
    known += isThere ? 1 : 0;
    lost += isLost ? 1 : 0;
    partial += isPartial ? 1 : 0;
    if (!isLost && !isPartial && !isThere) Complain(table, "lacks the row " + row.Text().substr(0, 200));
    if (isPartial && !isThereInPart) Complain(table, "lacks most of the row " + row.Text().substr(0, 200));
  }
  const std::size_t strange = after.rows.size() - known;
  if (strange > report.partial + partial + SlotsThatMayBeStrange(table.page) && !AreMapAndDefinitionTouched())
    Complain(table, TextOf("has ", strange, " rows that were not there"));
  const std::size_t missing = table.rows.size() - std::min(table.rows.size(), after.rows.size());
  if (report.lost < missing)
    Complain(table, TextOf("lacks ", missing, " rows, but is said to lack ", report.lost));
  if (report.saved != after.rows.size()) Complain(table, "is said to have other numbers of rows");
  if (touched_.isLost && (report.lost != lost || report.partial != partial))
    Complain(table, TextOf("has lost ", lost, " and ", partial, " in part, but is said to have lost ", report.lost,
                           " and ", report.partial));
}

void Judge::JudgeLostDefinition(const TableAnatomy& table) {
  const RepairedTable* report = FindReport(table);
  if (!report || !report->IsHarmed()) return Complain(table, "is not named, though its definition is lost");
  const TableAnatomy* after = FindAfter(table);
  const std::size_t saved = after ? after->rows.size() : 0;
  const bool isFirstLost = IsTouched(table.page);
  if (!isFirstLost && saved != table.rows.size())
    Complain(table, "lacks rows, though its first columns are there");
  if (isFirstLost && report->lost != table.rows.size())
    Complain(table, TextOf("had ", table.rows.size(), " rows, but is said to have had ", report->lost));
}

void Judge::JudgeTable(const TableAnatomy& table) {
  if (table.IsOfTheEngine()) {
    // Rows of relationships can be made anew of the definitions.
    const bool lacksRows =
        touched_.isLost && table.page != kRelationshipsPage &&
        std::ranges::any_of(table.rows, [&](const RowAnatomy& row) { return IsTouched(row.place); });
    const RepairedTable* report = FindReport(table);
    if (lacksRows && (!report || !report->IsHarmed())) Complain(table, "is not named, though it has lost rows");
    return;
  }
  if (IsDefinitionTouched(table.page)) {
    if (touched_.isLost) JudgeLostDefinition(table);
    return;
  }
  // A changed letter of the catalogue may be one of the name.
  if (!touched_.isLost && IsCatalogueTouched()) return;
  const TableAnatomy* after = FindAfter(table);
  const RepairedTable* report = FindReport(table);
  if (!after) return Complain(table, "is gone");
  if (!report) return Complain(table, "is not in the report");
  JudgeRows(table, *after, *report);
}

void Judge::JudgeStrangeTables() {
  for (const auto& [page, table] : after_.tables) {
    const bool wasThere = before_.anatomy.FindTable(table.name) != nullptr;
    if (wasThere || IsCatalogueTouched()) continue;
    const bool mayBe = std::ranges::any_of(touched_.pages, [&](PageNumber touched) {
      return before_.anatomy.pages[touched].kind != PageKind::Index;
    });
    if (!mayBe || touched_.isLost) Complain(table, "was not there");
  }
}

std::string Judge::Run() {
  for (const auto& [page, table] : before_.anatomy.tables) JudgeTable(table);
  JudgeStrangeTables();
  return std::move(complaints_);
}

}  // namespace

std::string JudgeRepair(const Subject& before, const Touched& touched, const FileBytes& damaged,
                        const RepairReport& report, const Anatomy& after) {
  return Judge(before, touched, damaged, report, after).Run();
}

}  // namespace zimbrat::tests

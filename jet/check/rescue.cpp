#include "jet/check/rescue.h"

#include <algorithm>

#include "layout.h"
#include "page_survey.h"
#include "row_page.h"
#include "row_rescue.h"
#include "rows.h"
#include "sound_layout.h"
#include "jet/file/header.h"

namespace zimbrat::jet::check {

namespace {
// How often, on the average, each byte of the file may be read for long values.
constexpr std::uint64_t kReadingsOfValues = 16;

bool IsSystemTable(PageNumber page) {
  return page >= kObjectsPage && page <= kRelationshipsPage;
}
}  // namespace

struct Rescue::Parts {
  Parts(platform::File& file, std::u16string_view path, const StandardDefinitions& given,
        std::function<void()> pulse)
      : options{.pulse = std::move(pulse)}, check(file, options), standard(given) {
    header = check.pages.Read(0);
    check.pages.SetKey(DecodeHeader(*header, path).encodingKey);
    survey.emplace(check, [&](PageNumber page) { return LayoutOf(page); });
    valueBudget = kReadingsOfValues * check.pages.Count() * kPageSize;
  }

  // The system tables are always as they must be.
  std::optional<TableLayout> LayoutOf(PageNumber page) {
    if (IsSystemTable(page)) return ParseLayout(check, standard[page - kObjectsPage], page);
    return check.pages.Has(page) ? PeekLayout(check, page) : std::nullopt;
  }

  CheckOptions options;
  Checking check;
  const StandardDefinitions& standard;
  PageView header;
  std::optional<PageSurvey> survey;
  std::uint64_t valueBudget = 0;
};

Rescue::Rescue(platform::File& file, std::u16string_view path, const StandardDefinitions& standard,
               std::function<void()> pulse)
    : parts_(std::make_unique<Parts>(file, path, standard, std::move(pulse))) {}
Rescue::~Rescue() = default;

ConstBytes Rescue::Header() const {
  return *parts_->header;
}

std::optional<RescuedTable> Rescue::ReadTable(PageNumber page) {
  Checking& check = parts_->check;
  if (IsSystemTable(page)) {
    const std::optional<TableLayout> own = check.pages.Has(page) ? PeekLayout(check, page) : std::nullopt;
    std::optional<TableLayout> table = parts_->LayoutOf(page);
    // Else it is another table's.
    const bool isOwn = own && std::ranges::equal(own->columns, table->columns, {}, &ColumnLayout::name,
                                                 &ColumnLayout::name);
    table->ownedMap = isOwn ? own->ownedMap : RowPointer{};
    table->rows = isOwn ? own->rows : 0;
    return RescuedTable{std::move(*table), {}};
  }
  std::vector<std::u16string> notes;
  std::optional<TableLayout> own = parts_->LayoutOf(page);
  if (!own && check.pages.Has(page)) {
    own = PeekColumns(check, page);
    notes.push_back(u"definicja jest niepełna: utracono indeksy, a może i kolumny");
  }
  if (!own) return std::nullopt;
  std::ranges::move(MakeSound(*own), std::back_inserter(notes));
  if (own->columns.empty()) return std::nullopt;
  return RescuedTable{std::move(*own), std::move(notes)};
}

std::vector<PageNumber> Rescue::Definitions() {
  return parts_->survey->Definitions();
}

RowCounts Rescue::ReadRows(const TableLayout& table, const RescuedRowVisit& visit) {
  RowRescue rows(parts_->check, table, visit, parts_->valueBudget);
  return rows.Run(parts_->survey->PagesOf(table));
}

std::uint64_t Rescue::CountRows(PageNumber table) {
  std::uint64_t rows = 0;
  for (const PageNumber number : parts_->survey->PagesInUseNaming(table))
    rows += CountHomes(*parts_->check.pages.Read(number));
  return rows;
}

ConstBytes BytesIn(const TableLayout& table, const RescuedRow& row, std::u16string_view name) {
  const ColumnLayout* column = table.FindColumn(name);
  if (!column) return {};
  const auto& bytes = row.fields[static_cast<std::size_t>(column - table.columns.data())];
  return bytes ? ConstBytes(*bytes) : ConstBytes();
}

std::optional<std::int32_t> NumberIn(const TableLayout& table, const RescuedRow& row,
                                     std::u16string_view column) {
  const ConstBytes bytes = BytesIn(table, row, column);
  if (bytes.size() == sizeof(std::int32_t)) return GetLittle<std::int32_t>(bytes, 0);
  if (bytes.size() == sizeof(std::int16_t)) return GetLittle<std::int16_t>(bytes, 0);
  return std::nullopt;
}

std::u16string TextIn(const TableLayout& table, const RescuedRow& row, std::u16string_view column) {
  return DecodeText(BytesIn(table, row, column)).value_or(u"");
}

}  // namespace zimbrat::jet::check

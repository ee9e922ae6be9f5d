#include "rows.h"

#include <algorithm>

namespace zimbrat::jet::check {

namespace {
constexpr std::size_t kSizeCount = 2;
constexpr std::size_t kSizeOffset = 2;
}  // namespace

bool RowParts::HasBit(std::uint16_t id) const {
  return id < columns_ && (Get8(row_, maskStart_ + id / 8) >> (id % 8) & 1) != 0;
}

// From the end of the row: mask, count, offsets backwards. `end` is the place of the mask.
bool RowParts::ParseVariablePart(const TableLayout& table, std::size_t end) {
  if (end < 2 * kSizeCount) return false;
  const std::size_t countPlace = end - kSizeCount;
  variables_ = Get16(row_, countPlace);
  const std::size_t tableSize = (variables_ + 1) * kSizeOffset;
  if (variables_ > table.variableColumns || variables_ > kMaxColumns ||
      tableSize + kSizeCount > countPlace) {
    return false;
  }
  for (std::size_t i = 0; i <= variables_; ++i) {
    starts_[i] = Get16(row_, countPlace - (i + 1) * kSizeOffset);
    if (i > 0 && starts_[i] < starts_[i - 1]) return false;
  }
  fixedEnd_ = starts_[0];
  return starts_[0] >= kSizeCount && starts_[variables_] <= countPlace - tableSize;
}

std::u16string RowParts::CheckFixedPart(const TableLayout& table) const {
  for (const ColumnLayout& column : table.columns) {
    if (!Existed(column)) continue;
    if (!column.IsFixed()) {
      const bool isThere = column.variableIndex < variables_;
      if (!isThere && HasBit(column.id))
        return TextOf(u"brak miejsca kolumny „", column.name, u"”");
      if (!HasBit(column.id) && isThere &&
          starts_[column.variableIndex] != starts_[column.variableIndex + 1]) {
        return TextOf(u"pusta kolumna „", column.name, u"” zajmuje miejsce");
      }
    } else if (!column.IsBoolean() &&
               kSizeCount + column.fixedOffset + std::size_t{column.length} > fixedEnd_) {
      return TextOf(u"kolumna „", column.name, u"” leży poza częścią stałą");
    }
  }
  return {};
}

std::u16string RowParts::Parse(const TableLayout& table, ConstBytes row) {
  row_ = row;
  isReadable_ = false;
  if (row.size() < kSizeCount) return u"wiersz jest za krótki";
  columns_ = Get16(row, 0);
  const std::size_t maskSize = (columns_ + 7) / 8;
  if (columns_ > table.maxColumns || kSizeCount + maskSize > row.size()) {
    return TextOf(u"wiersz podaje ", columns_, u" kolumn");
  }
  maskStart_ = row.size() - maskSize;
  const bool mustVary =
      std::any_of(table.columns.begin(), table.columns.end(),
                  [&](const ColumnLayout& c) { return !c.IsFixed() && Existed(c); });
  isReadable_ = true;
  const bool varies = table.variableColumns != 0 && ParseVariablePart(table, maskStart_);
  if (varies) {
    std::u16string fault = CheckFixedPart(table);
    if (fault.empty() || mustVary) return fault;
  }
  // A row from the time before the first variable column has no such part, though its values may look like one.
  variables_ = 0;
  starts_[0] = 0;
  fixedEnd_ = maskStart_;
  if (mustVary) return u"część zmienna wiersza jest uszkodzona";
  return CheckFixedPart(table);
}

std::optional<ConstBytes> RowParts::Field(const ColumnLayout& column) const {
  if (!HasBit(column.id)) return std::nullopt;
  if (column.IsBoolean()) return ConstBytes{};
  if (column.IsFixed()) {
    const std::size_t start = kSizeCount + column.fixedOffset;
    if (start + column.length > fixedEnd_) return std::nullopt;
    return row_.subspan(start, column.length);
  }
  if (column.variableIndex >= variables_) return std::nullopt;
  const std::size_t start = starts_[column.variableIndex];
  return row_.subspan(start, starts_[column.variableIndex + std::size_t{1}] - start);
}

std::optional<RowView> FindHomeRow(Checking& check, PageNumber table, RowPointer home) {
  const auto belongs = [&](RowPointer row) {
    if (!check.pages.Has(row.page)) return false;
    const PageOwner owner = check.census.OwnerOf(row.page);
    return owner.use == PageUse::Data && owner.table == table;
  };
  if (!belongs(home)) return std::nullopt;
  std::optional<RowView> row = FindRow(check, home);
  if (!row) return std::nullopt;
  const std::uint16_t flags = SlotFlags(*row->page, home.row);
  if (flags == 0) return row;
  if (flags != kRowMoved || row->bytes.size() < sizeof(std::uint32_t)) return std::nullopt;
  const RowPointer far = RowPointer::FromPacked(Get32(row->bytes, 0));
  if (!belongs(far)) return std::nullopt;
  row = FindRow(check, far);
  if (!row || SlotFlags(*row->page, far.row) != kRowHidden) return std::nullopt;
  return row;
}

}  // namespace zimbrat::jet::check

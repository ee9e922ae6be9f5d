#include "sound_layout.h"

#include <algorithm>
#include <set>

#include "report.h"
#include "jet/index/key.h"
#include "platform/dao.h"
#include "platform/text.h"

namespace zimbrat::jet::check {

namespace {

// Of a text column: language and version, the byte between them is always 0.
constexpr std::uint32_t kSortOrderMask = 0xFF00FFFF;

bool IsName(std::u16string_view name) {
  return !name.empty() && name.size() <= kMaxNameLength;
}

class LayoutMender {
 public:
  explicit LayoutMender(TableLayout& table) : table_(table) {}

  std::vector<std::u16string> Mend();

 private:
  std::int16_t LikelyType(const ColumnLayout& column) const;
  // Whether the column can stay.
  bool MendColumn(ColumnLayout& column);
  bool TakePlace(const ColumnLayout& column);
  bool TakeFixedPlace(std::size_t start, std::size_t end);
  void MendColumns();
  bool CanStay(const IndexLayout& index) const;
  bool MendLogical(LogicalLayout& logical);
  void MendIndexes();
  void RemoveIndex(std::size_t position);
  void Note(std::u16string text) { notes_.push_back(std::move(text)); }

  TableLayout& table_;
  std::vector<std::u16string> notes_;
  std::set<std::uint16_t> ids_, variableIndexes_;
  std::vector<std::pair<std::size_t, std::size_t>> fixed_;  // taken bytes
  std::set<std::uint32_t> numbers_;
};

bool LayoutMender::TakeFixedPlace(std::size_t start, std::size_t end) {
  const bool isTaken = std::any_of(fixed_.begin(), fixed_.end(), [&](const auto& other) {
    return start < other.second && other.first < end;
  });
  if (isTaken || end > kMaxRowSize) return false;
  fixed_.emplace_back(start, end);
  return true;
}

bool LayoutMender::TakePlace(const ColumnLayout& column) {
  if (column.id >= kMaxColumns || !ids_.insert(column.id).second) return false;
  if (column.IsBoolean()) return true;
  if (column.IsFixed()) {
    return TakeFixedPlace(column.fixedOffset, column.fixedOffset + std::size_t{column.length});
  }
  return column.variableIndex < kMaxColumns && variableIndexes_.insert(column.variableIndex).second;
}

// What else tells of the type: long values have maps and no length, and where a number is no fixed
// column its length is right. Of what remains the bytes are kept as they are.
std::int16_t LayoutMender::LikelyType(const ColumnLayout& column) const {
  const bool hasMaps = std::ranges::any_of(
      table_.longValueMaps, [&](const auto& maps) { return maps.columnId == column.id; });
  const std::size_t size = column.FixedSize();
  if (column.IsFixed()) return IsKnownType(column.type) ? column.type : std::int16_t{dao::dbBinary};
  if (column.IsLongValue() && (hasMaps || column.length == 0)) return column.type;
  if (hasMaps && column.length == 0) return dao::dbMemo;
  const bool isPossible = column.type == dao::dbText || column.type == dao::dbBinary ||
                          (size != 0 && size == column.length);
  if (isPossible) return column.type;
  return column.length % 2 == 0 ? dao::dbText : dao::dbBinary;
}

bool LayoutMender::MendColumn(ColumnLayout& column) {
  const auto differs = [](auto& field, auto value) {
    const bool isOther = field != value;
    field = value;
    return isOther;
  };
  bool isChanged = differs(column.type, LikelyType(column));
  if (const std::size_t size = column.FixedSize())
    isChanged |= differs(column.length, static_cast<std::uint16_t>(size));
  if (column.IsBoolean()) {
    isChanged |= differs(column.flags, static_cast<std::uint8_t>(column.flags | kColumnFixed));
    // It takes no bytes of a row: its place says nothing, but must be one.
    if (column.fixedOffset + std::size_t{column.length} > kMaxRowSize)
      isChanged |= differs(column.fixedOffset, std::uint16_t{0});
  }
  isChanged |= differs(column.flags2, static_cast<std::uint8_t>(column.flags2 & kColumnCompressed));
  if (column.IsText()) isChanged |= differs(column.extra, column.extra & kSortOrderMask);
  const bool isTwice = std::any_of(table_.columns.begin(), table_.columns.end(), [&](auto& other) {
    return &other < &column && platform::EqualIgnoringCase(other.name, column.name);
  });
  if (!IsName(column.name) || isTwice)
    isChanged |= differs(column.name, TextOf(u"Kolumna_", column.id));
  const bool canStay = !(column.IsFixed() && column.IsLongValue()) && TakePlace(column);
  if (!canStay) {
    Note(TextOf(u"utracono kolumnę „", column.name, u"”: jej opis jest uszkodzony"));
  } else if (isChanged) {
    Note(TextOf(u"poprawiono opis kolumny „", column.name, u"”"));
  }
  return canStay;
}

void LayoutMender::MendColumns() {
  std::vector<ColumnLayout> kept;
  for (ColumnLayout& column : table_.columns) {
    if (MendColumn(column)) kept.push_back(column);
  }
  table_.columns = std::move(kept);
  if (!ids_.empty())
    table_.maxColumns = std::max<std::uint16_t>(table_.maxColumns, *ids_.rbegin() + 1);
  if (!variableIndexes_.empty()) {
    table_.variableColumns =
        std::max<std::uint16_t>(table_.variableColumns, *variableIndexes_.rbegin() + 1);
  }
  table_.maxColumns = std::min<std::uint16_t>(table_.maxColumns, kMaxColumns);
  table_.variableColumns = std::min<std::uint16_t>(table_.variableColumns, kMaxColumns);
  if (table_.kind != kTableSystem) table_.kind = kTableUser;
}

bool LayoutMender::CanStay(const IndexLayout& index) const {
  const bool isNamed = std::any_of(
      table_.logicals.begin(), table_.logicals.end(), [&](const LogicalLayout& logical) {
        return logical.index == static_cast<std::size_t>(&index - table_.indexes.data());
      });
  return isNamed && !index.parts.empty() &&
         std::all_of(index.parts.begin(), index.parts.end(), [&](const IndexLayout::Part& part) {
           const ColumnLayout* column = table_.FindColumn(part.columnId);
           return column && IsIndexable(column->type) && column->HasComparableKeys();
         });
}

// Whether the entry can stay.
bool LayoutMender::MendLogical(LogicalLayout& logical) {
  if (logical.index >= table_.indexes.size() || !numbers_.insert(logical.number).second) {
    Note(TextOf(u"utracono indeks „", logical.name, u"”: jego opis jest uszkodzony"));
    return false;
  }
  const bool isRelation = logical.kind == kIndexRelation;
  if (logical.kind > kIndexRelation || isRelation != (logical.end != 0) ||
      logical.end > kEndReferring) {
    Note(TextOf(u"indeks „", logical.name, u"” jest teraz zwykłym indeksem"));
    logical.kind = kIndexPlain;
  }
  if (logical.kind != kIndexRelation) {
    logical.end = 0;
    logical.otherTable = 0;
    logical.otherNumber = 0xFFFFFFFF;
    logical.cascadeUpdates = logical.cascadeDeletes = kCascadeNone;
  }
  const bool isTwice =
      std::any_of(table_.logicals.begin(), table_.logicals.end(), [&](auto& other) {
        return &other < &logical && platform::EqualIgnoringCase(other.name, logical.name);
      });
  if (IsName(logical.name) && !isTwice) return true;
  logical.name = TextOf(u"Indeks_", logical.number);
  Note(TextOf(u"indeks bez nazwy nazwano „", logical.name, u"”"));
  return true;
}

void LayoutMender::RemoveIndex(std::size_t position) {
  table_.indexes.erase(table_.indexes.begin() + static_cast<std::ptrdiff_t>(position));
  std::erase_if(table_.logicals, [&](const LogicalLayout& logical) {
    if (logical.index == position) Note(TextOf(u"utracono indeks „", logical.name, u"”"));
    return logical.index == position;
  });
  for (LogicalLayout& logical : table_.logicals) {
    if (logical.index > position) --logical.index;
  }
}

void LayoutMender::MendIndexes() {
  std::vector<LogicalLayout> kept;
  for (LogicalLayout& logical : table_.logicals) {
    if (MendLogical(logical)) kept.push_back(logical);
  }
  table_.logicals = std::move(kept);
  for (std::size_t i = table_.indexes.size(); i-- > 0;) {
    IndexLayout& index = table_.indexes[i];
    index.flags |= kIndexAlways;
    if (!CanStay(index)) RemoveIndex(i);
  }
}

std::vector<std::u16string> LayoutMender::Mend() {
  MendColumns();
  MendIndexes();
  return std::move(notes_);
}

}  // namespace

std::vector<std::u16string> MakeSound(TableLayout& table) {
  return LayoutMender(table).Mend();
}

}  // namespace zimbrat::jet::check

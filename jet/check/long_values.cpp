#include "long_values.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "row_page.h"

namespace zimbrat::jet::check {

namespace {

constexpr std::size_t kOffsetValuePointer = 4;
constexpr std::size_t kSizeNextPointer = 4;
constexpr std::size_t kMaxPeekedRows = 1024;

class ValueWalk {
 public:
  // Without a table the walk claims nothing.
  ValueWalk(Checking& check, const TableLayout* table, std::size_t wanted)
      : check_(check), table_(table), wanted_(wanted) {}

  // A peek ends when it has what is wanted.
  bool isPeek = false;
  std::uint64_t budget = std::numeric_limits<std::uint64_t>::max();

  LongValue Walk(ConstBytes descriptor);

 private:
  void Take(ConstBytes bytes) {
    const std::size_t count = std::min(bytes.size(), wanted_ - value_.start.size());
    value_.start.insert(value_.start.end(), bytes.begin(),
                        bytes.begin() + static_cast<std::ptrdiff_t>(count));
    seen_ += bytes.size();
  }
  std::optional<RowView> TakeRow(RowPointer pointer);
  void WalkChain(RowPointer pointer);
  void Fail(std::u16string text) {
    if (value_.fault.empty()) value_.fault = std::move(text);
  }

  Checking& check_;
  const TableLayout* table_;
  std::size_t wanted_;
  std::uint64_t seen_ = 0;
  LongValue value_;
};

std::optional<RowView> ValueWalk::TakeRow(RowPointer pointer) {
  std::optional<RowView> row = FindRow(check_, pointer);
  const std::u16string where = TextOf(u"wiersz ", pointer.row, u" strony ", pointer.page);
  if (!row || SlotFlags(*row->page, pointer.row) != 0 ||
      Get32(*row->page, kOffsetOwner) != kOwnerLongValues) {
    Fail(TextOf(u"długiej wartości nie ma: ", where));
    return std::nullopt;
  }
  budget -= std::min<std::uint64_t>(budget, row->bytes.size());
  if (!table_) return row;
  const PageOwner owner = check_.census.OwnerOf(pointer.page);
  const bool isMapped = owner.use == PageUse::LongValues && owner.table == table_->page;
  if (!isMapped && !(owner.use == PageUse::None && table_->HasMaplessValues())) {
    Fail(TextOf(u"długa wartość leży na stronie spoza map tabeli: ", where));
    return std::nullopt;
  }
  if (!check_.heldRows.Add(pointer)) {
    Fail(TextOf(u"długa wartość jest użyta podwójnie: ", where));
    return std::nullopt;
  }
  return row;
}

// Every row of a chain is held once, so a loop ends at its first row; where nothing is held, with
// the budget.
void ValueWalk::WalkChain(RowPointer pointer) {
  for (std::size_t rows = 0; !pointer.IsNull(); ++rows) {
    if (isPeek && (rows == kMaxPeekedRows || value_.start.size() == wanted_)) return;
    const std::optional<RowView> row = TakeRow(pointer);
    if (!row) return;
    if (row->bytes.size() < kSizeNextPointer) return Fail(u"długa wartość urywa się");
    Take(row->bytes.subspan(kSizeNextPointer));
    if (budget == 0) return Fail(u"zbyt wiele długich wartości używa tych samych stron");
    pointer = RowPointer::FromPacked(Get32(row->bytes, 0));
    if (seen_ > value_.length) return Fail(u"długa wartość jest dłuższa, niż podaje wiersz");
  }
}

LongValue ValueWalk::Walk(ConstBytes descriptor) {
  if (descriptor.size() < kSizeLongValueDescriptor) {
    Fail(u"opis długiej wartości jest za krótki");
    return value_;
  }
  const std::uint32_t word = Get32(descriptor, 0);
  const std::uint32_t kind = word & ~kLongValueLengthMask;
  const RowPointer pointer = RowPointer::FromPacked(Get32(descriptor, kOffsetValuePointer));
  value_.length = word & kLongValueLengthMask;
  if (kind == kLongValueInline) {
    Take(descriptor.subspan(kSizeLongValueDescriptor));
  } else if (kind == kLongValueSingle) {
    if (const std::optional<RowView> row = TakeRow(pointer)) Take(row->bytes);
  } else if (kind == 0) {
    WalkChain(pointer);
  } else {
    Fail(u"opis długiej wartości jest nieznanego rodzaju");
  }
  if (!isPeek && seen_ != value_.length) {
    Fail(TextOf(u"długa wartość ma ", seen_, u" bajtów zamiast ", value_.length));
  }
  return value_;
}

}  // namespace

LongValue CheckLongValue(Checking& check, const TableLayout& table, ConstBytes descriptor,
                         std::size_t wanted) {
  return ValueWalk(check, &table, wanted).Walk(descriptor);
}

LongValue PeekLongValue(Checking& check, ConstBytes descriptor, std::size_t wanted) {
  ValueWalk walk(check, nullptr, wanted);
  walk.isPeek = true;
  return walk.Walk(descriptor);
}

LongValue RescueLongValue(Checking& check, ConstBytes descriptor, std::uint64_t& budget) {
  const std::uint64_t most = std::uint64_t{check.pages.Count()} * kPageSize;
  ValueWalk walk(check, nullptr, static_cast<std::size_t>(most));
  walk.budget = budget;
  const LongValue value = walk.Walk(descriptor);
  budget = walk.budget;
  return value;
}

}  // namespace zimbrat::jet::check

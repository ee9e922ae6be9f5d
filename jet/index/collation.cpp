// A key is put together from four strings:
//
//   inline bytes  01  [accents]  [ 01 01  [kana codes  FF 02 80 FF 80  [FF]]  [01  position
//   records] ]  00
//
// Bytes 00 and 01 occur in no inline bytes, so the parts delimit themselves. The accent string has
// a byte a unit, 02 for none, and ends with the last accent; a position record says how many bytes
// it would have had at the character that it stands for. A descending key is inverted up to its 00
// and gets another 00.
#include "jet/index/collation.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "general_collation.h"

namespace zimbrat::jet {

namespace {

constexpr std::uint8_t kEndOfKey = 0x00;
constexpr std::uint8_t kEndOfPart = 0x01;
constexpr std::uint8_t kKanaTail[] = {0xFF, 0x02, 0x80, 0xFF, 0x80};
constexpr std::uint8_t kAfterKana = 0xFF;
constexpr std::uint8_t kOtherKana = 3;  // the code that is left out at the end
constexpr std::uint32_t kFirstPosition = 0x8000 + 7;
constexpr std::uint8_t kPositionMark = 0x06;
// The second of two inline bytes counts from 02 to FF.
constexpr unsigned kFirstLow = 2;
constexpr unsigned kLowValues = 254;

const CollationRange& SearchRange(char16_t unit) {
  const auto* next =
      std::upper_bound(std::begin(kGeneralCollation), std::end(kGeneralCollation), unit,
                       [](char16_t u, const CollationRange& range) { return u < range.first; });
  return *std::prev(next);
}

// Rows of the units that nearly all texts consist of.
constexpr std::size_t kDirectUnits = 0x250;
constexpr auto kDirectRows = [] {
  std::array<std::uint16_t, kDirectUnits> rows{};
  std::uint16_t row = 0;
  for (std::size_t unit = 0; unit < kDirectUnits; ++unit) {
    if (kGeneralCollation[row].last < unit) ++row;
    rows[unit] = row;
  }
  return rows;
}();

const CollationRange& RangeOf(char16_t unit) {
  return unit < kDirectUnits ? kGeneralCollation[kDirectRows[unit]] : SearchRange(unit);
}

class TextKeyBuilder {
 public:
  explicit TextKeyBuilder(std::vector<std::byte>& key) : key_(key) {}

  void AddInline(std::u16string_view text) {
    for (const char16_t unit : text) Add(unit, RangeOf(unit));
  }
  void Finish();

 private:
  using Codes = std::vector<std::uint8_t>;

  void Put(unsigned byte) { key_.push_back(static_cast<std::byte>(byte)); }
  void PutAll(const Codes& codes) {
    for (const std::uint8_t code : codes) Put(code);
  }
  void Add(char16_t unit, const CollationRange& range);
  void AddUnit(char16_t unit, const CollationRange& range);
  void AddExpansion(const CollationRange& range);
  void AddModifier(std::uint8_t accent);
  void AddPosition(std::uint8_t code);
  void AddRepeat(std::uint8_t accent);
  void PutInline(char16_t unit, const CollationRange& range);
  void CoverUpTo(std::size_t units);
  void AddAccent(std::uint8_t accent);
  void PutKana();

  std::vector<std::byte>& key_;
  std::size_t units_ = 0;      // that have inline bytes
  std::size_t covered_ = 0;    // of them, those that the accent string speaks of
  std::size_t unitStart_ = 0;  // where in key_ the last unit's bytes begin
  bool startsWithModifier_ = false;
  Codes accents_;
  Codes kana_;
  Codes positions_;
};

void TextKeyBuilder::Add(char16_t unit, const CollationRange& range) {
  switch (range.kind) {
    case CollationKind::Plain:
    case CollationKind::Accented:
    case CollationKind::Kana:
      return AddUnit(unit, range);
    case CollationKind::Expansion:
      return AddExpansion(range);
    case CollationKind::Modifier:
      return AddModifier(range.accent);
    case CollationKind::Position:
      return AddPosition(range.high);
    case CollationKind::Repeat:
      return AddRepeat(range.accent);
    case CollationKind::Ignored:
      return;
  }
}

void TextKeyBuilder::PutInline(char16_t unit, const CollationRange& range) {
  const unsigned steps = unit - range.first;
  if (range.low == 0) return Put(range.high + steps);
  const unsigned value = range.high * kLowValues + (range.low - kFirstLow) + steps;
  Put(value / kLowValues);
  Put(value % kLowValues + kFirstLow);
}

void TextKeyBuilder::CoverUpTo(std::size_t units) {
  if (units <= covered_) return;
  accents_.insert(accents_.end(), units - covered_, kNoAccent);
  covered_ = units;
}

// The accent of the unit that was just counted.
void TextKeyBuilder::AddAccent(std::uint8_t accent) {
  CoverUpTo(units_ - 1);
  accents_.push_back(accent);
  covered_ = units_;
}

void TextKeyBuilder::AddUnit(char16_t unit, const CollationRange& range) {
  unitStart_ = key_.size();
  PutInline(unit, range);
  ++units_;
  if (range.accent != kNoAccent) AddAccent(range.accent);
  if (range.kind == CollationKind::Kana) kana_.push_back(range.kana);
}

void TextKeyBuilder::AddExpansion(const CollationRange& range) {
  std::array<std::uint8_t, kMaxExpansion> accents{};
  std::size_t count = 0;
  unitStart_ = key_.size();
  for (const char16_t part : kGeneralExpansions[range.high]) {
    if (part == 0) break;
    const CollationRange& partRange = RangeOf(part);
    PutInline(part, partRange);
    accents[count++] = partRange.accent;
  }
  ++units_;
  const auto end = accents.begin() + static_cast<std::ptrdiff_t>(count);
  if (std::all_of(accents.begin(), end, [](std::uint8_t a) { return a == kNoAccent; })) return;
  CoverUpTo(units_ - 1);
  accents_.insert(accents_.end(), accents.begin(), end);
  covered_ = units_;
}

void TextKeyBuilder::AddModifier(std::uint8_t accent) {
  CoverUpTo(units_);
  if (accents_.empty()) {
    accents_.push_back(accent);
    startsWithModifier_ = true;
  } else {
    accents_.back() = static_cast<std::uint8_t>(accents_.back() + accent);
  }
}

void TextKeyBuilder::AddPosition(std::uint8_t code) {
  const std::size_t place = accents_.size() - (startsWithModifier_ ? 1 : 0) + (units_ - covered_);
  const auto word = static_cast<std::uint32_t>(kFirstPosition + 4 * place);
  positions_.push_back(static_cast<std::uint8_t>(word >> 8));
  positions_.push_back(static_cast<std::uint8_t>(word));
  positions_.push_back(kPositionMark);
  positions_.push_back(code);
}

void TextKeyBuilder::AddRepeat(std::uint8_t accent) {
  if (units_ == 0) return;
  const std::size_t start = unitStart_, end = key_.size();
  unitStart_ = end;
  for (std::size_t i = start; i < end; ++i) key_.push_back(key_[i]);
  ++units_;
  if (accent != kNoAccent) AddAccent(accent);
}

void TextKeyBuilder::PutKana() {
  while (!kana_.empty() && kana_.back() == kOtherKana) kana_.pop_back();
  for (std::size_t i = 0; i < kana_.size(); i += 3) {
    const auto code = [&](std::size_t k) { return k < kana_.size() ? kana_[k] : 0u; };
    Put(0x80u | code(i) << 4 | code(i + 1) << 2 | code(i + 2));
  }
  for (const std::uint8_t byte : kKanaTail) Put(byte);
}

void TextKeyBuilder::Finish() {
  const bool hasKana = !kana_.empty();
  Put(kEndOfPart);
  while (!accents_.empty() && accents_.back() <= kNoAccent) accents_.pop_back();
  PutAll(accents_);
  if (hasKana || !positions_.empty()) {
    Put(kEndOfPart);
    Put(kEndOfPart);
    if (hasKana) PutKana();
    if (!positions_.empty()) {
      if (hasKana) Put(kAfterKana);
      Put(kEndOfPart);
      PutAll(positions_);
    }
  }
  Put(kEndOfKey);
}

std::u16string_view WithoutTrailingBlanks(std::u16string_view text) {
  return text.substr(0, text.find_last_not_of(u' ') + 1);
}

std::vector<std::byte> WholeTextKey(std::u16string_view text) {
  std::vector<std::byte> key;
  TextKeyBuilder builder(key);
  builder.AddInline(WithoutTrailingBlanks(text));
  builder.Finish();
  return key;
}

}  // namespace

void AppendTextKey(std::u16string_view text, bool ascending, std::vector<std::byte>& key) {
  const auto start = static_cast<std::ptrdiff_t>(key.size());
  TextKeyBuilder builder(key);
  builder.AddInline(WithoutTrailingBlanks(text.substr(0, kMaxIndexedUnits)));
  builder.Finish();
  if (ascending) return;
  std::transform(key.begin() + start, key.end(), key.begin() + start,
                 [](std::byte byte) { return ~byte; });
  key.push_back(std::byte{kEndOfKey});
}

void AppendTextKeyStart(std::u16string_view start, std::vector<std::byte>& key) {
  TextKeyBuilder(key).AddInline(start.substr(0, kMaxIndexedUnits));
}

std::weak_ordering CompareText(std::u16string_view a, std::u16string_view b) {
  if (a == b) return std::weak_ordering::equivalent;
  return WholeTextKey(a) <=> WholeTextKey(b);
}

}  // namespace zimbrat::jet

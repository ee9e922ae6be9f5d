#include "index_check.h"

#include <algorithm>
#include <utility>

#include "map_reader.h"

namespace zimbrat::jet::check {

namespace {

// Deeper than any tree whose nodes have two children each.
constexpr std::size_t kMaxDepth = 24;

std::u16string RowText(RowPointer row) {
  return TextOf(u"wiersza ", row.row, u" strony ", row.page);
}

}  // namespace

IndexCheck::IndexCheck(Checking& check, const TableLayout& table, std::size_t position,
                       std::u16string place)
    : check_(check),
      table_(table),
      index_(table.indexes[position]),
      place_(std::move(place)),
      owner_{PageUse::Index, table.page, static_cast<std::uint8_t>(position)},
      columns_(table, index_) {
  check_.indexedRows.Clear();
}

// The pages of the map are claimed; the walk then counts how many of them the tree has.
void IndexCheck::ReadMap() {
  ReadUsageMap(check_, place_, index_.map, [&](PageNumber page) {
    if (check_.Claim(place_, page, owner_)) ++mapped_;
  });
}

void IndexCheck::Run(const EntrySum& rows) {
  ReadMap();
  if (!columns_.IsWhole()) return;
  std::optional<std::size_t> height;
  const bool isWalked = WalkChild(index_.root, 0, height);
  if (entries_ != rows || check_.options.keyCounts) CompareWithRows();
  if (!isWalked) return;
  for (const Level& level : levels_) {
    if (level.next != 0)
      Fault(level.last, TextOf(u"za ostatnią stroną poziomu jest strona ", level.next));
  }
  if (mapped_ != walked_) {
    check_.Error(place_, TextOf(u"mapa indeksu ma ", mapped_, u" stron, a drzewo ", walked_));
  }
}

// Walks a subtree; false when it could not be walked whole. All subtrees of a node are equally
// high.
bool IndexCheck::WalkChild(PageNumber page, std::size_t depth, std::optional<std::size_t>& height) {
  if (!check_.pages.Has(page) || check_.census.OwnerOf(page) != owner_) {
    check_.Error(place_,
                 TextOf(u"drzewo prowadzi do strony ", page, u", której nie ma w mapie indeksu"));
    return false;
  }
  if (depth == kMaxDepth || !check_.heldRows.Add({page, kWholePage})) {
    Fault(page, u"strona występuje w drzewie po raz drugi albo drzewo jest zbyt wysokie");
    return false;
  }
  ++walked_;
  const std::optional<std::size_t> own = Walk(page, depth);
  if (!own) return false;
  if (height && *height != *own) Fault(page, u"poddrzewa mają różne wysokości");
  if (!height) height = own;
  return !check_.report.IsFull();
}

std::optional<std::size_t> IndexCheck::Walk(PageNumber number, std::size_t depth) {
  const std::optional<IndexPage> page = IndexPage::Read(check_, place_, number, table_.page);
  if (!page) return std::nullopt;
  if (!page->IsLeaf()) return WalkNode(*page, depth);
  if (page->Count() == 0 && depth != 0) Fault(number, u"liść jest pusty");
  if (page->Level() != 0) Fault(number, TextOf(u"liść podaje poziom ", page->Level()));
  CheckLinks(*page, 0);
  WalkLeaf(*page);
  return 0;
}

std::optional<std::size_t> IndexCheck::WalkNode(const IndexPage& node, std::size_t depth) {
  std::optional<std::size_t> height;
  Entry separator, before;
  for (std::size_t i = 0; i < node.Count(); ++i) {
    node.CopyEntry(i, separator);
    if (i != 0 && separator <= before)
      Fault(node.Number(), TextOf(u"wpis ", i, u" nie jest większy od poprzedniego"));
    if (!WalkChild(node.Child(i), depth + 1, height)) return std::nullopt;
    CheckAgainstSeparator(node.Number(), separator);
    before = separator;
  }
  if (node.Tail() != 0 && !WalkChild(node.Tail(), depth + 1, height)) return std::nullopt;
  if (node.Count() == 0) {
    if (node.Tail() == 0) {
      Fault(node.Number(), u"węzeł nie ma dzieci");
      return std::nullopt;
    }
    check_.report.Warning(TextOf(place_, u", strona ", node.Number()),
                          u"węzeł nie ma wpisów, tylko ogon");
  }
  const std::size_t own = *height + 1;
  if (node.Level() != 0 && node.Level() != own)
    Fault(node.Number(), TextOf(u"węzeł podaje poziom ", node.Level()));
  CheckLinks(node, own);
  return own;
}

// After a child: its last entry is at most the separator, and what follows is greater.
void IndexCheck::CheckAgainstSeparator(PageNumber page, const Entry& separator) {
  if (previous_ > separator) {
    Fault(page, u"wpis węzła jest mniejszy od ostatniego wpisu dziecka");
  } else if (previous_ != separator) {
    check_.report.Warning(TextOf(place_, u", strona ", page),
                          u"wpis węzła różni się od ostatniego wpisu dziecka");
  }
  separator_ = separator;
}

// Leaves form one chain. Nodes name the neighbour of their level, or nobody.
void IndexCheck::CheckLinks(const IndexPage& page, std::size_t height) {
  if (levels_.size() <= height) levels_.resize(height + 1);
  Level& level = levels_[height];
  const bool mayBeNone = height != 0;
  if (page.Previous() != level.last && !(mayBeNone && page.Previous() == 0)) {
    Fault(page.Number(),
          TextOf(u"poprzednią stroną jest ", page.Previous(), u" zamiast ", level.last));
  }
  if (level.last != 0 && level.next != page.Number() && !(mayBeNone && level.next == 0)) {
    Fault(level.last, TextOf(u"następną stroną jest ", level.next, u" zamiast ", page.Number()));
  }
  level = {page.Number(), page.Next()};
}

void IndexCheck::WalkLeaf(const IndexPage& leaf) {
  if (columns_.AreComparable()) leaves_.push_back(leaf.Number());
  Entry entry;
  for (std::size_t i = 0; i < leaf.Count() && !check_.report.IsFull(); ++i) {
    leaf.CopyEntry(i, entry);
    CheckEntry(leaf.Number(), entry);
    previous_ = entry;
    ++count_;
  }
}

void IndexCheck::CheckEntry(PageNumber leaf, const Entry& entry) {
  const RowPointer row = RowOf(entry);
  if (!previous_.empty() && entry <= previous_) {
    Fault(leaf, TextOf(u"wpis ", RowText(row), u" nie jest większy od poprzedniego"));
  }
  if (!separator_.empty() && entry <= separator_) {
    Fault(leaf, TextOf(u"wpis ", RowText(row), u" nie jest większy od wpisu węzła"));
  }
  if (!check_.pages.Has(row.page) || !check_.indexedRows.Add(row)) {
    return Fault(leaf, TextOf(u"wpis ", RowText(row),
                              u" jest drugim wpisem wiersza albo wiersza nie ma w pliku"));
  }
  CheckKey(leaf, KeyOf(entry), row);
}

void IndexCheck::CheckKey(PageNumber leaf, ConstBytes key, RowPointer row) {
  if (!columns_.AreComparable()) {
    if (!FindHomeRow(check_, table_.page, row))
      Fault(leaf, TextOf(u"wpis wskazuje na brak ", RowText(row)));
    return;
  }
  entries_.Add(key, row);
  const bool isAllNull = IsAllNullKey(columns_.keys, key);
  if (index_.Has(kIndexUnique) && !isAllNull && !previous_.empty() &&
      std::ranges::equal(KeyOf(previous_), key)) {
    Fault(leaf, TextOf(u"wpis ", RowText(row), u" powtarza klucz w indeksie bez powtórzeń"));
  }
  // System tables have primary keys without the flag, which allow nulls.
  const bool isKey = index_.isPrimary && table_.kind == kTableUser;
  if ((isKey || index_.Has(kIndexRequired)) && HasNull(key, row)) {
    Fault(leaf,
          TextOf(u"wpis ", RowText(row), u" ma pustą wartość w indeksie, który jej nie dopuszcza"));
  }
  if (isAllNull && index_.Has(kIndexIgnoreNulls)) {
    Fault(leaf, TextOf(u"wpis ", RowText(row), u" jest pusty, choć indeks pomija puste"));
  }
}

// One by one, to name those that differ. That a row lies outside the file was said when its entry was met.
void IndexCheck::CompareWithRows() {
  Entry entry;
  for (const PageNumber number : leaves_) {
    const std::optional<IndexPage> leaf = IndexPage::ReadAgain(check_.pages, number);
    for (std::size_t i = 0; leaf && i < leaf->Count() && !check_.report.IsFull(); ++i) {
      leaf->CopyEntry(i, entry);
      if (check_.pages.Has(RowOf(entry).page)) CompareWithRow(number, KeyOf(entry), RowOf(entry));
    }
  }
}

// Whether the key goes on with the row's value, which then goes from it. A negative zero may be there as such or as
// zero.
bool IndexCheck::TakePart(std::size_t i, ConstBytes& key, const dao::Value& value) {
  for (const NegativeZero zero : {NegativeZero::AsItLies, NegativeZero::AsZero}) {
    scratch_.clear();
    AppendKeyColumn(columns_.keys[i], value, scratch_, zero);
    if (!std::ranges::equal(scratch_, key.first(std::min(scratch_.size(), key.size())))) continue;
    key = key.subspan(scratch_.size());
    return true;
  }
  return false;
}

// The key is made anew from the row, for it need not come apart by itself: what many combining marks of a text add up
// to may look like its end.
void IndexCheck::CompareWithRow(PageNumber leaf, ConstBytes key, RowPointer row) {
  const std::optional<RowView> view = FindHomeRow(check_, table_.page, row);
  if (!view) return Fault(leaf, TextOf(u"wpis wskazuje na brak ", RowText(row)));
  RowParts fields;
  if (!fields.Parse(table_, view->bytes).empty()) return;  // the row's own fault
  for (std::size_t i = 0; i < columns_.keys.size(); ++i) {
    const ColumnLayout& column = *columns_.columns[i];
    const bool isEqual = TakePart(i, key, ValueOfField(check_, column, fields.Field(column)));
    if (KeyCounts* counts = check_.options.keyCounts) {
      KeyCount& of = (*counts)[{column.type, columns_.keys[i].ascending}];
      ++of.keys;
      of.equal += isEqual ? 1 : 0;
    }
    if (isEqual) continue;
    return Fault(leaf, TextOf(u"klucz ", RowText(row), u" nie zgadza się z kolumną „", column.name, u"”"));
  }
  if (!key.empty()) Fault(leaf, TextOf(u"klucz ", RowText(row), u" jest za długi"));
}

bool IndexCheck::HasNull(ConstBytes key, RowPointer row) {
  if (const std::optional<KeyParts> parts = SplitKey(columns_.keys, key))
    return std::any_of(parts->parts.begin(), parts->parts.begin() + static_cast<long>(parts->count),
                       [](const KeyParts::Part& part) { return part.isNull; });
  // If it is not its row's key either, that will be named.
  const std::optional<RowView> view = FindHomeRow(check_, table_.page, row);
  RowParts fields;
  return view && fields.Parse(table_, view->bytes).empty() &&
         std::ranges::any_of(columns_.columns, [&](const ColumnLayout* column) {
           return !column->IsBoolean() && !fields.Field(*column);
         });
}

void IndexCheck::NameMissing(PageNumber dataPage) {
  const PageView page = check_.pages.Read(dataPage);
  if (Get8(*page, 0) != kPageData) return;
  const std::size_t slots = std::min(SlotCount(*page), kMaxRowSlots);
  for (std::size_t slot = 0; slot < slots && !check_.report.IsFull(); ++slot) {
    const RowPointer row{dataPage, static_cast<std::uint8_t>(slot)};
    const std::optional<RowView> view = FindHomeRow(check_, table_.page, row);
    RowParts fields;
    if (!view || check_.indexedRows.Contains(row) || !fields.Parse(table_, view->bytes).empty())
      continue;
    if (NeedsEntry(table_, index_, fields))
      check_.Error(place_, TextOf(u"brak wpisu ", RowText(row)));
  }
}

}  // namespace zimbrat::jet::check

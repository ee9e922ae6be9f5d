#include "format.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/dates.h"
#include "platform/text.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

struct NamedFormat {
  std::u16string_view name, pattern;
};
// "General Number" is what CStr shows.
constexpr NamedFormat kNamedFormats[] = {
    {u"General Number", u""},
    {u"Currency", u"#,##0.00 \"zł\""},
    {u"Fixed", u"0.00"},
    {u"Standard", u"#,##0.00"},
    {u"Percent", u"0.00%"},
    {u"Scientific", u"0.00E+00"},
    {u"Yes/No", u"\"Yes\";\"Yes\";\"No\""},
    {u"True/False", u"\"True\";\"True\";\"False\""},
    {u"On/Off", u"\"On\";\"On\";\"Off\""},
    {u"General Date", u"c"},
    {u"Long Date", u"dddddd"},
    {u"Medium Date", u"dd-mmm-yy"},
    {u"Short Date", u"ddddd"},
    {u"Long Time", u"ttttt"},
    {u"Medium Time", u"hh:nn AM/PM"},
    {u"Short Time", u"hh:nn"},
};

std::u16string_view PatternOf(std::u16string_view format) {
  for (const NamedFormat& named : kNamedFormats) {
    if (platform::EqualIgnoringCase(format, named.name)) return named.pattern;
  }
  return format;
}

std::vector<PatternUnit> ReadPattern(std::u16string_view pattern) {
  std::vector<PatternUnit> units;
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == u'"') {
      quoted = !quoted;
    } else if (!quoted && pattern[i] == u'\\' && i + 1 < pattern.size()) {
      units.push_back({pattern[++i], true});
    } else {
      units.push_back({pattern[i], quoted});
    }
  }
  return units;
}

class Sections {
 public:
  explicit Sections(Section units) {
    auto start = units.begin();
    for (auto at = units.begin(); at != units.end(); ++at) {
      if (!at->Is(u';')) continue;
      sections_.emplace_back(start, at);
      start = at + 1;
    }
    sections_.emplace_back(start, units.end());
  }

  Section First() const { return sections_.front(); }
  // Nothing when it is left out.
  std::optional<Section> Find(std::size_t i) const {
    if (i >= sections_.size() || sections_[i].empty()) return std::nullopt;
    return sections_[i];
  }

 private:
  std::vector<Section> sections_;
};

enum class PatternKind { Plain, Number, Date, Text };

// The first sign that means something tells.
PatternKind KindOf(Section units) {
  for (const PatternUnit& unit : units) {
    if (unit.IsAnyOf(u"0#.,%")) return PatternKind::Number;
    if (unit.IsAnyOf(u"dDmMyYhHnNsSwWqQcCaAtT/:")) return PatternKind::Date;
    if (unit.IsAnyOf(u"@&<>!")) return PatternKind::Text;
  }
  return PatternKind::Plain;
}

// Positive, negative, zero: each may have a section of its own.
std::u16string NumberBySections(platform::ExactNumber number, const Sections& sections) {
  const std::optional<Section> negative = sections.Find(1), zero = sections.Find(2);
  if (number.figures.empty() && zero) return FormatNumber(number, *zero);
  if (number.negative && negative) return FormatNumber(Negated(std::move(number)), *negative);
  return FormatNumber(std::move(number), sections.First());
}

std::u16string NullBySections(PatternKind kind, const Sections& sections) {
  const std::optional<Section> section = sections.Find(kind == PatternKind::Text ? 1 : 3);
  if (!section) return {};
  return kind == PatternKind::Text ? FormatText({}, *section) : FormatNumber({}, *section);
}

std::u16string TextBySections(const std::u16string& text, const Sections& sections) {
  const std::optional<Section> empty = sections.Find(1);
  return FormatText(text, text.empty() && empty ? *empty : sections.First());
}

std::u16string PlainText(const dao::Value& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? u"True" : u"False";
  return TextOfValue(value);
}

// Nothing for a text that is no date.
std::optional<double> FindDateToShow(const dao::Value& value) {
  const std::optional<double> date = FindDateValue(value);
  if (date && !platform::IsDateInRange(*date)) Raise(platform::kErrOverflow);
  return date;
}

std::u16string FormatByKind(const dao::Value& value, Section units, const WeekRule& weeks) {
  const Sections sections(units);
  const PatternKind kind = KindOf(units);
  if (dao::IsNull(value)) return NullBySections(kind, sections);
  if (kind == PatternKind::Text) return TextBySections(TextOfValue(value), sections);
  if (kind == PatternKind::Date) {
    const std::optional<double> date = FindDateToShow(value);
    return date ? FormatDate(*date, sections.First(), weeks) : TextOfValue(value);
  }
  const std::optional<platform::ExactNumber> number = FindExact(value);
  return number ? NumberBySections(*number, sections) : TextOfValue(value);
}

}  // namespace

std::u16string FormatValue(const dao::Value& value, std::u16string_view pattern, const WeekRule& weeks) {
  const std::vector<PatternUnit> units = ReadPattern(PatternOf(pattern));
  std::u16string text = units.empty() ? PlainText(value) : FormatByKind(value, units, weeks);
  CheckResultLength(text.size());
  return text;
}

}  // namespace zimbrat::jet

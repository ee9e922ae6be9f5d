// Numbers by a pattern of 0, #, point, commas, % and E+00.
#include <algorithm>
#include <cstdlib>

#include "platform/numbers.h"
#include "platform/text.h"

#include "format.h"
#include "operators.h"

namespace zimbrat::jet {

namespace {

using platform::ExactNumber;

constexpr std::u16string_view kDigits = u"0#";

// What a section asks for, found before anything is written.
struct Layout {
  int whole = 0;         // placeholders in front of the point
  int least = 0;         // figures there: from the first 0 on
  int places = 0;        // placeholders behind the point
  int leastPlaces = 0;   // figures there: up to the last 0
  bool groups = false;
  bool exponent = false;
  int shift = 0;         // powers of ten, from % and commas
};

bool StartsExponent(Section section, std::size_t at) {
  return at + 2 < section.size() && section[at].IsAnyOf(u"Ee") && section[at + 1].IsAnyOf(u"+-") &&
         section[at + 2].IsAnyOf(kDigits);
}

std::size_t EndOfExponent(Section section, std::size_t at) {
  at += 2;
  while (at < section.size() && section[at].IsAnyOf(kDigits)) ++at;
  return at;
}

Layout ReadLayout(Section section) {
  Layout layout;
  bool behindPoint = false;
  int commas = 0;  // since the last placeholder: between two they group, else each takes off three figures
  for (std::size_t i = 0; i < section.size(); ++i) {
    const PatternUnit unit = section[i];
    if (StartsExponent(section, i)) {
      layout.exponent = true;
      i = EndOfExponent(section, i) - 1;
    } else if (unit.IsAnyOf(kDigits) && behindPoint) {
      ++layout.places;
      if (unit.Is(u'0')) layout.leastPlaces = layout.places;
    } else if (unit.IsAnyOf(kDigits)) {
      ++layout.whole;
      if (layout.least > 0 || unit.Is(u'0')) ++layout.least;
      layout.groups = layout.groups || (commas > 0 && layout.whole > 1);
      commas = 0;
    } else if (unit.Is(u',') && !behindPoint) {
      ++commas;
    } else if (unit.Is(u'.')) {
      behindPoint = true;
    } else if (unit.Is(u'%')) {
      layout.shift += 2;
    }
  }
  if (layout.whole > 0) layout.shift -= 3 * commas;
  return layout;
}

class NumberWriter {
 public:
  NumberWriter(ExactNumber number, Section section)
      : section_(section), layout_(ReadLayout(section)), number_(std::move(number)) {
    if (!number_.figures.empty()) number_.point += layout_.shift;
    if (layout_.exponent) TakeExponent();
    number_ = platform::Rounded(std::move(number_), layout_.places, platform::Ties::Away);
    if (layout_.exponent) TakeExponent();  // 9.99 may have become 10
    if (number_.point > 0) CheckResultLength(static_cast<std::size_t>(number_.point));
    SetWholeFigures();
  }

  std::u16string Write() {
    if (number_.negative) text_ += u'-';
    for (std::size_t i = 0; i < section_.size(); ++i) {
      const PatternUnit unit = section_[i];
      if (layout_.exponent && StartsExponent(section_, i)) {
        const std::size_t end = EndOfExponent(section_, i);
        WriteExponent(unit.unit, section_[i + 1].unit == u'+', end - i - 2);
        i = end - 1;
      } else if (unit.IsAnyOf(kDigits)) {
        behindPoint_ ? WritePlace() : WriteWhole();
      } else if (unit.Is(u'.')) {
        WritePoint();
      } else if (!unit.Is(u',')) {
        text_ += unit.unit;
      }
    }
    return std::move(text_);
  }

 private:
  void TakeExponent() {
    if (number_.figures.empty()) return;
    const int point = std::max(layout_.whole, 1);
    exponent_ += number_.point - point;
    number_.point = point;
  }

  void SetWholeFigures() {
    const auto size = static_cast<std::size_t>(std::max(number_.point, 0));
    whole_ = number_.figures.substr(0, size);
    whole_.append(size - whole_.size(), '0');
    const auto least = static_cast<std::size_t>(layout_.least);
    if (whole_.size() < least) whole_.insert(0, least - whole_.size(), '0');
  }

  // Up to the figure that has as many behind it as placeholders are left.
  void WriteWholeUpTo(std::size_t left) {
    while (written_ + left < whole_.size()) {
      text_ += static_cast<char16_t>(whole_[written_++]);
      const std::size_t behind = whole_.size() - written_;
      if (layout_.groups && behind > 0 && behind % 3 == 0) text_ += platform::NumberLocale{}.groupSign;
    }
  }
  void WriteWhole() {
    ++seenWhole_;
    WriteWholeUpTo(static_cast<std::size_t>(layout_.whole - seenWhole_));
  }

  void WritePoint() {
    if (behindPoint_) return;
    WriteWholeUpTo(0);
    behindPoint_ = true;
    text_ += platform::NumberLocale{}.decimalSign;
  }

  void WritePlace() {
    const int place = seenPlaces_++;
    if (place >= std::max(number_.Places(), layout_.leastPlaces)) return;
    const int at = number_.point + place;
    const bool has = at >= 0 && at < static_cast<int>(number_.figures.size());
    text_ += has ? static_cast<char16_t>(number_.figures[static_cast<std::size_t>(at)]) : u'0';
  }

  void WriteExponent(char16_t letter, bool plus, std::size_t width) {
    text_ += letter;
    if (exponent_ < 0) text_ += u'-';
    if (exponent_ >= 0 && plus) text_ += u'+';
    const std::u16string digits = platform::DecimalText(std::abs(exponent_));
    if (digits.size() < width) text_.append(width - digits.size(), u'0');
    text_ += digits;
  }

  Section section_;
  Layout layout_;
  ExactNumber number_;
  int exponent_ = 0;
  std::string whole_;
  std::size_t written_ = 0;
  int seenWhole_ = 0, seenPlaces_ = 0;
  bool behindPoint_ = false;
  std::u16string text_;
};

}  // namespace

std::u16string FormatNumber(ExactNumber number, Section section) {
  return NumberWriter(std::move(number), section).Write();
}

}  // namespace zimbrat::jet

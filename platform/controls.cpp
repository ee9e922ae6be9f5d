#include "platform/controls.h"

#include <algorithm>
#include <utility>

#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::platform {

void Control::Tell(Change change) const {
  if (listener_) listener_(change);
}

void Control::SetEnabled(bool enabled) {
  enabled_ = enabled;
  Tell(Change::Enabled);
}

void Control::SetVisible(bool visible) {
  visible_ = visible;
  Tell(Change::Visible);
}

void Captioned::SetCaption(std::u16string_view caption) {
  caption_ = caption;
  Tell(Change::Caption);
}

void Form::SetHeight(int twips) {
  height_ = twips;
  Tell(Change::Height);
}

void Button::Click() {
  if (Enabled() && click_) click_();
}

void OptionButton::Select() {
  for (OptionButton* other : group_) {
    if (other == this || !other->value_) continue;
    other->value_ = false;
    other->Tell(Change::Checked);
  }
  value_ = true;
  Tell(Change::Checked);
  if (click_) click_();
}

void CheckBox::SetValue(int value) {
  value_ = value;
  Tell(Change::Checked);
}

void TextBox::SetText(std::u16string_view text) {
  text_ = maxLength_ == 0 ? text : text.substr(0, maxLength_);
  Tell(Change::Text);
}

void TextBox::SetMasked(bool masked) {
  masked_ = masked;
  Tell(Change::Text);
}

void OrvClick::Click() {
  if (Enabled() && click_) click_();
}

void OrvUpDown::SetRange(int least, int greatest) {
  least_ = least;
  greatest_ = greatest;
}

void OrvUpDown::Step(int by) {
  const double start = std::clamp(FindNumber(TrimBlanks(Text())).value_or(0),
                                  static_cast<double>(least_), static_cast<double>(greatest_));
  SetText(DecimalText(std::clamp(static_cast<int>(start) + by, least_, greatest_)));
}

void ProgressBar::Reset() {
  drawn_ = 0;
  SetSegment(0, 1);
}

void ProgressBar::SetSegment(int index, int count) {
  count_ = std::max(count, 1);
  index_ = std::clamp(index, 0, count_);
  SetMaximum(0);
}

void ProgressBar::SetMaximum(int steps) {
  maximum_ = std::max(steps, 0);
  value_ = 0;
  Draw();
}

void ProgressBar::Advance() {
  value_ = std::min(value_ + 1, maximum_);
  Draw();
}

void ProgressBar::Finish() {
  drawn_ = 1;
  Tell(Change::Progress);
}

void ProgressBar::Draw() {
  // What is left is for verifying the file and putting it in place.
  constexpr double kShareOfSteps = 0.9;
  const double ofFile = maximum_ == 0 ? 0.0 : static_cast<double>(value_) / maximum_;
  const double ofAll = std::min((index_ + ofFile) / count_, 1.0);
  drawn_ = std::max(drawn_, kShareOfSteps * ofAll);
  Tell(Change::Progress);
}

void OrvList::Clear() {
  items_.clear();
  current_ = -1;
  Tell(Change::Items);
}

void OrvList::Add(std::u16string_view text, std::u16string_view value) {
  items_.push_back({std::u16string(text), std::u16string(value)});
  Tell(Change::Items);
}

void OrvList::SetCurrent(int index) {
  current_ = index >= 0 && index < Count() ? index : -1;
  Tell(Change::Current);
}

std::u16string_view OrvList::Text() const {
  return current_ < 0 ? std::u16string_view() : items_[static_cast<std::size_t>(current_)].text;
}

std::u16string_view OrvList::Value() const {
  return current_ < 0 ? std::u16string_view() : items_[static_cast<std::size_t>(current_)].value;
}

int OrvList::FindValue(std::u16string_view value) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const Item& item) { return item.value == value; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void OrvList::SetRowSource(std::u16string_view source) {
  constexpr std::u16string_view kPrefix = u"LIST ";
  Clear();
  if (!source.starts_with(kPrefix)) return;
  source.remove_prefix(kPrefix.size());
  while (!source.empty()) {
    const std::u16string_view row = source.substr(0, source.find(u'|'));
    source.remove_prefix(std::min(row.size() + 1, source.size()));
    const std::size_t split = row.find(u';');
    const std::u16string_view key = row.substr(0, split);
    Add(split == std::u16string_view::npos ? key : row.substr(split + 1), key);
  }
}

void OrvList::ClickItem(int index) {
  SetCurrent(index);
  if (Enabled() && Current() >= 0 && click_) click_();
}

void OrvCombo::Clear() {
  asSet_.clear();
  overlay_.clear();
  OrvList::Clear();
}

int OrvCombo::FindText(std::u16string_view text) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const Item& item) { return item.text == text; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void OrvCombo::SetValue(std::u16string_view valueOrText) {
  const int index = FindValue(valueOrText);
  SetCurrent(index < 0 ? FindText(valueOrText) : index);
  if (Current() >= 0) asSet_ = valueOrText;
}

std::u16string_view OrvCombo::Value() const { return asSet_; }

void OrvCombo::SetCurrent(int index) {
  overlay_.clear();
  OrvList::SetCurrent(index);
  asSet_ = HiddenValue();
}

void OrvCombo::SetShownText(std::u16string_view text) {
  SetCurrent(FindText(text));
  if (Current() < 0) overlay_ = text;
  Tell(Change::Text);
}

void OrvListCheck::Clear() {
  presentValues_.clear();
  OrvList::Clear();
}

bool OrvListCheck::IsChecked(int index) const {
  return index >= 0 && index < Count() && items_[static_cast<std::size_t>(index)].isChecked;
}

void OrvListCheck::SetChecked(int index, bool checked) {
  if (index < 0 || index >= Count()) return;
  items_[static_cast<std::size_t>(index)].isChecked = checked;
  Tell(Change::Checked);
}

int OrvListCheck::CheckedCount() const {
  return static_cast<int>(
      std::count_if(items_.begin(), items_.end(), [](const Item& item) { return item.isChecked; }));
}

namespace {

std::u16string Joined(const std::vector<OrvList::Item>& items, char16_t separator,
                      std::u16string OrvList::Item::*part) {
  std::u16string joined;
  for (const OrvList::Item& item : items) {
    if (!item.isChecked) continue;
    if (!joined.empty()) joined += separator;
    joined += item.*part;
  }
  return joined;
}

}  // namespace

std::u16string OrvListCheck::CheckedValues() const {
  return Joined(items_, separator_, &Item::value);
}

std::u16string OrvListCheck::CheckedTexts() const {
  return Joined(items_, separator_, &Item::text);
}

void OrvListCheck::SetPresentValues(std::u16string_view values) {
  presentValues_ = values;
  std::u16string_view rest = presentValues_;
  for (std::size_t end = rest.find(u';'); end != std::u16string_view::npos; end = rest.find(u';')) {
    const std::u16string_view value = rest.substr(0, end);
    for (Item& item : items_) {
      if (item.value == value) item.isChecked = true;
    }
    rest.remove_prefix(end + 1);
  }
  Tell(Change::Checked);
}

}  // namespace zimbrat::platform

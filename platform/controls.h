// The controls of the portable forms: small models that hold what a view shows and tell one
// listener what changed. A view draws them and hands events in; it holds no rule and no text of its
// own.
//
// Lists keep a hidden value beside each item's text. A list's current item is -1 when there is
// none.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/secret.h"

namespace zimbrat::platform {

enum class Change {
  Text,
  Items,
  Current,
  Checked,
  Enabled,
  Visible,
  Caption,
  Progress,
  Focus,
  Selection,
  Height
};

class Control {
 public:
  using Listener = std::function<void(Change)>;

  virtual ~Control() = default;
  Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  void SetListener(Listener listener) { listener_ = std::move(listener); }
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  // Asks the view to move the focus here.
  void SetFocus() { Tell(Change::Focus); }

 protected:
  void Tell(Change change) const;

 private:
  Listener listener_;
  bool enabled_ = true;
  bool visible_ = true;
};

// A text that the view draws beside or on the control; `&` marks the access key.
class Captioned : public Control {
 public:
  const std::u16string& Caption() const { return caption_; }
  void SetCaption(std::u16string_view caption);

 private:
  std::u16string caption_;
};

// A window of its own, hidden at first. Who shows it modally waits until it is hidden again.
class Form : public Captioned {
 public:
  Form() { SetVisible(false); }

  std::u16string Tag;
  // Of the whole window with its frame, in twips; 0: what its controls need.
  int Height() const { return height_; }
  void SetHeight(int twips);

 private:
  int height_ = 0;
};

class Label : public Captioned {};

// A container of controls: it and they are seen together. Its place on the form is in twips.
class Panel : public Control {
 public:
  std::u16string Tag;
  int Left = 0;
  int Top = 0;
};

class Button : public Captioned {
 public:
  void SetOnClick(std::function<void()> click) { click_ = std::move(click); }
  // Nothing happens while the button is disabled.
  void Click();

 private:
  std::function<void()> click_;
};

// One of several: selecting one of a group clears the others.
class OptionButton : public Captioned {
 public:
  void SetGroup(std::vector<OptionButton*> group) { group_ = std::move(group); }
  void SetOnClick(std::function<void()> click) { click_ = std::move(click); }
  bool Value() const { return value_; }
  void Select();

 private:
  std::vector<OptionButton*> group_;
  std::function<void()> click_;
  bool value_ = false;
};

// 0 unchecked, 1 checked, 2 greyed.
class CheckBox : public Captioned {
 public:
  int Value() const { return value_; }
  void SetValue(int value);

 private:
  int value_ = 0;
};

// The text may be a password: what it occupied is wiped.
class TextBox : public Control {
 public:
  // Valid until the text changes.
  std::u16string_view Text() const { return text_; }
  // Cut to MaxLength where one is set.
  void SetText(std::u16string_view text);
  std::size_t MaxLength() const { return maxLength_; }
  void SetMaxLength(std::size_t length) { maxLength_ = length; }
  bool Masked() const { return masked_; }
  void SetMasked(bool masked);
  // Asks the view to select the whole text.
  void SelectAll() { Tell(Change::Selection); }
  // The user has gone on to another control.
  void SetOnLeave(std::function<void()> leave) { leave_ = std::move(leave); }
  void Leave() const {
    if (leave_) leave_();
  }

 private:
  Secret text_;
  std::function<void()> leave_;
  std::size_t maxLength_ = 0;
  bool masked_ = false;
};

// A text field with a button.
class OrvClick : public TextBox {
 public:
  // What the button does, for those who do not see the picture on it.
  const std::u16string& ButtonName() const { return buttonName_; }
  void SetButtonName(std::u16string_view name) { buttonName_ = name; }
  void SetOnClick(std::function<void()> click) { click_ = std::move(click); }
  void Click();

 private:
  std::u16string buttonName_;
  std::function<void()> click_;
};

// A number with two arrows; its text is what was typed.
class OrvUpDown : public TextBox {
 public:
  void SetRange(int least, int greatest);
  // One step from the leading number of the text, kept within the range.
  void Up() { Step(1); }
  void Down() { Step(-1); }

 private:
  void Step(int by);

  int least_ = 0;
  int greatest_ = 0;
};

// The bar of a run over several files. Value and maximum are those of the file at work. What is drawn
// goes one way until Reset: each file has a share of equal width, whatever its header announces, and
// the last part belongs to what follows the last step, so that the bar is full at Finish alone.
class ProgressBar : public Control {
 public:
  // Empty again, for the next run.
  void Reset();
  // The file that follows, `index` from 0 of `count`; its own steps start again.
  void SetSegment(int index, int count);
  // The steps that the file announces; counting starts again.
  void SetMaximum(int steps);
  // One step further, at most to the maximum.
  void Advance();
  // The run has succeeded.
  void Finish();

  int Value() const { return value_; }
  int Maximum() const { return maximum_; }
  // 0 to 1: how much of the width is drawn.
  double Fraction() const { return drawn_; }

 private:
  void Draw();

  int index_ = 0;
  int count_ = 1;
  int maximum_ = 0;
  int value_ = 0;
  double drawn_ = 0;
};

class OrvList : public Control {
 public:
  struct Item {
    std::u16string text;
    std::u16string value;
    bool isChecked = false;
  };

  virtual void Clear();
  void Add(std::u16string_view text, std::u16string_view value);
  int Count() const { return static_cast<int>(items_.size()); }
  const std::vector<Item>& Items() const { return items_; }
  int Current() const { return current_; }
  // A position outside the list means none.
  virtual void SetCurrent(int index);
  // Of the current item; empty when there is none.
  std::u16string_view Text() const;
  virtual std::u16string_view Value() const;
  // The first item with that value, or -1.
  int FindValue(std::u16string_view value) const;
  // "LIST k;text|k;text": keys become values. Anything else empties the list.
  void SetRowSource(std::u16string_view source);

  // Stands in the list while it has no items.
  const std::u16string& EmptyText() const { return emptyText_; }
  void SetEmptyText(std::u16string_view text) { emptyText_ = text; }

  void SetOnItemClick(std::function<void()> click) { click_ = std::move(click); }
  void ClickItem(int index);

 protected:
  std::vector<Item> items_;

 private:
  int current_ = -1;
  std::u16string emptyText_;
  std::function<void()> click_;
};

// Its value is a hidden value or a shown text, as it was set.
class OrvCombo : public OrvList {
 public:
  void Clear() override;
  // Selects the item with that hidden value, else the one with that text, else none.
  void SetValue(std::u16string_view valueOrText);
  // As it was set when that names an item, else empty; an item that was picked has its hidden value.
  std::u16string_view Value() const override;
  std::u16string_view HiddenValue() const { return OrvList::Value(); }
  void SetCurrent(int index) override;
  // What the field shows: the current item's text, or a text that names none.
  std::u16string_view ShownText() const { return overlay_.empty() ? Text() : overlay_; }
  // Selects the item with that text; without one the text alone is shown, and no item is current.
  void SetShownText(std::u16string_view text);

 private:
  int FindText(std::u16string_view text) const;

  std::u16string asSet_;
  std::u16string overlay_;
};

class OrvListCheck : public OrvList {
 public:
  explicit OrvListCheck(char16_t separator) : separator_(separator) {}

  void Clear() override;
  bool IsChecked(int index) const;
  void SetChecked(int index, bool checked);
  int CheckedCount() const;
  // The values, or the texts, of the checked items, with the list's separator between them.
  std::u16string CheckedValues() const;
  std::u16string CheckedTexts() const;
  // Values of the items shown as present, each followed by ";". Putting it checks those items.
  const std::u16string& PresentValues() const { return presentValues_; }
  void SetPresentValues(std::u16string_view values);

 private:
  char16_t separator_;
  std::u16string presentValues_;
};

}  // namespace zimbrat::platform

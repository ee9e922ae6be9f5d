// Lists: plain, with check boxes, dropping down.
#include "view.h"

#include "platform/win32/wide_text.h"
#include "ruler.h"
#include "surface.h"

#include <algorithm>

namespace zimbrat::app {
namespace {

using platform::Change;

std::u16string_view TextOf(const platform::OrvList& model, int index) {
  return model.Items()[static_cast<std::size_t>(index)].text;
}

HFONT FontOf(HWND list) {
  return reinterpret_cast<HFONT>(::SendMessageW(list, WM_GETFONT, 0, 0));
}

// What stands in a list without items.
void DrawEmptyText(HWND list, const std::u16string& text) {
  const Surface surface(list, FontOf(list));
  RECT area = {};
  ::GetClientRect(list, &area);
  ::InflateRect(&area, -4, -4);
  ::SetBkMode(surface.Dc(), TRANSPARENT);
  ::SetTextColor(surface.Dc(), ::GetSysColor(COLOR_GRAYTEXT));
  ::DrawTextW(surface.Dc(), platform::Lend(text), static_cast<int>(text.size()), &area,
              DT_WORDBREAK | DT_NOPREFIX);
}

// Pixels that the text takes in the list, with a little air.
int WidthIn(HWND list, std::u16string_view text) {
  const Surface surface(list, FontOf(list));
  const std::u16string lent(text);
  SIZE size = {};
  ::GetTextExtentPoint32W(surface.Dc(), platform::Lend(lent), static_cast<int>(lent.size()), &size);
  return size.cx + size.cy / 2;
}

// A list that says why it is empty.
class ItemsView : public View {
 protected:
  ItemsView(platform::OrvList& model, HWND window) : View(model, window), list_(model) { Subclass(); }

  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    const LRESULT answer = View::OnMessage(message, wParam, lParam);
    if (message == WM_PAINT && list_.Count() == 0) DrawEmptyText(Window(), list_.EmptyText());
    return answer;
  }

 private:
  platform::OrvList& list_;
};

class ListBoxView : public ItemsView {
 public:
  ListBoxView(HWND parent, platform::OrvList& model)
      : ItemsView(model, MakeControl(parent, WC_LISTBOXW,
                                     LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL |
                                         WS_TABSTOP,
                                     WS_EX_CLIENTEDGE)),
        model_(model) {
    ShowAll();
  }
  void OnCommand(WORD code) override {
    if (code != LBN_SELCHANGE) return;
    const Taking taking(*this);
    model_.ClickItem(static_cast<int>(::SendMessageW(Window(), LB_GETCURSEL, 0, 0)));
  }

  // Names are measured anew with another font.
  void Place(const RECT& area, const Ruler& ruler) override {
    View::Place(area, ruler);
    ::SendMessageW(Window(), LB_SETITEMHEIGHT, 0, ruler.LineHeight());
    ::SendMessageW(Window(), LB_RESETCONTENT, 0, 0);
    Show(Change::Items);
  }

 private:
  void Show(Change change) override {
    if (change == Change::Items) ShowItems();
    if (change == Change::Items || change == Change::Current) {
      ::SendMessageW(Window(), LB_SETCURSEL, static_cast<WPARAM>(model_.Current()), 0);
    }
  }

  void ShowItems() {
    const int shown = static_cast<int>(::SendMessageW(Window(), LB_GETCOUNT, 0, 0));
    // Lists grow item by item, and a folder may hold thousands.
    const bool hasGrown = shown > 0 && shown + 1 == model_.Count();
    if (!hasGrown) {
      ::SendMessageW(Window(), LB_RESETCONTENT, 0, 0);
      widest_ = 0;
    }
    for (int i = hasGrown ? shown : 0; i < model_.Count(); ++i) {
      const std::u16string text(TextOf(model_, i));
      ::SendMessageW(Window(), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(platform::Lend(text)));
      widest_ = std::max(widest_, WidthIn(Window(), text));
    }
    // Long names can be scrolled to their ends.
    ::SendMessageW(Window(), LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest_), 0);
    ::InvalidateRect(Window(), nullptr, TRUE);
  }

  platform::OrvList& model_;
  int widest_ = 0;  // pixels of the longest name
};

class CheckListView : public ItemsView {
 public:
  CheckListView(HWND parent, platform::OrvListCheck& model)
      : ItemsView(model, MakeControl(parent, WC_LISTVIEWW,
                                     LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL |
                                         LVS_SHOWSELALWAYS | WS_TABSTOP,
                                     WS_EX_CLIENTEDGE)),
        model_(model) {
    constexpr DWORD kStyles =
        LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
    ::SendMessageW(Window(), LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    LVCOLUMNW column = {};
    column.mask = LVCF_WIDTH;
    ::SendMessageW(Window(), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    ShowAll();
  }

  LRESULT OnNotify(const NMHDR& notice) override {
    if (notice.code != static_cast<UINT>(LVN_ITEMCHANGED) || isShowing_) return 0;
    const NMLISTVIEW& change = reinterpret_cast<const NMLISTVIEW&>(notice);
    const Taking taking(*this);
    if (((change.uOldState ^ change.uNewState) & LVIS_STATEIMAGEMASK) != 0) {
      model_.SetChecked(change.iItem, (change.uNewState & LVIS_STATEIMAGEMASK) == kChecked);
    }
    if ((change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0) model_.ClickItem(change.iItem);
    return 0;
  }

  void Place(const RECT& area, const Ruler& ruler) override {
    View::Place(area, ruler);
    FitColumn();
  }

 private:
  static constexpr UINT kUnchecked = INDEXTOSTATEIMAGEMASK(1), kChecked = INDEXTOSTATEIMAGEMASK(2);

  void Show(Change change) override {
    isShowing_ = true;
    if (change == Change::Items) ShowItems();
    if (change == Change::Items || change == Change::Checked) {
      for (int i = 0; i < model_.Count(); ++i) {
        SetState(i, model_.IsChecked(i) ? kChecked : kUnchecked, LVIS_STATEIMAGEMASK);
      }
    }
    if (change == Change::Current && model_.Current() >= 0) {
      SetState(model_.Current(), LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    }
    isShowing_ = false;
  }

  void ShowItems() {
    ::SendMessageW(Window(), LVM_DELETEALLITEMS, 0, 0);
    for (int i = 0; i < model_.Count(); ++i) {
      std::u16string text(TextOf(model_, i));
      LVITEMW item = {};
      item.mask = LVIF_TEXT;
      item.iItem = i;
      item.pszText = platform::LendRoom(text);
      ::SendMessageW(Window(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    // The keyboard starts at the first item.
    if (model_.Count() > 0) SetState(0, LVIS_FOCUSED, LVIS_FOCUSED);
    FitColumn();
    ::InvalidateRect(Window(), nullptr, TRUE);
  }

  void SetState(int index, UINT state, UINT mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    ::SendMessageW(Window(), LVM_SETITEMSTATE, static_cast<WPARAM>(index),
                   reinterpret_cast<LPARAM>(&item));
  }

  void FitColumn() {
    RECT area = {};
    ::GetClientRect(Window(), &area);
    ::SendMessageW(Window(), LVM_SETCOLUMNWIDTH, 0, area.right);
  }

  platform::OrvListCheck& model_;
  bool isShowing_ = false;
};

class ComboView : public View {
 public:
  ComboView(HWND parent, platform::OrvCombo& model, bool startsGroup)
      : View(model, MakeControl(parent, WC_COMBOBOXW,
                                CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP |
                                    (startsGroup ? WS_GROUP : 0u))),
        model_(model) {
    // A year's months without scrolling.
    constexpr WPARAM kSeen = 12;
    ::SendMessageW(Window(), CB_SETMINVISIBLE, kSeen, 0);
    ShowAll();
  }
  void OnCommand(WORD code) override {
    // A list that closes may fall back to what was chosen before it opened.
    if (code != CBN_SELCHANGE && code != CBN_CLOSEUP) return;
    const int index = static_cast<int>(::SendMessageW(Window(), CB_GETCURSEL, 0, 0));
    // Behind the last item stands a text that names none.
    if (index < 0 || index >= model_.Count() || index == model_.Current()) return;
    model_.ClickItem(index);
  }

  // Room for the list that drops down.
  void Place(const RECT& area, const Ruler& ruler) override {
    constexpr int kLines = 14;
    View::Place({area.left, area.top, area.right, area.bottom + kLines * ruler.LineHeight()}, ruler);
    const LRESULT frame = area.bottom - area.top - 6;
    ::SendMessageW(Window(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), frame);
  }

 private:
  void Show(Change change) override {
    if (change == Change::Items) Fill();
    if (change == Change::Items || change == Change::Current || change == Change::Text) ShowCurrent();
  }

  void Fill() {
    ::SendMessageW(Window(), CB_RESETCONTENT, 0, 0);
    for (const auto& item : model_.Items()) Add(item.text);
  }

  void Add(const std::u16string& text) {
    ::SendMessageW(Window(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(platform::Lend(text)));
  }

  // A shown text that names no item stands behind the last one.
  void ShowCurrent() {
    const auto count = static_cast<WPARAM>(model_.Count());
    while (::SendMessageW(Window(), CB_GETCOUNT, 0, 0) > model_.Count()) {
      ::SendMessageW(Window(), CB_DELETESTRING, count, 0);
    }
    WPARAM shown = static_cast<WPARAM>(model_.Current());
    if (model_.Current() < 0 && !model_.ShownText().empty()) {
      Add(std::u16string(model_.ShownText()));
      shown = count;
    }
    ::SendMessageW(Window(), CB_SETCURSEL, shown, 0);
  }

  platform::OrvCombo& model_;
};

}  // namespace

ViewPtr MakeList(HWND parent, platform::OrvList& model) {
  return std::make_unique<ListBoxView>(parent, model);
}

ViewPtr MakeCheckList(HWND parent, platform::OrvListCheck& model) {
  return std::make_unique<CheckListView>(parent, model);
}

ViewPtr MakeCombo(HWND parent, platform::OrvCombo& model, bool startsGroup) {
  return std::make_unique<ComboView>(parent, model, startsGroup);
}

}  // namespace zimbrat::app

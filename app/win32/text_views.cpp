// Labels and fields.
#include "view.h"

#include "platform/secret.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"
#include "ruler.h"

#include <algorithm>

namespace zimbrat::app {
namespace {

using platform::Change;

constexpr wchar_t kMask = L'\u25CF';

class LabelView : public View {
 public:
  LabelView(HWND parent, platform::Label& model)
      : View(model, MakeControl(parent, WC_STATICW, SS_LEFT | SS_NOPREFIX)), model_(model) {
    ShowAll();
  }

 private:
  void Show(Change change) override {
    if (change != Change::Caption) return;
    SetText(Window(), model_.Caption());
    ::NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, Window(), OBJID_WINDOW, CHILDID_SELF);
  }

  platform::Label& model_;
};

class EditView : public View {
 public:
  EditView(HWND parent, platform::TextBox& model, DWORD style)
      : View(model, MakeControl(parent, WC_EDITW, style | WS_TABSTOP, WS_EX_CLIENTEDGE)),
        model_(model) {
    ::SendMessageW(Window(), EM_SETLIMITTEXT, model.MaxLength(), 0);
    Subclass();
  }
  ~EditView() override { OverwriteMasked(); }

  void OnCommand(WORD code) override {
    if (code == EN_KILLFOCUS) return model_.Leave();
    if (code != EN_CHANGE || isShowing_) return;
    const Taking taking(*this);
    TakeText();
  }
  bool IsField() const override { return true; }

 protected:
  void Show(Change change) override {
    if (change == Change::Selection) ::SendMessageW(Window(), EM_SETSEL, 0, -1);
    if (change != Change::Text) return;
    isShowing_ = true;
    OverwriteMasked();
    ::SendMessageW(Window(), EM_SETLIMITTEXT, model_.MaxLength(), 0);
    ::SendMessageW(Window(), EM_SETPASSWORDCHAR, model_.Masked() ? kMask : 0, 0);
    platform::Secret text(model_.Text());
    text.Append(std::u16string_view(u"\0", 1));
    ::SetWindowTextW(Window(), reinterpret_cast<const wchar_t*>(text.View().data()));
    ::InvalidateRect(Window(), nullptr, TRUE);
    isShowing_ = false;
  }

  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    // The system's own box of one line has no Ctrl+A before Windows 10.
    constexpr WPARAM kCtrlA = 1;
    if (message == WM_CHAR && wParam == kCtrlA) {
      return ::SendMessageW(Window(), EM_SETSEL, 0, -1);
    }
    return View::OnMessage(message, wParam, lParam);
  }

 private:
  // The system keeps its memory as it is: a password is written over before another text comes.
  void OverwriteMasked() {
    const int length = ::GetWindowTextLengthW(Window());
    if (!model_.Masked() || length == 0) return;
    SetText(Window(), std::u16string(static_cast<std::size_t>(length), u'*'));
    ::SendMessageW(Window(), EM_EMPTYUNDOBUFFER, 0, 0);
  }

  void TakeText() {
    std::u16string text(static_cast<std::size_t>(::GetWindowTextLengthW(Window())) + 1, u'\0');
    const int length = ::GetWindowTextW(Window(), platform::LendRoom(text), static_cast<int>(text.size()));
    model_.SetText(std::u16string_view(text).substr(0, static_cast<std::size_t>(std::max(length, 0))));
    platform::Wipe(text);
  }

  platform::TextBox& model_;
  bool isShowing_ = false;
};

class LineView : public EditView {
 public:
  LineView(HWND parent, platform::TextBox& model, DWORD style = 0)
      : EditView(parent, model, style | ES_AUTOHSCROLL) {
    ShowAll();
  }
};

// Enter and Esc belong to the form; the caret starts at the beginning; the bar comes when it is needed.
class ReadingBoxView : public EditView {
 public:
  ReadingBoxView(HWND parent, platform::TextBox& model)
      : EditView(parent, model, ES_MULTILINE | ES_READONLY | WS_VSCROLL) {
    ShowAll();
  }

  void Place(const RECT& area, const Ruler& ruler) override {
    EditView::Place(area, ruler);
    lineHeight_ = ruler.LineHeight();
    FitBar();
  }

 private:
  void Show(Change change) override {
    EditView::Show(change);
    if (change != Change::Text) return;
    ::SendMessageW(Window(), EM_SETSEL, 0, 0);
    FitBar();
  }

  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_GETDLGCODE) return DLGC_WANTARROWS | DLGC_WANTCHARS;
    return EditView::OnMessage(message, wParam, lParam);
  }

  void FitBar() {
    if (lineHeight_ == 0) return;
    RECT area = {};
    ::GetClientRect(Window(), &area);
    const LRESULT lines = ::SendMessageW(Window(), EM_GETLINECOUNT, 0, 0);
    ::ShowScrollBar(Window(), SB_VERT, lines * lineHeight_ > area.bottom);
  }

  int lineHeight_ = 0;
};

class TextWithButtonView : public EditView {
 public:
  TextWithButtonView(HWND parent, platform::OrvClick& model)
      : EditView(parent, model, ES_AUTOHSCROLL),
        model_(model),
        button_(MakeControl(parent, WC_BUTTONW,
                            BS_PUSHBUTTON | WS_TABSTOP | WS_GROUP | WS_VISIBLE)) {
    Adopt(button_);
    SetText(button_, model.ButtonName());
    ShowAll();
  }

  void OnCommand(WORD code) override {
    if (code == BN_CLICKED) return model_.Click();
    EditView::OnCommand(code);
  }

  // The button stands at the right end.
  void Place(const RECT& area, const Ruler& ruler) override {
    const int gap = ruler.X(4);
    const int width = ruler.Width(model_.ButtonName()) + ruler.X(10);
    EditView::Place({area.left, area.top, area.right - width - gap, area.bottom}, ruler);
    ::SendMessageW(button_, WM_SETFONT, reinterpret_cast<WPARAM>(ruler.Font()), TRUE);
    ::MoveWindow(button_, area.right - width, area.top, width, area.bottom - area.top, TRUE);
  }

 private:
  void Show(Change change) override {
    if (change == Change::Enabled) ::EnableWindow(button_, model_.Enabled());
    EditView::Show(change);
  }

  platform::OrvClick& model_;
  HWND button_;  // the parent destroys it
};

class UpDownView : public EditView {
 public:
  UpDownView(HWND parent, platform::OrvUpDown& model)
      : EditView(parent, model, ES_AUTOHSCROLL | ES_NUMBER),
        model_(model),
        arrows_(MakeControl(parent, UPDOWN_CLASSW, UDS_ALIGNRIGHT | UDS_ARROWKEYS | WS_VISIBLE)) {
    // The arrows only say which way; counting is the model's.
    constexpr LPARAM kFar = 10'000;
    ::SendMessageW(arrows_, UDM_SETRANGE32, static_cast<WPARAM>(-kFar), kFar);
    Adopt(arrows_);
    ShowAll();
  }

  LRESULT OnNotify(const NMHDR& notice) override {
    if (notice.code != static_cast<UINT>(UDN_DELTAPOS)) return 0;
    if (reinterpret_cast<const NMUPDOWN&>(notice).iDelta > 0) {
      model_.Up();
    } else {
      model_.Down();
    }
    return TRUE;
  }

  void Place(const RECT& area, const Ruler& ruler) override {
    ::SendMessageW(arrows_, UDM_SETBUDDY, 0, 0);
    EditView::Place(area, ruler);
    ::SendMessageW(arrows_, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Window()), 0);
  }

 private:
  platform::OrvUpDown& model_;
  HWND arrows_;  // the parent destroys it
};

}  // namespace

ViewPtr MakeLabel(HWND parent, platform::Label& model) {
  return std::make_unique<LabelView>(parent, model);
}

ViewPtr MakeTextBox(HWND parent, platform::TextBox& model) {
  return std::make_unique<LineView>(parent, model);
}

ViewPtr MakeReadingBox(HWND parent, platform::TextBox& model) {
  return std::make_unique<ReadingBoxView>(parent, model);
}

ViewPtr MakeTextWithButton(HWND parent, platform::OrvClick& model) {
  return std::make_unique<TextWithButtonView>(parent, model);
}

ViewPtr MakeUpDown(HWND parent, platform::OrvUpDown& model) {
  return std::make_unique<UpDownView>(parent, model);
}

}  // namespace zimbrat::app

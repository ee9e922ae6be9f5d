// Buttons, options, check boxes, the progress bar and the pages.
#include "view.h"

#include "platform/win32/wide_text.h"

namespace zimbrat::app {
namespace {

using platform::Change;

class ButtonView : public View {
 public:
  ButtonView(HWND parent, platform::Button& model, int id)
      : View(model, MakeControl(parent, WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP | WS_GROUP, 0, id)),
        model_(model) {
    ShowAll();
  }
  void OnCommand(WORD code) override {
    if (code == BN_CLICKED) model_.Click();
  }

 private:
  void Show(Change change) override {
    if (change == Change::Caption) SetText(Window(), model_.Caption());
  }

  platform::Button& model_;
};

class OptionView : public View {
 public:
  OptionView(HWND parent, platform::OptionButton& model, bool startsGroup)
      : View(model, MakeControl(parent, WC_BUTTONW,
                                BS_AUTORADIOBUTTON | WS_TABSTOP | (startsGroup ? WS_GROUP : 0u))),
        model_(model) {
    ShowAll();
  }
  void OnCommand(WORD code) override {
    // An option that receives the focus is clicked by the system, though it is chosen already.
    if (code == BN_CLICKED && !model_.Value()) model_.Select();
  }

 private:
  void Show(Change change) override {
    if (change == Change::Caption) SetText(Window(), model_.Caption());
    if (change != Change::Checked) return;
    ::SendMessageW(Window(), BM_SETCHECK, model_.Value() ? BST_CHECKED : BST_UNCHECKED, 0);
    // One stop for the group: at the chosen option.
    const LONG_PTR style = ::GetWindowLongPtrW(Window(), GWL_STYLE);
    const LONG_PTR stop = WS_TABSTOP;
    ::SetWindowLongPtrW(Window(), GWL_STYLE, model_.Value() ? style | stop : style & ~stop);
  }

  platform::OptionButton& model_;
};

class CheckBoxView : public View {
 public:
  CheckBoxView(HWND parent, platform::CheckBox& model)
      : View(model, MakeControl(parent, WC_BUTTONW, BS_AUTOCHECKBOX | WS_TABSTOP | WS_GROUP)), model_(model) {
    ShowAll();
  }
  void OnCommand(WORD code) override {
    if (code != BN_CLICKED) return;
    const Taking taking(*this);
    model_.SetValue(static_cast<int>(::SendMessageW(Window(), BM_GETCHECK, 0, 0)));
  }

 private:
  void Show(Change change) override {
    if (change == Change::Caption) SetText(Window(), model_.Caption());
    if (change == Change::Checked) {
      ::SendMessageW(Window(), BM_SETCHECK, static_cast<WPARAM>(model_.Value()), 0);
    }
  }

  platform::CheckBox& model_;
};

class ProgressView : public View {
 public:
  ProgressView(HWND parent, platform::ProgressBar& model)
      : View(model, MakeControl(parent, PROGRESS_CLASSW, PBS_SMOOTH)), model_(model) {
    ::SendMessageW(Window(), PBM_SETRANGE32, 0, kWidth);
    ShowAll();
  }

 private:
  static constexpr int kWidth = 1000;

  void Show(Change change) override {
    if (change != Change::Progress) return;
    const int position = static_cast<int>(model_.Fraction() * kWidth);
    // The system slides to a greater position and would be late; it jumps to a smaller one.
    if (position < kWidth) ::SendMessageW(Window(), PBM_SETPOS, static_cast<WPARAM>(position + 1), 0);
    ::SendMessageW(Window(), PBM_SETPOS, static_cast<WPARAM>(position), 0);
    ::UpdateWindow(Window());
  }

  platform::ProgressBar& model_;
};

LRESULT CALLBACK PageProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      // One place answers for all controls, and catches what their handlers throw.
      return ::SendMessageW(::GetParent(window), message, wParam, lParam);
    case WM_CLOSE:
      // What a box of several lines sends on Esc concerns the form, which hears of it by itself.
      return 0;
    default:
      return ::DefWindowProcW(window, message, wParam, lParam);
  }
}

const wchar_t* PageClass() {
  constexpr const wchar_t* kName = L"ZimbratPlansza";
  WNDCLASSEXW type = {};
  type.cbSize = sizeof type;
  type.lpfnWndProc = PageProcedure;
  type.hInstance = ::GetModuleHandleW(nullptr);
  type.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  type.hbrBackground = ::GetSysColorBrush(COLOR_WINDOW);
  type.lpszClassName = kName;
  ::RegisterClassExW(&type);  // fails when it is there already
  return kName;
}

class PageView : public View {
 public:
  PageView(HWND parent, platform::Panel& model, const platform::Label& description)
      : View(model, MakeControl(parent, PageClass(), WS_CLIPCHILDREN, WS_EX_CONTROLPARENT)),
        model_(model),
        description_(description) {
    ShowAll();
  }

 private:
  void Show(Change change) override {
    if (change != Change::Visible) return;
    // Access keys of a page that is not seen must not be heard.
    ::EnableWindow(Window(), model_.Visible());
    if (!model_.Visible()) return;
    // The description is the page's name, so that a reader of the screen says it when the focus comes.
    SetText(Window(), description_.Caption());
    ::NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, Window(), OBJID_WINDOW, CHILDID_SELF);
  }

  platform::Panel& model_;
  const platform::Label& description_;
};

}  // namespace

ViewPtr MakeButton(HWND parent, platform::Button& model, int id) {
  return std::make_unique<ButtonView>(parent, model, id);
}

ViewPtr MakeOption(HWND parent, platform::OptionButton& model, bool startsGroup) {
  return std::make_unique<OptionView>(parent, model, startsGroup);
}

ViewPtr MakeCheckBox(HWND parent, platform::CheckBox& model) {
  return std::make_unique<CheckBoxView>(parent, model);
}

ViewPtr MakeProgressBar(HWND parent, platform::ProgressBar& model) {
  return std::make_unique<ProgressView>(parent, model);
}

ViewPtr MakePage(HWND parent, platform::Panel& model, const platform::Label& description) {
  return std::make_unique<PageView>(parent, model, description);
}

}  // namespace zimbrat::app

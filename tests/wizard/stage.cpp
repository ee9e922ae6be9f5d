#include "tests/wizard/stage.h"

#include <commctrl.h>

#include "tests/wizard/person.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  return name;
}

struct Collecting {
  const wchar_t* type;
  std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND window, LPARAM parameter) {
  Collecting& collecting = *reinterpret_cast<Collecting*>(parameter);
  if (!::IsWindowVisible(window)) return TRUE;
  if (collecting.type == nullptr || ::lstrcmpiW(ClassOf(window).c_str(), collecting.type) == 0) {
    collecting.found.push_back(window);
  }
  return TRUE;
}

}  // namespace

Stage::Stage(const std::vector<std::string>& symbols, Registry which)
    : windows([this](std::u16string_view path, std::u16string_view original) {
        choice.Verify(path, original);
      },
              state, outside),
      host(windows, state),
      state({bench.files,
             which == Registry::Real ? static_cast<platform::Registry&>(realRegistry) : bench.registry,
             bench.profile, bench.clock, bench.environment, host,
             [this](const suite::PasswordOf& password) { return choice.Engine(password); }}),
      shell([this] { return windows.Front(); }),
      mapi([this] { return windows.Front(); }) {
  bench.environment.programFolder = bench.folder.Path();
  for (const std::string& symbol : symbols) {
    bench.WriteStructure(platform::Utf16FromUtf8(symbol + ".stb"), SmallProgram(symbol));
  }
  form = std::make_unique<app::mdiMenu>(state, shell);
}

Stage::~Stage() { windows.SetWindow(nullptr); }

void Stage::Open() {
  form->Form_Load();
  window = std::make_unique<app::WizardWindow>(*form, host);
  windows.SetWindow(window.get());
  window->Show(SW_SHOWNORMAL);
  Pump();
}

void Stage::MakeDatabase(std::u16string_view name, const std::vector<std::string>& symbols) {
  std::u16string files;
  for (const std::string& symbol : symbols) {
    if (!files.empty()) files += u',';
    files += bench.PathOf(platform::Utf16FromUtf8(symbol + ".stb"));
  }
  platform::ProgressBar bar;
  EXPECT_TRUE(generator::GenerujNowaBaze(bench.state, bench.folder.Path(), name, files,
                                         {1, 2025, 1, 2025}, bar))
      << bench.Summary();
}

void Stage::Pump() {
  MSG message = {};
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (window->TakesKey(message)) continue;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

std::vector<HWND> Stage::Seen(const wchar_t* type) const {
  Collecting collecting{type, {}};
  ::EnumChildWindows(Top(), Collect, reinterpret_cast<LPARAM>(&collecting));
  return collecting.found;
}

HWND Stage::TheOne(const wchar_t* type) const {
  const std::vector<HWND> seen = Seen(type);
  EXPECT_EQ(seen.size(), 1u) << platform::Utf8FromUtf16(platform::FromWide(type));
  return seen.empty() ? nullptr : seen.front();
}

HWND Stage::FindCaption(std::string_view caption) const {
  for (const HWND window_ : Seen()) {
    std::string text = TextOf(window_);
    std::erase(text, '&');
    if (text == caption) return window_;
  }
  return nullptr;
}

void Stage::Click(std::string_view caption) {
  const HWND control = FindCaption(caption);
  ASSERT_NE(control, nullptr) << "nothing seen is named " << caption << "; there are:\n" << Texts();
  ASSERT_TRUE(::IsWindowEnabled(control)) << caption;
  ::PostMessageW(control, BM_CLICK, 0, 0);
  Pump();
}

void Stage::Next(int presses) {
  for (int i = 0; i < presses; ++i) Click(Utf8(form->cmdDalej.Caption()));
}

void Stage::Type(HWND field, std::u16string_view text) {
  ::SendMessageW(field, EM_SETSEL, 0, -1);
  ::SendMessageW(field, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
  for (const char16_t unit : text) ::SendMessageW(field, WM_CHAR, unit, 0);
  Pump();
}

void Stage::Key(WORD key) {
  const HWND focus = ::GetFocus();
  ::PostMessageW(focus, WM_KEYDOWN, key, 0);
  ::PostMessageW(focus, WM_KEYUP, key, 0);
  Pump();
}

std::string Stage::Texts() const {
  std::string texts;
  for (const HWND seen : Seen()) {
    if (ClassOf(seen) == L"ZimbratPlansza") continue;
    const std::string text = TextOf(seen);
    if (!text.empty()) texts += text + "\n";
  }
  return texts;
}

}  // namespace zimbrat::tests

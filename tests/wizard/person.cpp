#include "tests/wizard/person.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "platform/text.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

constexpr int kMessageId = 0xFFFF;

struct Search {
  const std::vector<HWND>& answered;
  const std::wstring& type;
  HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
  Search& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  const bool isDialog = std::wstring_view(name) == L"#32770" || name == search.type;
  const bool isOpen = process == ::GetCurrentProcessId() && isDialog && ::IsWindowVisible(window) &&
                      ::IsWindowEnabled(window);
  if (!isOpen || std::ranges::find(search.answered, window) != search.answered.end()) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

Act Press(int id) {
  return [id](HWND dialog) { ::PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0); };
}

Act Then(Act first, Act second) {
  return [first = std::move(first), second = std::move(second)](HWND dialog) {
    first(dialog);
    second(dialog);
  };
}

std::string TextOf(HWND window) {
  std::u16string text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, u'\0');
  const int length =
      ::GetWindowTextW(window, platform::LendRoom(text), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return platform::Utf8FromUtf16(text);
}

std::string MessageOf(HWND box) {
  const HWND message = ::GetDlgItem(box, kMessageId);
  return TextOf(box) + ": " + (message == nullptr ? "" : TextOf(message));
}

Person::Person(std::vector<Act> acts, std::wstring type) : type_(std::move(type)) {
  while (const HWND there = FindDialog()) answered_.push_back(there);
  thread_ = std::thread([this, acts = std::move(acts)] { Live(acts); });
}

Person::~Person() {
  isGone_ = true;
  thread_.join();
  EXPECT_FALSE(isTired_) << "a dialog did not appear, or one stayed; seen: " << testing::PrintToString(seen_);
}

void Person::Live(const std::vector<Act>& acts) {
  for (const Act& act : acts) {
    const HWND dialog = WaitForDialog();
    if (dialog == nullptr) {
      isTired_ = true;
      break;
    }
    seen_.push_back(MessageOf(dialog));
    act(dialog);
  }
  SendAway();
}

// Whatever opens or stays open beyond what was expected would hold the test for ever.
void Person::SendAway() {
  using namespace std::chrono_literals;
  constexpr int kStaysTooLong = 500;
  int waited = 0;
  for (; !isGone_ && waited < kStaysTooLong; ++waited) std::this_thread::sleep_for(10ms);
  answered_.clear();
  while (!isGone_) {
    if (const HWND dialog = FindDialog()) {
      isTired_ = true;
      seen_.push_back("sent away: " + MessageOf(dialog));
      for (const int id : {IDCANCEL, IDNO, IDOK}) Press(id)(dialog);
    }
    std::this_thread::sleep_for(100ms);
  }
}

HWND Person::FindDialog() const {
  Search search{answered_, type_};
  ::EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND Person::WaitForDialog() {
  using namespace std::chrono_literals;
  for (int waited = 0; waited < 500 && !isGone_; ++waited) {
    std::erase_if(answered_, [](HWND window) { return !::IsWindow(window); });
    if (const HWND dialog = FindDialog()) {
      // It is there, but perhaps not yet filled.
      std::this_thread::sleep_for(50ms);
      answered_.push_back(dialog);
      return dialog;
    }
    std::this_thread::sleep_for(10ms);
  }
  return nullptr;
}

}  // namespace zimbrat::tests

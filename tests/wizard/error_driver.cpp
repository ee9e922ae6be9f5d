#include "tests/wizard/error_driver.h"

#include <chrono>
#include <thread>

#include "suite/product.h"

namespace zimbrat::tests {

HWND FindIn(HWND dialog, std::string_view caption) {
  for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
    std::string text = TextOf(child);
    std::erase(text, '&');
    if (text == caption && ::IsWindowVisible(child)) return child;
  }
  return nullptr;
}

std::string SeenIn(HWND dialog) {
  std::string texts;
  for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
    if (::IsWindowVisible(child)) texts += TextOf(child) + "\n";
  }
  return texts;
}

Act Click(std::string_view caption) {
  return [caption](HWND dialog) {
    const HWND button = FindIn(dialog, caption);
    ASSERT_NE(button, nullptr) << caption;
    ::SendMessageW(button, BM_CLICK, 0, 0);
  };
}

Act Start(std::string_view caption) {
  return [caption](HWND dialog) { ::PostMessageW(FindIn(dialog, caption), BM_CLICK, 0, 0); };
}

Act Close() {
  return [](HWND dialog) { ::PostMessageW(dialog, WM_CLOSE, 0, 0); };
}

void WaitUntilGone(HWND window) {
  for (int i = 0; i < 500 && ::IsWindow(window); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

std::string ReportSubject() {
  return "Błąd programu " + Utf8(suite::ProductTitle()) + " wersja " + Utf8(suite::ProductVersion());
}

std::string ReportAddress() { return Utf8(suite::SupportAddress()); }

ErrorDriver::ErrorDriver() {
  stage_.bench.folder.Write(u"Errormsg.txt", platform::Ansi1250FromUtf16(u"[DAO]\r\n3022=Wyjaśnienie żółci.\r\n"));
  stage_.Open();
}

std::vector<std::string> ErrorDriver::Report(std::vector<Act> acts, std::u16string_view description) {
  const Person person(std::move(acts), kFormClass);
  stage_.host.ReportError({3022, u"DAO.Field", std::u16string(description)}, u"RegBaseKeySave");
  return person.Seen();
}

std::string ErrorDriver::Log() {
  return stage_.bench.folder.Exists(u"Error.log")
             ? Utf8(platform::Utf16FromAnsi1250(stage_.bench.folder.Read(u"Error.log")))
             : std::string();
}

}  // namespace zimbrat::tests

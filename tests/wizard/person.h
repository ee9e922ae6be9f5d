// Somebody at the screen: answers the dialogs of this process one after another, from a thread of its
// own, as a person would.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace zimbrat::tests {

// What is done with a dialog that has opened.
using Act = std::function<void(HWND dialog)>;

// Presses the button of that id: IDOK, IDCANCEL, IDYES, IDNO.
Act Press(int id);
// Does the one, then the other.
Act Then(Act first, Act second);

// The text and the title of a message box, as UTF-8.
std::string MessageOf(HWND box);
std::string TextOf(HWND window);

class Person {
 public:
  // Waits for a dialog for each of `acts`; each dialog that was not there before is acted upon once.
  // Dialogs are those of the system, and windows of the class `type`.
  explicit Person(std::vector<Act> acts, std::wstring type = L"#32770");
  // What did not appear, or stayed open for five seconds, fails the test.
  ~Person();
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  // Titles and messages of the boxes so far, "title: message" each.
  const std::vector<std::string>& Seen() const { return seen_; }

 private:
  void Live(const std::vector<Act>& acts);
  void SendAway();
  HWND FindDialog() const;
  HWND WaitForDialog();

  std::wstring type_;
  std::vector<std::string> seen_;
  std::vector<HWND> answered_;
  std::atomic<bool> isTired_ = false;
  std::atomic<bool> isGone_ = false;
  std::thread thread_;
};

}  // namespace zimbrat::tests

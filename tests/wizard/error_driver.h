// A person before the error window of a test's wizard.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/wizard/person.h"
#include "tests/wizard/stage.h"

namespace zimbrat::tests {

inline constexpr const wchar_t* kFormClass = L"ZimbratOkno";

HWND FindIn(HWND dialog, std::string_view caption);
// What can be read in it, a line each.
std::string SeenIn(HWND dialog);
// Returns when the click has been dealt with.
Act Click(std::string_view caption);
// Does not wait: something modal may open.
Act Start(std::string_view caption);
Act Close();
// At most some seconds.
void WaitUntilGone(HWND window);

// Of a report by mail.
std::string ReportSubject();
std::string ReportAddress();

class ErrorDriver : public testing::Test {
 protected:
  ErrorDriver();
  // Reports one error while a person does that with the dialogs that open. Titles and messages seen.
  std::vector<std::string> Report(std::vector<Act> acts, std::u16string_view description = u"Powtórzenie");
  std::string Log();

  Stage stage_;
};

}  // namespace zimbrat::tests

// The hands and eyes of tests that walk the real window: what is common to several pages.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

#include "tests/wizard/stage.h"

namespace zimbrat::tests {

// Texts of a combo box or a list box, each with a semicolon behind it.
std::string ComboItems(HWND combo);
std::string ListItems(HWND list);
// "[x] text;" or "[ ] text;" for each row of a check list.
std::string CheckItems(HWND list);

class Driver : public testing::Test {
 protected:
  std::string Folder() const { return Utf8(stage_.bench.folder.Path()); }
  void TypeNameAndFolder(std::u16string_view name, const std::u16string& folder);
  // Opened, and on the summary of a new database Firma with all programs.
  void GoToCreation();
  // By the keyboard, on the page with a check list.
  void CheckAll();
  // Answers one message box while `act` runs; what stood in it.
  std::string Answered(int button, const std::function<void()>& act);
  // The task's option chosen, and the database's page with that path in the field.
  void GoToDatabase(std::string_view task, const std::u16string& path);

  Stage stage_{{"AB", "CD"}};
};

}  // namespace zimbrat::tests

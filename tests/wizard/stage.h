// The real window over a folder, a registry and a clock of the test, driven as a person would: by its
// buttons, fields and keys.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/mdiMenu.h"
#include "app/run_host.h"
#include "app/win32/windows_host.h"
#include "app/win32/wizard_window.h"
#include "errors/ModError.h"
#include "platform/win32/win32_automation.h"
#include "platform/win32/win32_mapi.h"
#include "platform/win32/win32_registry.h"
#include "platform/win32/win32_shell.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {

class Stage {
 public:
  enum class Registry { OfTheBench, Real };

  // With those programs' structure files in the program's folder.
  explicit Stage(const std::vector<std::string>& symbols = {"AB"},
                 Registry which = Registry::OfTheBench);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Loads the form and shows its window.
  void Open();
  // A database of those programs, under that name in the bench's folder.
  void MakeDatabase(std::u16string_view name, const std::vector<std::string>& symbols);

  // Handles what waits in the queue.
  void Pump();
  // Clicks the button, option or box with that caption on the page that is seen.
  void Click(std::string_view caption);
  void Next(int presses = 1);
  // Types into the field that the text model belongs to, as a person at the keyboard.
  void Type(HWND field, std::u16string_view text);
  void Key(WORD key);

  // All windows of that class which can be seen, in the order of the Tab key.
  std::vector<HWND> Seen(const wchar_t* type = nullptr) const;
  // The only seen one of that class.
  HWND TheOne(const wchar_t* type) const;
  HWND FindCaption(std::string_view caption) const;
  HWND Top() const { return window->Window(); }
  std::string Page() const { return Utf8(form->akt_plansza); }
  // What can be read on the page, one line a control.
  std::string Texts() const;

  DatabaseBench bench;
  engines::EngineChoice choice{{.files = bench.files,
                                .clock = bench.clock,
                                .wish = engines::Wish::Embedded,
                                .pulse = [this] { windows.Pulse(); }}};
  platform::Win32Registry realRegistry;
  app::WindowsHost windows;
  app::RunHost host;
  suite::ProgramState state;
  platform::Win32Shell shell;
  platform::Win32Automation automation;
  platform::Win32Mapi mapi;
  int ends = 0;  // of the program, that were asked for
  errors::Outside outside{shell, automation, mapi, [this] { ++ends; }};
  std::unique_ptr<app::mdiMenu> form;
  std::unique_ptr<app::WizardWindow> window;
};

}  // namespace zimbrat::tests

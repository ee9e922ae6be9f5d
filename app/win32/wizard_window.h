// The wizard's window: the form mdiMenu on the screen.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "app/mdiMenu.h"
#include "busy_window.h"
#include "drop_target.h"
#include "form_window.h"

namespace zimbrat::app {

class WizardWindow : public FormWindow {
 public:
  // Both must outlive the window. It is not shown yet.
  WizardWindow(mdiMenu& form, platform::Host& host);
  ~WizardWindow() override;

  // As the starter of the program wants it (SW_*).
  void Show(int showCommand);
  // Handles messages until the form is unloaded.
  void RunUntilClosed();

  // While the thread is held by work.
  void SetBusy(bool busy);
  // Paints and answers the system, drops what the user does. Throws error 18 when the system ends.
  void Pulse();

 private:
  struct Placed {
    View* view;
    RECT area;  // dialog units of the page
  };
  struct Page {  // and what stands on it, from top to bottom
    platform::Panel* model;
    View* view;
    std::vector<Placed> controls;
  };

  void MakeFrame();
  void AddToMenu();
  Page& AddPage(platform::Panel& model);
  void MakeStart();
  void MakeNowaBaza();
  void MakeNazwaBazy();
  void MakeLists();
  void MakeOkresy();
  void MakeGeneruj();
  void MakeKoniec();
  void Add(Page& page, ViewPtr view, const RECT& area);

  SIZE LayOut(const Ruler& ruler) override;
  void LayOutButtons(const Ruler& ruler, SIZE client);
  platform::Button* DefaultButton() override;
  void OnCancel() override;
  void OnClose() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) override;
  bool IsDeaf() const;
  void Paint();
  void OnHandled() override;

  mdiMenu& wizard_;
  std::vector<Page> pages_;
  View* title_ = nullptr;
  View* back_ = nullptr;
  View* next_ = nullptr;
  View* cancel_ = nullptr;
  unsigned dpi_ = 0;
  RECT picture_ = {};
  int stripTop_ = 0;  // of the strip with the buttons
  bool hasMissed_ = false;  // a control changed that its model did not hear of
  BusyWindow busy_;
  DropTarget drop_;
};

}  // namespace zimbrat::app

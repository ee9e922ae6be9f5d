#include "tests/wizard/driver.h"

#include <commctrl.h>

#include "platform/text.h"
#include "tests/wizard/person.h"

namespace zimbrat::tests {
namespace {

std::string ItemsOf(HWND list, UINT count, UINT length, UINT get) {
  std::string items;
  for (LRESULT i = 0, n = ::SendMessageW(list, count, 0, 0); i < n; ++i) {
    const auto index = static_cast<WPARAM>(i);
    std::wstring text(static_cast<std::size_t>(::SendMessageW(list, length, index, 0)) + 1, L'\0');
    ::SendMessageW(list, get, index, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    items += platform::Utf8FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()}) + ";";
  }
  return items;
}

}  // namespace

std::string ComboItems(HWND combo) {
  return ItemsOf(combo, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
}

std::string ListItems(HWND list) { return ItemsOf(list, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT); }

std::string CheckItems(HWND list) {
  std::string items;
  for (LRESULT i = 0, n = ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); i < n; ++i) {
    wchar_t text[300] = {};
    LVITEMW item = {};
    item.iItem = static_cast<int>(i);
    item.pszText = text;
    item.cchTextMax = 300;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    const LRESULT state =
        ::SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(i), LVIS_STATEIMAGEMASK);
    items += state == INDEXTOSTATEIMAGEMASK(2) ? "[x] " : "[ ] ";
    items += platform::Utf8FromUtf16(reinterpret_cast<const char16_t*>(text)) + ";";
  }
  return items;
}

void Driver::TypeNameAndFolder(std::u16string_view name, const std::u16string& folder) {
  const std::vector<HWND> fields = stage_.Seen(WC_EDITW);
  ASSERT_EQ(fields.size(), 2u);
  stage_.Type(fields[0], name);
  stage_.Type(fields[1], folder);
}

void Driver::GoToCreation() {
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"Firma", stage_.bench.folder.Path());
  stage_.Next();
  CheckAll();
  stage_.Next(2);
}

void Driver::CheckAll() {
  const HWND list = stage_.TheOne(WC_LISTVIEWW);
  ::SetFocus(list);
  for (LRESULT i = 0; i < ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); ++i) {
    if (!stage_.form->lstProgDodaj.IsChecked(static_cast<int>(i)) || stage_.Page() == "ProgBazy") {
      stage_.Key(VK_SPACE);
    }
    stage_.Key(VK_DOWN);
  }
}

std::string Driver::Answered(int button, const std::function<void()>& act) {
  const Person person({Press(button)});
  act();
  return person.Seen().empty() ? "" : person.Seen().front();
}

void Driver::GoToDatabase(std::string_view task, const std::u16string& path) {
  stage_.Click(task);
  stage_.Next();
  stage_.Click("Inna lokalizacja");
  stage_.Type(stage_.TheOne(WC_EDITW), path);
}

}  // namespace zimbrat::tests

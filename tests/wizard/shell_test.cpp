// The shell's dialogs, opened for real and answered as a person would.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "tests/wizard/person.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/win32_shell.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

constexpr int kFolderTree = 14145;
constexpr int kFileName = 1148;
constexpr int kFileType = 1136;
constexpr unsigned kFlags = 40964;

// The first drive below the root.
void SelectFirstDrive(HWND browser) {
  const HWND tree = ::GetDlgItem(browser, kFolderTree);
  const LRESULT root = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
  ::SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, root);
  const LRESULT first = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, root);
  ::SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, first);
}

// Below the dialog at any depth.
HWND Find(HWND dialog, int id) {
  HWND found = ::GetDlgItem(dialog, id);
  for (HWND child = nullptr; found == nullptr &&
                             (child = ::FindWindowExW(dialog, child, L"#32770", nullptr)) != nullptr;) {
    found = ::GetDlgItem(child, id);
  }
  return found;
}

Act Type(const std::u16string& name) {
  return [name](HWND dialog) {
    ::SendMessageW(Find(dialog, kFileName), WM_SETTEXT, 0,
                   reinterpret_cast<LPARAM>(platform::Lend(name)));
  };
}

class ShellDialogs : public testing::Test {
 protected:
  platform::FileDialog Asking() const {
    return {.title = u"Wskaż bazę danych programu ZR",
            .folder = folder_.PathOf(u"Bazy łódź 1"),
            .name = u"*.mdb",
            .filter = u"Baza danych MS Access (*.mdb)|Pakiet.mdb",
            .flags = kFlags};
  }

  TempFolder folder_;
  platform::Win32Shell shell_{[] { return HWND{}; }};
};

TEST_F(ShellDialogs, BrowserGivesAFolderOrNothing) {
  {
    const Person person({Then(SelectFirstDrive, Press(IDOK))});
    EXPECT_EQ(platform::Utf8FromUtf16(shell_.BrowseForFolder(u"Wybierz folder", 0x241, 17)), "C:\\");
  }
  const Person person({Press(IDCANCEL)});
  EXPECT_EQ(shell_.BrowseForFolder(u"Wybierz folder", 0x241, 17), u"");
}

TEST_F(ShellDialogs, FileDialogGivesAPathOrNothing) {
  folder_.Write(u"Bazy łódź 1/Firma ąę.mdb", "x");
  const std::u16string path = folder_.PathOf(u"Bazy łódź 1/Firma ąę.mdb");
  std::string title, types;
  {
    const Act look = [&](HWND dialog) {
      title = TextOf(dialog);
      types = TextOf(Find(dialog, kFileType));
    };
    const Person person({Then(Then(look, Type(path)), Press(IDOK))});
    EXPECT_EQ(shell_.OpenFileDialog(Asking()), path);
  }
  EXPECT_EQ(title, "Wskaż bazę danych programu ZR");
  EXPECT_EQ(types, "Baza danych MS Access (*.mdb)");
  {
    // A bare name belongs to the folder that the dialog shows.
    const Person person({Then(Type(u"Firma ąę.mdb"), Press(IDOK))});
    EXPECT_EQ(shell_.OpenFileDialog(Asking()), path);
  }
  const Person person({Press(IDCANCEL)});
  EXPECT_EQ(shell_.OpenFileDialog(Asking()), u"");
}

TEST_F(ShellDialogs, NothingOpensWhatIsNotThere) {
  EXPECT_FALSE(shell_.Open(folder_.PathOf(u"brak.chm")));
}

}  // namespace
}  // namespace zimbrat::tests

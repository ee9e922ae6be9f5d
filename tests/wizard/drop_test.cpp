// Files dragged from the file manager over the window.
#include <gtest/gtest.h>

#include <windows.h>

#include <ole2.h>
#include <shlobj.h>

#include "app/win32/drop_target.h"
#include "platform/text.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

class Dropping : public testing::Test {
 protected:
  Dropping() { ::OleInitialize(nullptr); }
  ~Dropping() override { ::OleUninitialize(); }

  // What the file manager hands over for files of the test's folder.
  platform::ComReference<IDataObject> Drag(const std::vector<std::u16string>& names) {
    std::vector<platform::ItemList> lists(names.size());
    std::vector<PCUIDLIST_RELATIVE> ids;
    platform::ComReference<IShellFolder> folder;
    for (std::size_t i = 0; i < names.size(); ++i) {
      folder_.Write(names[i], "x");
      const std::u16string path = folder_.PathOf(names[i]);
      EXPECT_EQ(::SHParseDisplayName(platform::Lend(path), nullptr, lists[i].Receive(), 0, nullptr), S_OK);
      PCUITEMID_CHILD child = nullptr;
      platform::ComReference<IShellFolder> parent;
      EXPECT_EQ(::SHBindToParent(lists[i].Get(), IID_IShellFolder,
                                 reinterpret_cast<void**>(parent.Receive()), &child), S_OK);
      folder = std::move(parent);
      ids.push_back(child);
    }
    platform::ComReference<IDataObject> data;
    EXPECT_EQ(folder.Get()->GetUIObjectOf(nullptr, static_cast<UINT>(ids.size()),
                                          const_cast<PCUITEMID_CHILD_ARRAY>(ids.data()), IID_IDataObject,
                                          nullptr, reinterpret_cast<void**>(data.Receive())),
              S_OK);
    return data;
  }

  // The pointer over the window, then the button let go.
  DWORD DragAndDrop(const std::vector<std::u16string>& names) {
    const auto data = Drag(names);
    DWORD over = DROPEFFECT_COPY | DROPEFFECT_MOVE, dropped = over;
    target_.DragEnter(data.Get(), MK_LBUTTON, {}, &over);
    target_.Drop(data.Get(), 0, {}, &dropped);
    EXPECT_EQ(over, dropped);
    return over;
  }

  TempFolder folder_;
  std::u16string taken_;
  app::DropTarget target_{[](const std::u16string& path) { return path.ends_with(u".mdb"); },
                          [this](const std::u16string& path) { taken_ = path; }};
};

TEST_F(Dropping, TakesOneFileThatIsWanted) {
  // Never moved: the database stays where it is.
  EXPECT_EQ(DragAndDrop({u"Łódź 1.mdb"}), static_cast<DWORD>(DROPEFFECT_COPY));
  EXPECT_EQ(platform::Utf8FromUtf16(taken_), platform::Utf8FromUtf16(folder_.PathOf(u"Łódź 1.mdb")));
}

TEST_F(Dropping, RefusesTheRest) {
  EXPECT_EQ(DragAndDrop({u"Firma.txt"}), static_cast<DWORD>(DROPEFFECT_NONE));
  EXPECT_EQ(DragAndDrop({u"Jeden.mdb", u"Drugi.mdb"}), static_cast<DWORD>(DROPEFFECT_NONE));
  EXPECT_EQ(taken_, u"");
  DWORD effect = DROPEFFECT_COPY;
  target_.DragEnter(nullptr, 0, {}, &effect);
  EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
}

}  // namespace
}  // namespace zimbrat::tests

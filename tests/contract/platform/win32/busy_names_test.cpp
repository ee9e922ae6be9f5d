// Names that cannot be had now (error 70, worth another attempt) and those that cannot be had at all (75).
#include <windows.h>

#include <gtest/gtest.h>

#include "platform/error_numbers.h"
#include "platform/system.h"
#include "platform/win32/wide_text.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using tests::ErrorOf;

class WindowsBusyNames : public testing::Test {
 protected:
  WindowsBusyNames() {
    folder.Write(u"a", "a");
    folder.Write(u"b", "b");
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  Files& files = *system.files;
  const std::u16string a = folder.PathOf(u"a"), b = folder.PathOf(u"b");
};

TEST_F(WindowsBusyNames, FileOpenElsewhereMayBeHadLater) {
  const auto elsewhere = files.Open(a, OpenMode::Read, Sharing::Readers);
  EXPECT_EQ(ErrorOf([&] { files.Delete(a); }), kErrPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { files.Replace(b, a); }), kErrPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { files.Move(a, folder.PathOf(u"c")); }), kErrPermissionDenied);
}

TEST_F(WindowsBusyNames, ReadOnlyFileAndFolderMayNot) {
  ASSERT_TRUE(::SetFileAttributesW(Lend(a), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(ErrorOf([&] { files.Delete(a); }), kErrPathAccess);
  EXPECT_EQ(ErrorOf([&] { files.Delete(folder.Path()); }), kErrPathAccess);
}

}  // namespace
}  // namespace zimbrat::platform

// What every Files does alike.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "platform/error_numbers.h"
#include "platform/system.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using tests::ErrorOf;

class FilesContract : public testing::Test {
 protected:
  std::u16string P(std::u16string_view name) { return folder.PathOf(name); }
  std::unique_ptr<File> Open(std::u16string_view name, OpenMode mode,
                             Sharing sharing = Sharing::All) {
    return files.Open(P(name), mode, sharing);
  }
  static std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span<const char>(text));
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
  Files& files = *system.files;
};

TEST_F(FilesContract, ReadsAndWritesAtAnyPlace) {
  const auto file = Open(u"Łódź 1.mdb", OpenMode::CreateNew, Sharing::None);
  file->WriteAt(3, Bytes("abc"));
  EXPECT_EQ(file->Size(), 6u);
  std::string buffer(10, '#');
  const auto room = std::as_writable_bytes(std::span<char>(buffer));
  EXPECT_EQ(file->ReadAt(1, room), 5u);
  EXPECT_EQ(buffer.substr(0, 5), std::string("\0\0abc", 5));
  EXPECT_EQ(file->ReadAt(6, room), 0u);
  EXPECT_EQ(file->ReadAt(1000, room), 0u);
  file->Resize(4);
  file->WriteAt(0, {});
  file->Flush();
  EXPECT_EQ(file->Size(), 4u);
  EXPECT_NE(ErrorOf([&] { file->WriteAt(~0ull - 1, Bytes("x")); }), 0);
  EXPECT_NE(ErrorOf([&] { file->Resize(~0ull); }), 0);
}

TEST_F(FilesContract, FailuresHaveVisualBasicsNumbers) {
  folder.Write(u"a", "x");
  folder.Write(u"sub/b", "");
  const std::u16string cut = P(u"a") + std::u16string(1, u'\0') + u"b";
  const struct {
    const char* name;
    std::function<void()> work;
    std::int32_t number;
  } rows[] = {
      {"open missing", [&] { Open(u"none", OpenMode::Read); }, kErrFileNotFound},
      {"open in a missing folder", [&] { Open(u"no/none", OpenMode::Read); }, kErrPathNotFound},
      {"open a folder", [&] { Open(u"sub", OpenMode::Read); }, kErrPathAccess},
      {"create existing", [&] { Open(u"a", OpenMode::CreateNew); }, kErrFileExists},
      {"create in a missing folder", [&] { Open(u"no/a", OpenMode::CreateNew); }, kErrPathNotFound},
      {"delete missing", [&] { files.Delete(P(u"none")); }, kErrFileNotFound},
      {"delete a folder", [&] { files.Delete(P(u"sub")); }, kErrPathAccess},
      {"make existing folder", [&] { files.CreateFolder(P(u"sub")); }, kErrFileExists},
      {"make folder in a missing one", [&] { files.CreateFolder(P(u"no/sub")); }, kErrPathNotFound},
      {"replace from missing", [&] { files.Replace(P(u"none"), P(u"a")); }, kErrFileNotFound},
      {"replace a folder", [&] { files.Replace(P(u"a"), P(u"sub")); }, kErrPathAccess},
      {"move from missing", [&] { files.Move(P(u"none"), P(u"new")); }, kErrFileNotFound},
      {"move onto a file", [&] { files.Move(P(u"sub/b"), P(u"a")); }, kErrFileExists},
      {"move onto a folder", [&] { files.Move(P(u"a"), P(u"sub")); }, kErrFileExists},
      {"move into a missing folder", [&] { files.Move(P(u"a"), P(u"no/a")); }, kErrPathNotFound},
      {"path with NUL", [&] { files.Open(cut, OpenMode::Read, Sharing::All); }, kErrBadFileName},
      {"read all of too much", [&] { files.ReadAll(P(u"a"), 0); }, kErrDeviceIo},
      {"room of a missing folder", [&] { files.FreeSpace(P(u"no/no")); }, kErrPathNotFound},
      {"temporary in a missing folder", [&] { files.OpenTemporary(P(u"no")); }, kErrPathNotFound},
  };
  for (const auto& row : rows) EXPECT_EQ(ErrorOf(row.work), row.number) << row.name;
  EXPECT_EQ(folder.Read(u"a"), "x");
  EXPECT_TRUE(folder.Exists(u"sub/b"));
}

TEST_F(FilesContract, SharingIsRefusedAtOnce) {
  folder.Write(u"a", "x");
  const struct {
    Sharing first, second;
    bool isRefused;
  } rows[] = {
      {Sharing::None, Sharing::None, true},       {Sharing::None, Sharing::Readers, true},
      {Sharing::Readers, Sharing::None, true},    {Sharing::Readers, Sharing::Readers, false},
      {Sharing::All, Sharing::All, false},        {Sharing::Readers, Sharing::All, false},
  };
  for (const auto& row : rows) {
    const auto held = Open(u"a", OpenMode::Read, row.first);
    EXPECT_EQ(ErrorOf([&] { Open(u"a", OpenMode::Read, row.second); }),
              row.isRefused ? kErrPermissionDenied : 0);
  }
  EXPECT_EQ(ErrorOf([&] { Open(u"a", OpenMode::ReadWrite, Sharing::None); }), 0);
}

TEST_F(FilesContract, TemporaryFileLeavesNoName) {
  {
    const auto file = files.OpenTemporary(folder.Path());
    file->WriteAt(5000, Bytes("abc"));
    EXPECT_EQ(file->Size(), 5003u);
  }
  EXPECT_TRUE(folder.Names().empty());
}

TEST_F(FilesContract, StateTellsSizeAndKind) {
  folder.Write(u"a", "xyz");
  EXPECT_EQ(files.State(P(u"a"))->size, 3u);
  EXPECT_TRUE(files.IsFile(P(u"a")));
  EXPECT_TRUE(files.IsFolder(folder.Path()));
  EXPECT_FALSE(files.State(P(u"none")));
  EXPECT_FALSE(files.State(P(u"no/none")));
  EXPECT_FALSE(files.State(P(u"a/b")));
  EXPECT_FALSE(files.State(u""));
  const double days = 25569 + static_cast<double>(files.State(P(u"a"))->modified) / 86400e9;
  EXPECT_NEAR(days, system.clock->Now(), 1.0);  // the clock is local
}

TEST_F(FilesContract, ReplacePutsTheNewFileInPlaceOfTheOld) {
  folder.Write(u"new", "new");
  folder.Write(u"old", "old");
  files.Replace(P(u"new"), P(u"old"));
  EXPECT_EQ(folder.Read(u"old"), "new");
  EXPECT_FALSE(folder.Exists(u"new"));
  files.Replace(P(u"old"), P(u"third"));
  EXPECT_EQ(folder.Names(), std::vector<std::u16string>{u"third"});
  files.FlushFolder(folder.Path());
}

TEST_F(FilesContract, ReplaceTakesATargetThatTheCallerHolds) {
  folder.Write(u"new", "new");
  folder.Write(u"old", "old");
  files.ReplaceHeld(P(u"new"), P(u"old"), Open(u"old", OpenMode::Read, Sharing::Readers));
  EXPECT_EQ(folder.Read(u"old"), "new");
  EXPECT_EQ(ErrorOf([&] { Open(u"old", OpenMode::ReadWrite, Sharing::None); }), 0);
}

TEST_F(FilesContract, MoveTakesAFreeName) {
  folder.Write(u"a", "new");
  const FileState old = *files.State(P(u"a"));
  files.Move(P(u"a"), P(u"Łódź"));
  EXPECT_EQ(folder.Names(), std::vector<std::u16string>{u"Łódź"});
  EXPECT_EQ(folder.Read(u"Łódź"), "new");
  EXPECT_TRUE(old.IsSameFile(*files.State(P(u"Łódź"))));
}

TEST_F(FilesContract, StateTellsFilesApart) {
  folder.Write(u"a", "x");
  folder.Write(u"b", "x");
  const FileState a = *files.State(P(u"a"));
  EXPECT_FALSE(a.IsSameFile(*files.State(P(u"b"))));
  files.Replace(P(u"a"), P(u"c"));
  EXPECT_TRUE(a.IsSameFile(*files.State(P(u"c"))));
  EXPECT_EQ(a.volume, files.State(folder.Path())->volume);
}

TEST_F(FilesContract, PrivateFileIsMadeOnceAndOpenToItsOwner) {
  Open(u"a", OpenMode::CreatePrivate, Sharing::None)->WriteAt(0, Bytes("abc"));
  EXPECT_EQ(ErrorOf([&] { Open(u"a", OpenMode::CreatePrivate); }), kErrFileExists);
  EXPECT_EQ(ErrorOf([&] { Open(u"a", OpenMode::ReadWrite, Sharing::None); }), 0);
  EXPECT_EQ(folder.Read(u"a"), "abc");
}

TEST_F(FilesContract, CopyAttributesNeedsBothFilesAndKeepsContents) {
  folder.Write(u"a", "a");
  folder.Write(u"b", "b");
  files.CopyAttributes(P(u"a"), P(u"b"));
  EXPECT_EQ(folder.Read(u"b"), "b");
  EXPECT_EQ(ErrorOf([&] { files.CopyAttributes(P(u"none"), P(u"b")); }), kErrFileNotFound);
  EXPECT_EQ(ErrorOf([&] { files.CopyAttributes(P(u"a"), P(u"none")); }), kErrFileNotFound);
}

TEST_F(FilesContract, ListsByPatternInTheOrderOfNames) {
  for (const std::u16string_view name : {u"b2.stb", u"10.STB", u"2.stb", u"aa.stb", u"ł.stb", u"ć.stb",
                                         u"x.stbx", u"y.txt"}) {
    folder.Write(name, "");
  }
  files.CreateFolder(P(u"f.stb"));
  EXPECT_EQ(files.List(folder.Path(), u"*.stb"),
            (std::vector<std::u16string>{u"10.STB", u"2.stb", u"aa.stb", u"b2.stb", u"f.stb", u"ć.stb",
                                         u"ł.stb"}));
  EXPECT_EQ(files.List(folder.Path(), u"*").size(), 9u);
  EXPECT_TRUE(files.List(P(u"none"), u"*").empty());
}

TEST_F(FilesContract, RealPathIsAbsolute) {
  folder.Write(u"sub/a", "");
  EXPECT_EQ(files.RealPath(P(u"sub/../sub/a")), P(u"sub/a"));
  EXPECT_EQ(files.RealPath(P(u"sub/none")), P(u"sub/none"));
  EXPECT_EQ(files.RealPath(u"none"), JoinPath(files.RealPath(system.environment->CurrentFolder()), u"none"));
}

TEST_F(FilesContract, HoldIsExclusiveAndEndsWithTheObject) {
  auto hold = files.TryHold(P(u"a.mdb"));
  ASSERT_TRUE(hold);
  EXPECT_FALSE(files.TryHold(P(u"a.mdb")));
  EXPECT_TRUE(files.TryHold(P(u"b.mdb")));
  EXPECT_EQ(folder.Names(), std::vector<std::u16string>{u"a.mdb.lock"});  // what other machines see
  hold.reset();
  EXPECT_TRUE(files.TryHold(P(u"a.mdb")));
  EXPECT_TRUE(folder.Names().empty());
}

TEST_F(FilesContract, HoldTakesOverALockFileLeftBehind) {
  folder.Write(u"a.mdb.lock", "");
  EXPECT_TRUE(files.TryHold(P(u"a.mdb")));
  EXPECT_TRUE(folder.Names().empty());
  EXPECT_EQ(ErrorOf([&] { files.TryHold(P(u"no/a.mdb")); }), kErrPathNotFound);
}

TEST_F(FilesContract, HoldIsNeverGivenTwice) {
  const std::u16string path = P(u"a.mdb");
  std::atomic<int> inside{0}, together{0}, grants{0};
  const auto work = [&] {
    const System own = MakeSystem(0, nullptr);
    while (grants < 500) {
      const auto hold = own.files->TryHold(path);
      if (!hold) continue;
      if (inside.fetch_add(1) != 0) ++together;
      ++grants;
      --inside;
    }
  };
  std::thread first(work), second(work);
  first.join();
  second.join();
  EXPECT_EQ(together, 0);
  EXPECT_TRUE(folder.Names().empty());
}

TEST_F(FilesContract, LongNamesAndPathsWork) {
  std::u16string path = folder.Path();
  for (int i = 0; i < 4; ++i) {
    path = JoinPath(path, std::u16string(100, u'd'));
    files.CreateFolder(path);
  }
  const std::u16string name = JoinPath(path, u"Łódź.mdb");
  files.Open(name, OpenMode::CreateNew, Sharing::None)->WriteAt(0, Bytes("x"));
  EXPECT_EQ(files.ReadAll(name, 10), "x");
  EXPECT_EQ(files.List(path, u"*.mdb"), std::vector<std::u16string>{u"Łódź.mdb"});
  files.Replace(name, JoinPath(path, u"b.mdb"));
  EXPECT_TRUE(files.TryHold(JoinPath(path, u"b.mdb")));
  files.Delete(JoinPath(path, u"b.mdb"));
  EXPECT_NE(ErrorOf([&] { Open(std::u16string(5000, u'x'), OpenMode::CreateNew); }), 0);
}

TEST_F(FilesContract, FreeSpaceIsAFigure) { EXPECT_GT(files.FreeSpace(folder.Path()), 1u << 20); }

}  // namespace
}  // namespace zimbrat::platform

// What only a POSIX system has: permissions, links, pipes, names that are no UTF-8.
#include "platform/portable/posix_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <limits>

#include "platform/error_numbers.h"
#include "platform/portable/portable_clock.h"
#include "platform/portable/posix_environment.h"
#include "platform/portable/posix_move.h"
#include "platform/text.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

using tests::ErrorOf;
using tests::TempFolder;

class PosixFilesTest : public testing::Test {
 protected:
  std::string Name(std::u16string_view name) { return Utf8FromUtf16(folder.PathOf(name)); }

  TempFolder folder;
  PosixFiles files;
};

TEST_F(PosixFilesTest, PipeIsRefusedWithoutWaiting) {
  ASSERT_EQ(::mkfifo(Name(u"pipe").c_str(), 0600), 0);
  EXPECT_EQ(ErrorOf([&] { files.Open(folder.PathOf(u"pipe"), OpenMode::Read, Sharing::All); }),
            kErrPathAccess);
}

TEST_F(PosixFilesTest, RealPathFollowsLinks) {
  folder.Write(u"dane/a.mdb", "x");
  std::filesystem::create_symlink("dane/a.mdb", Name(u"link.mdb"));
  EXPECT_EQ(files.RealPath(folder.PathOf(u"link.mdb")), folder.PathOf(u"dane/a.mdb"));
  EXPECT_EQ(files.State(folder.PathOf(u"link.mdb"))->size, 1u);
}

TEST_F(PosixFilesTest, PrivateFilesAreTheirOwnersAndMadeThroughNoLink) {
  files.Open(folder.PathOf(u"a"), OpenMode::CreatePrivate, Sharing::None);
  EXPECT_TRUE(files.State(folder.PathOf(u"a"))->isPrivate);
  std::filesystem::create_symlink("victim", Name(u"link"));
  EXPECT_EQ(ErrorOf([&] {
              files.Open(folder.PathOf(u"link"), OpenMode::CreatePrivate, Sharing::None);
            }),
            kErrFileExists);
  EXPECT_FALSE(folder.Exists(u"victim"));
}

TEST_F(PosixFilesTest, FindLockTellsOfOthersLocksAlone) {
  folder.Write(u"a.ldb", "x");
  const auto file = files.Open(folder.PathOf(u"a.ldb"), OpenMode::Read, Sharing::All);
  EXPECT_EQ(file->FindLock(0x10000001, 255), std::nullopt);
  const int other = ::open(Name(u"a.ldb").c_str(), O_RDWR | O_CLOEXEC);
  struct flock lock{};
  lock.l_type = F_WRLCK;
  lock.l_start = 0x10000003;
  lock.l_len = 1;
  ASSERT_EQ(::fcntl(other, F_OFD_SETLK, &lock), 0);
  EXPECT_EQ(file->FindLock(0x10000001, 255), 0x10000003u);
  EXPECT_EQ(file->FindLock(0x10000001, 2), std::nullopt);
  ::close(other);
  EXPECT_EQ(file->FindLock(0x10000001, 255), std::nullopt);
}

TEST_F(PosixFilesTest, ListLeavesOutNamesThatNoTextCanSpell) {
  folder.Write(u"a.stb", "");
  ASSERT_GE(::close(::open((Name(u"") + "\xA3.stb").c_str(), O_CREAT | O_WRONLY, 0600)), 0);
  EXPECT_EQ(files.List(folder.Path(), u"*.stb"), std::vector<std::u16string>{u"a.stb"});
}

TEST_F(PosixFilesTest, CopyAttributesCarriesPermissions) {
  folder.Write(u"old", "");
  folder.Write(u"new", "");
  ASSERT_EQ(::chmod(Name(u"old").c_str(), 0640), 0);
  files.CopyAttributes(folder.PathOf(u"old"), folder.PathOf(u"new"));
  struct stat found;
  ASSERT_EQ(::stat(Name(u"new").c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0640u);
}

// Nobody in particular, for whom permissions hold; the tests may run as root.
class PlainUser {
 public:
  PlainUser() : isChanged_(::geteuid() == 0 && ::seteuid(65534) == 0) {}
  ~PlainUser() {
    if (isChanged_ && ::seteuid(0) != 0) std::abort();
  }
  PlainUser(const PlainUser&) = delete;
  PlainUser& operator=(const PlainUser&) = delete;

 private:
  bool isChanged_;
};

TEST_F(PosixFilesTest, FolderThatMayNotBeReadTakesFiles) {
  folder.Write(u"f/new", "new");
  folder.Write(u"f/old", "old");
  ASSERT_EQ(::chmod(Name(u"").c_str(), 0755), 0);
  ASSERT_EQ(::chmod(Name(u"f").c_str(), 0333), 0);
  {
    const PlainUser user;
    EXPECT_EQ(ErrorOf([&] { files.Replace(folder.PathOf(u"f/new"), folder.PathOf(u"f/old")); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.Move(folder.PathOf(u"f/old"), folder.PathOf(u"f/third")); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(folder.PathOf(u"f")); }), 0);
  }
  EXPECT_EQ(folder.Read(u"f/third"), "new");
}

TEST_F(PosixFilesTest, FreeSpaceOfAVolumeThatDoesNotSayIsNoLimit) {
  EXPECT_EQ(files.FreeSpace(u"/proc"), std::numeric_limits<std::uint64_t>::max());
}

TEST_F(PosixFilesTest, LockFileIsOpenToOthersUnderAnyUmask) {
  const mode_t before = ::umask(077);
  const auto hold = files.TryHold(folder.PathOf(u"a.mdb"));
  ::umask(before);
  struct stat found;
  ASSERT_EQ(::stat(Name(u"a.mdb.lock").c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0644u);
}

TEST_F(PosixFilesTest, OwnFolderIsItsOwnersAlone) {
  const std::string parent = Name(u""), number = std::to_string(::geteuid());
  const std::string own = parent + "/zimbrat-" + number;
  for (int i = 0; i < 2; ++i) {  // made, then found
    EXPECT_EQ(OwnFolderIn(parent), own);
    struct stat found;
    ASSERT_EQ(::stat(own.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, 0700u);
  }
  ASSERT_EQ(::chmod(own.c_str(), 0777), 0);
  EXPECT_EQ(OwnFolderIn(parent), parent);
  std::filesystem::remove(own);
  folder.Write(u"theirs/a", "");
  std::filesystem::create_directory_symlink("theirs", own);
  EXPECT_EQ(OwnFolderIn(parent), parent);
  if (::geteuid() != 0) return;  // only root can give a folder away
  std::filesystem::remove(own);
  ASSERT_EQ(::mkdir(own.c_str(), 0700), 0);
  ASSERT_EQ(::chown(own.c_str(), 65534, 65534), 0);
  EXPECT_EQ(OwnFolderIn(parent), parent);
}

TEST_F(PosixFilesTest, EveryWayOfMovingLeavesATakenNameAlone) {
  for (const auto way : {MoveByRename, MoveByLink, MoveOverClaim}) {
    TempFolder own;
    const auto name = [&](std::u16string_view of) { return Utf8FromUtf16(own.PathOf(of)); };
    own.Write(u"a", "a");
    own.Write(u"taken", "b");
    std::filesystem::create_symlink("nowhere", name(u"link"));
    EXPECT_EQ(way(name(u"a"), name(u"taken")), EEXIST);
    EXPECT_EQ(way(name(u"a"), name(u"link")), EEXIST);
    EXPECT_EQ(way(name(u"none"), name(u"free")), ENOENT);
    EXPECT_EQ(own.Read(u"taken"), "b");
    EXPECT_EQ(way(name(u"a"), name(u"free")), 0);
    EXPECT_EQ(own.Read(u"free"), "a");
    EXPECT_EQ(own.Names(), (std::vector<std::u16string>{u"free", u"link", u"taken"}));
  }
}

TEST_F(PosixFilesTest, HoldOfAKilledProcessIsFree) {
  const std::u16string path = folder.PathOf(u"a.mdb");
  const pid_t child = ::fork();
  if (child == 0) {
    const auto hold = files.TryHold(path);
    ::_exit(hold ? 0 : 1);  // without running the hold's end
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_TRUE(folder.Exists(u"a.mdb.lock"));
  EXPECT_TRUE(files.TryHold(path));
  EXPECT_FALSE(folder.Exists(u"a.mdb.lock"));
}

TEST(PortableClockTest, FollowsThePatternsGiven) {
  const struct {
    std::u16string date, time;
    std::string datePattern, timePattern;
  } rows[] = {
      {u"dd.MM.yyyy", u"HH:mm", "##.##.####", "##:##"},
      {u"yyyy-MM-dd", u"HH:mm", "####-##-##", "##:##"},
      {u"yy/MM/dd", u"hh:mm tt", "##/##/##", "##:## [AP]M"},
  };
  const auto shape = [](const std::u16string& text) {
    std::string result = Utf8FromUtf16(text);
    for (char& letter : result) {
      if (letter >= '0' && letter <= '9') letter = '#';
    }
    const std::size_t half = result.find_first_of("AP");
    if (half != std::string::npos) result.replace(half, 1, "[AP]");
    return result;
  };
  for (const auto& row : rows) {
    PortableClock clock({row.date, row.time});
    EXPECT_EQ(shape(clock.ShortDate()), row.datePattern);
    EXPECT_EQ(shape(clock.ShortTime()), row.timePattern);
  }
  EXPECT_NEAR(PortableClock().Now(), 25569 + static_cast<double>(std::time(nullptr)) / 86400, 1);
}

}  // namespace
}  // namespace zimbrat::platform

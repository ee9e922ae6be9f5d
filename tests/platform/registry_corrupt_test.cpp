// A registry file that is not understood is told by a code and never overwritten.
#include <gtest/gtest.h>

#include <random>

#include "platform/portable/registry.h"
#include "platform/system.h"
#include "tests/support/registry_values.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::platform {
namespace {

class RegistryCorruptTest : public testing::Test {
 protected:
  std::int32_t TryChange() {
    PortableRegistry registry(*system.files, folder.PathOf(u"rejestr.reg"));
    std::unique_ptr<RegistryKey> key;
    const std::int32_t created = registry.CreateKey(RegistryRoot::CurrentUser, u"K", key);
    return key ? key->Set(u"v", tests::TextValue(u"x")) : created;
  }

  tests::TempFolder folder;
  System system = MakeSystem(0, nullptr);
};

TEST_F(RegistryCorruptTest, BadFileStaysAsItIs) {
  const std::string head = "Windows Registry Editor Version 5.00\r\n";
  const std::string key = head + "[HKEY_CURRENT_USER\\A]\r\n";
  std::string deep = head + "[HKEY_CURRENT_USER";
  for (int i = 0; i < 100000; ++i) deep += "\\a";
  const std::string rows[] = {
      "", "REGEDIT4\r\n", "rubbish", head + "rubbish", head + "\"a\"=\"b\"", head + "[HKEY_USERS\\A]",
      head + "[-HKEY_CURRENT_USER\\A]", head + "[HKEY_CURRENT_USER\\A", key + "\"a\"=-",
      key + "\"a\"=\"b", key + "\"a\"=\"b\\\"", key + "\"a\"=\"b\"c", key + "a=\"b\"",
      key + "\"a\"=dword:123456789", key + "\"a\"=dword:", key + "\"a\"=hex:1,g", key + "\"a\"=hex:1;2",
      key + "\"a\"=hex(:1", key + "\"a\"=hex(1:1", key + "\"a\"", head + "[HKEY_CURRENT_USER\\" +
      std::string(256, 'k') + "]", deep + "]", "\xFF\xFE\x57", "\xFF\xFEW\0i\0", head + "\xA3",
  };
  for (const std::string& bytes : rows) {
    folder.Write(u"rejestr.reg", bytes);
    EXPECT_EQ(TryChange(), kRegistryCorrupt) << bytes.substr(0, 100);
    EXPECT_EQ(folder.Read(u"rejestr.reg"), bytes);
  }
}

TEST_F(RegistryCorruptTest, FolderOrHugeFileInItsPlaceIsRefused) {
  folder.Write(u"rejestr.reg/inner", "x");
  EXPECT_NE(TryChange(), kRegistrySuccess);
  EXPECT_EQ(folder.Read(u"rejestr.reg/inner"), "x");
}

TEST_F(RegistryCorruptTest, DamagedBytesNeverCrashAndNeverLoseTheFile) {
  ASSERT_EQ(TryChange(), kRegistrySuccess);
  const std::string good = folder.Read(u"rejestr.reg");
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = good.substr(0, random() % (good.size() + 1));
    for (unsigned i = random() % 4; i > 0 && !bytes.empty(); --i) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    folder.Write(u"rejestr.reg", bytes);
    const bool isRefused = TryChange() != kRegistrySuccess;
    ASSERT_TRUE(!isRefused || folder.Read(u"rejestr.reg") == bytes);
  }
}

}  // namespace
}  // namespace zimbrat::platform

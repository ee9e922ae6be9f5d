// The file that stands for a registry: read, walked, changed.
#include <memory>
#include <string>
#include <vector>

#include "outcome.h"
#include "platform/portable/registry.h"
#include "targets.h"
#include "tests/support/memory_files.h"
#include "tests/support/registry_values.h"

namespace zimbrat::fuzz {

namespace {

using platform::RegistryRoot;

constexpr const char16_t* kPath = u"/rejestr.reg";
constexpr const char16_t* kKey = u"SOFTWARE\\Orvane\\Kalmix";

// The paths of all keys, parents first.
std::vector<std::u16string> KeysOf(platform::Registry& registry) {
  constexpr std::size_t kMostKeys = 200;
  std::vector<std::u16string> paths{u""};
  for (std::size_t i = 0; i < paths.size() && paths.size() < kMostKeys; ++i) {
    std::unique_ptr<platform::RegistryKey> key;
    if (registry.OpenKey(RegistryRoot::CurrentUser, paths[i], platform::RegistryAccess::Read, key) != 0) continue;
    std::u16string name;
    for (std::uint32_t n = 0; key->EnumerateKey(n, name) == 0 && paths.size() < kMostKeys; ++n) {
      paths.push_back(paths[i].empty() ? name : paths[i] + u'\\' + name);
    }
    platform::RegistryValue value;
    key->Query(u"Folder", value);
  }
  return paths;
}

std::int32_t Change(platform::Registry& registry) {
  std::unique_ptr<platform::RegistryKey> key;
  const std::int32_t made = registry.CreateKey(RegistryRoot::CurrentUser, kKey, key);
  return key ? key->Set(u"Folder", tests::TextValue(u"C:\\Dane \"x\"")) : made;
}

}  // namespace

void ReadRegistry(Input input) {
  tests::MemoryFiles files;
  const auto bytes = std::as_bytes(input);
  files.BytesOf(kPath).assign(bytes.begin(), bytes.end());
  const tests::FileBytes before = files.BytesOf(kPath);
  platform::PortableRegistry registry(files, kPath);
  const std::vector<std::u16string> keys = KeysOf(registry);
  if (Change(registry) != platform::kRegistrySuccess) {
    Require(files.BytesOf(kPath) == before, "a refused file was written to");
    return;
  }
  platform::PortableRegistry again(files, kPath);
  std::unique_ptr<platform::RegistryKey> key;
  platform::RegistryValue value;
  Require(again.OpenKey(RegistryRoot::CurrentUser, kKey, platform::RegistryAccess::Read, key) == 0 &&
              key->Query(u"Folder", value) == 0 && tests::TextOf(value) == u"C:\\Dane \"x\"",
          "what was written cannot be read");
  const std::vector<std::u16string> keysNow = KeysOf(again);
  Require(keysNow.size() >= keys.size(), "a change lost keys");
}

}  // namespace zimbrat::fuzz

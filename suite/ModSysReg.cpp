#include "suite/ModSysReg.h"

#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace zimbrat::suite {
namespace {

using platform::RegistryAccess;
using platform::RegistryRoot;

// The greatest subkey name that fits the enumeration's buffer with its ending NUL.
constexpr std::size_t kLongestSubKeyName = 999;

// The first (size - 1) units, whether or not the last one is the ending NUL.
std::u16string TextFromRegistry(const std::vector<std::byte>& data) {
  const std::size_t units = data.size() / 2;
  if (units == 0) throw platform::OwnError(platform::kErrInvalidCall);
  std::u16string text;
  text.reserve(units - 1);
  for (std::size_t i = 0; i + 1 < units; ++i) {
    text += static_cast<char16_t>(std::to_integer<unsigned>(data[2 * i]) |
                                  std::to_integer<unsigned>(data[2 * i + 1]) << 8);
  }
  return text;
}

std::int32_t LongFromRegistry(const std::vector<std::byte>& data) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4 && i < data.size(); ++i) {
    number |= std::to_integer<std::uint32_t>(data[i]) << (8 * i);
  }
  return static_cast<std::int32_t>(number);
}

std::u16string TextFromVariant(const RegVariant& value) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) return platform::DecimalText(*number);
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  return {};
}

std::int32_t LongFromVariant(const RegVariant& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return platform::LongFromText(*text);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  return 0;
}

platform::RegistryValue RegistryText(std::u16string_view text) {
  platform::RegistryValue stored{platform::kRegSz, {}};
  stored.data.reserve(2 * text.size() + 2);
  for (const char16_t unit : std::u16string(text) + u'\0') {
    stored.data.push_back(static_cast<std::byte>(unit & 0xFF));
    stored.data.push_back(static_cast<std::byte>(unit >> 8));
  }
  return stored;
}

platform::RegistryValue RegistryLong(std::int32_t number) {
  platform::RegistryValue stored{platform::kRegDword, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    stored.data.push_back(static_cast<std::byte>(static_cast<std::uint32_t>(number) >> shift));
  }
  return stored;
}

std::u16string SubKey(std::u16string_view path, std::u16string_view name) {
  return std::u16string(path) + u'\\' + std::u16string(name);
}

}  // namespace

std::int32_t RegValueQuery(platform::RegistryKey* key, std::u16string_view name,
                           RegVariant& value) {
  if (key == nullptr) return platform::kRegistryInvalidHandle;
  std::int32_t code = platform::kRegistrySuccess;
  Attempt([&] {
    platform::RegistryValue stored;
    code = key->Query(name, stored);
    if (code != platform::kRegistrySuccess) return;
    if (stored.type == platform::kRegSz) value = TextFromRegistry(stored.data);
    if (stored.type == platform::kRegDword) value = LongFromRegistry(stored.data);
  });
  return code;
}

std::int32_t RegValueSet(platform::RegistryKey* key, std::u16string_view name, std::uint32_t type,
                         const RegVariant& value) {
  if (type != platform::kRegSz && type != platform::kRegDword) return platform::kRegistrySuccess;
  if (key == nullptr) return platform::kRegistryInvalidHandle;
  std::int32_t code = platform::kRegistryInvalidParameter;
  Attempt([&] {
    code = key->Set(name, type == platform::kRegSz ? RegistryText(TextFromVariant(value))
                                                   : RegistryLong(LongFromVariant(value)));
  });
  return code;
}

void RegKeyCreate(platform::Registry& registry, std::u16string_view path, RegistryRoot root) {
  std::unique_ptr<platform::RegistryKey> key;
  registry.CreateKey(root, path, key);
}

void RegKeyValueSet(platform::Registry& registry, std::u16string_view path,
                    std::u16string_view name, const RegVariant& value, std::uint32_t type) {
  std::unique_ptr<platform::RegistryKey> key;
  registry.OpenKey(RegistryRoot::CurrentUser, path, RegistryAccess::All, key);
  RegValueSet(key.get(), name, type, value);
}

RegVariant RegKeyValueGet(platform::Registry& registry, std::u16string_view path,
                          std::u16string_view name) {
  RegVariant value;
  Attempt([&] {
    std::unique_ptr<platform::RegistryKey> key;
    registry.OpenKey(RegistryRoot::CurrentUser, path, RegistryAccess::All, key);
    RegValueQuery(key.get(), name, value);
  });
  return value;
}

bool RegSubKeysList(platform::Registry& registry, std::u16string_view path,
                    std::vector<std::u16string>& names) {
  std::unique_ptr<platform::RegistryKey> key;
  registry.OpenKey(RegistryRoot::CurrentUser, path, RegistryAccess::Read, key);
  if (!key) return false;
  bool found = false;
  std::u16string name;
  for (std::uint32_t index = 0; key->EnumerateKey(index, name) == platform::kRegistrySuccess &&
                                name.size() <= kLongestSubKeyName;
       ++index) {
    names.resize(index + 2);
    names[index] = name;
    found = true;
  }
  return found;
}

void RegStringSave(platform::Registry& registry, std::u16string_view path, std::u16string_view name,
                   std::u16string_view text) {
  RegKeyCreate(registry, path, RegistryRoot::CurrentUser);
  RegKeyValueSet(registry, path, name, std::u16string(text), platform::kRegSz);
}

std::u16string RegStringRead(platform::Registry& registry, std::u16string_view path,
                             std::u16string_view name, std::u16string_view defaultText) {
  const RegVariant value = RegKeyValueGet(registry, path, name);
  if (!std::holds_alternative<std::monostate>(value)) return TextFromVariant(value);
  Attempt([&] {
    RegKeyValueSet(registry, path, name, std::u16string(defaultText), platform::kRegSz);
  });
  return std::u16string(defaultText);
}

void RegBaseKeySave(ProgramState& state, std::u16string_view name, std::u16string_view path) {
  Report(state.on.host, u"RegBaseKeySave", [&] {
    const std::u16string key = SubKey(kDatabaseListKey, name);
    RegKeyCreate(state.on.registry, key, RegistryRoot::CurrentUser);
    const std::pair<std::u16string_view, std::u16string_view> values[] = {
        {u"Folder", path},
        {u"Aktywna", u"1"},
        {u"Defragmentacja", u"0"},
        {u"Defragmentacja potwierdz", u"0"},
        {u"Defragmentacja co dni", u"30"},
        {u"Defragmentacja data", u""},
        {u"Kopia", u"0"},
        {u"Kopia potwierdz", u"0"},
        {u"Kopia co dni", u"3"},
        {u"Kopia data", u""},
        {u"Kopia folder", state.backupFolder},
    };
    for (const auto& [value, text] : values) RegStringSave(state.on.registry, key, value, text);
  });
}

bool RegBaseListLoad(ProgramState& state, platform::OrvCombo& list) {
  std::vector<std::u16string> names;
  if (!RegSubKeysList(state.on.registry, kDatabaseListKey, names)) return false;
  list.Add(kNoDatabase, u"");
  names.pop_back();
  bool offered = false;
  for (const std::u16string& name : names) {
    const std::u16string path =
        RegStringRead(state.on.registry, SubKey(kDatabaseListKey, name), u"Folder", u"");
    bool exists = false;
    Attempt([&] { exists = !path.empty() && state.on.files.IsFile(path); });
    if (!exists) continue;
    offered = true;
    if (list.FindValue(path) < 0) list.Add(name, path);
  }
  list.SetValue(kNoDatabase);
  return offered;
}

}  // namespace zimbrat::suite

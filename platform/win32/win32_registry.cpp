#include "win32_registry.h"

#include <string>
#include <utility>

#include "handles.h"
#include "wide_text.h"

namespace zimbrat::platform {
namespace {

// A NUL would silently cut the name into another one.
bool HasNul(std::u16string_view name) { return name.find(u'\0') != std::u16string_view::npos; }

class Win32Key : public RegistryKey {
 public:
  explicit Win32Key(KeyHandle key) : key_(std::move(key)) {}

  std::int32_t Query(std::u16string_view name, RegistryValue& value) override {
    if (HasNul(name)) return kRegistryInvalidParameter;
    const std::u16string valueName(name);
    RegistryValue found;
    DWORD type = 0;
    LSTATUS result = ERROR_MORE_DATA;
    // Somebody may lengthen the value between the question for its size and the reading.
    while (result == ERROR_MORE_DATA) {
      DWORD size = 0;
      result = ::RegQueryValueExW(key_.Get(), Lend(valueName), nullptr, &type, nullptr, &size);
      if (result != ERROR_SUCCESS) return result;
      found.data.resize(size);
      if (size == 0) break;
      result = ::RegQueryValueExW(key_.Get(), Lend(valueName), nullptr, &type,
                                  reinterpret_cast<BYTE*>(found.data.data()), &size);
      found.data.resize(result == ERROR_SUCCESS ? size : 0);
    }
    if (result != ERROR_SUCCESS) return result;
    found.type = type;
    value = std::move(found);
    return kRegistrySuccess;
  }

  std::int32_t Set(std::u16string_view name, const RegistryValue& value) override {
    if (HasNul(name)) return kRegistryInvalidParameter;
    return ::RegSetValueExW(key_.Get(), Lend(std::u16string(name)), 0, value.type,
                            reinterpret_cast<const BYTE*>(value.data.data()),
                            static_cast<DWORD>(value.data.size()));
  }

  std::int32_t EnumerateKey(std::uint32_t index, std::u16string& name) override {
    wchar_t room[256];  // the longest name and its NUL
    DWORD size = sizeof room / sizeof *room;
    const LSTATUS result =
        ::RegEnumKeyExW(key_.Get(), index, room, &size, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_SUCCESS) name = FromWide({room, size});
    return result;
  }

 private:
  KeyHandle key_;
};

HKEY RootOf(RegistryRoot root) {
  return root == RegistryRoot::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::int32_t Keep(LSTATUS result, KeyHandle& opened, std::unique_ptr<RegistryKey>& key) {
  if (result == ERROR_SUCCESS) key = std::make_unique<Win32Key>(std::move(opened));
  return result;
}

}  // namespace

std::int32_t Win32Registry::CreateKey(RegistryRoot root, std::u16string_view path,
                                      std::unique_ptr<RegistryKey>& key) {
  key.reset();
  if (HasNul(path)) return kRegistryInvalidParameter;
  KeyHandle opened;
  const LSTATUS result = ::RegCreateKeyExW(RootOf(root), Lend(std::u16string(path)), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                           opened.Receive(), nullptr);
  return Keep(result, opened, key);
}

std::int32_t Win32Registry::OpenKey(RegistryRoot root, std::u16string_view path,
                                    RegistryAccess access, std::unique_ptr<RegistryKey>& key) {
  key.reset();
  if (HasNul(path)) return kRegistryInvalidParameter;
  KeyHandle opened;
  const LSTATUS result =
      ::RegOpenKeyExW(RootOf(root), Lend(std::u16string(path)), 0,
                      access == RegistryAccess::Read ? KEY_READ : KEY_ALL_ACCESS, opened.Receive());
  return Keep(result, opened, key);
}

}  // namespace zimbrat::platform

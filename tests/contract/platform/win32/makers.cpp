#include "makers.h"

#include <windows.h>

#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/win32_profile.h"
#include "platform/win32/win32_registry.h"

namespace zimbrat::tests {
namespace {

// HKEY_CURRENT_USER leads into a key of the test's own for the life of the object.
class OwnBranch : public RegistryBench {
 public:
  OwnBranch() {
    ::RegCreateKeyExW(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                      key_.Receive(), nullptr);
    ::RegOverridePredefKey(HKEY_CURRENT_USER, key_.Get());
  }
  ~OwnBranch() override {
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
  }
  platform::Registry& Get() override { return registry_; }

 private:
  std::wstring name_ = L"Software\\zimbrat test " + std::to_wstring(::GetCurrentProcessId());
  platform::KeyHandle key_;
  platform::Win32Registry registry_;
};

}  // namespace

std::vector<ProfileMaker> ProfileMakers() {
  return {PortableProfileMaker(), {"Win32", false, [](platform::Files&) {
                                     return std::make_unique<platform::Win32Profile>();
                                   }}};
}

std::vector<RegistryMaker> RegistryMakers() {
  return {PortableRegistryMaker(), {"Win32", [] { return std::make_unique<OwnBranch>(); }}};
}

}  // namespace zimbrat::tests

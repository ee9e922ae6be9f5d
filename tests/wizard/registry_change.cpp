#include "tests/wizard/registry_change.h"

#include <gtest/gtest.h>

namespace zimbrat::tests {

RegistryChange::RegistryChange(std::wstring key, std::wstring name, const std::wstring& text)
    : key_(std::move(key)), name_(std::move(name)) {
  std::wstring there(1024, L'\0');
  auto size = static_cast<DWORD>(there.size() * sizeof(wchar_t));
  const LSTATUS code = ::RegGetValueW(HKEY_LOCAL_MACHINE, key_.c_str(), name_.c_str(),
                                      RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, nullptr, there.data(), &size);
  if (code == ERROR_SUCCESS) former_ = there.c_str();
  Set(text);
}

RegistryChange::~RegistryChange() {
  if (former_) {
    Set(*former_);
  } else {
    ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key_.c_str(), name_.c_str());
  }
}

void RegistryChange::Set(const std::wstring& text) const {
  EXPECT_EQ(::RegSetKeyValueW(HKEY_LOCAL_MACHINE, key_.c_str(), name_.c_str(), REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
}

}  // namespace zimbrat::tests

// A registry of which every call fails: by exhausted memory, or by a mere refusal.
#pragma once

#include "platform/error_numbers.h"
#include "platform/registry.h"
#include "platform/run_time_error.h"

namespace zimbrat::tests {

class RaisingRegistry : public platform::Registry {
 public:
  bool isRaising = true;

  std::int32_t CreateKey(platform::RegistryRoot, std::u16string_view,
                         std::unique_ptr<platform::RegistryKey>&) override {
    return Answer();
  }
  std::int32_t OpenKey(platform::RegistryRoot, std::u16string_view, platform::RegistryAccess,
                       std::unique_ptr<platform::RegistryKey>&) override {
    return Answer();
  }

 private:
  std::int32_t Answer() const {
    if (isRaising) throw platform::OwnError(platform::kErrOutOfMemory);
    return platform::kRegistryAccessDenied;
  }
};

}  // namespace zimbrat::tests

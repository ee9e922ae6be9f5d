#include "makers.h"
#include "platform/portable/profile.h"
#include "platform/portable/registry.h"
#include "platform/system.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

class PortableBench : public RegistryBench {
 public:
  platform::Registry& Get() override { return registry_; }

 private:
  TempFolder folder_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  platform::PortableRegistry registry_{*system_.files, folder_.PathOf(u"rejestr.reg")};
};

}  // namespace

ProfileMaker PortableProfileMaker() {
  return {"Portable", true, [](platform::Files& files) {
            return std::make_unique<platform::PortableProfile>(files);
          }};
}

RegistryMaker PortableRegistryMaker() {
  return {"Portable", [] { return std::make_unique<PortableBench>(); }};
}

}  // namespace zimbrat::tests
